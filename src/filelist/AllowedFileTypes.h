#pragma once

#include <QString>
#include <QStringList>

namespace quillfern {

/// The extensions of files that can be processed, as the list of files accepts them: all-lower and all-upper
/// only.
[[nodiscard]] const QStringList& allowedFileTypes();

/// True when the extension of a file's name is one of allowedFileTypes(), compared with case.
[[nodiscard]] bool hasAllowedType(const QString& name);

} // namespace quillfern
