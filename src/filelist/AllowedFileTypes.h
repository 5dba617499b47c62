#pragma once

#include <QString>
#include <QStringList>

namespace quillfern {

/// The extensions of the files that can be processed, each in small letters and in capitals; other mixes of
/// case are not among them.
[[nodiscard]] const QStringList& allowedFileTypes();

/// True when the extension of a file's name is one of allowedFileTypes(), compared with case.
[[nodiscard]] bool hasAllowedType(const QString& name);

} // namespace quillfern
