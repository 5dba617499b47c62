#pragma once

#include <QString>
#include <QStringList>

namespace quillfern {

/// The extensions of files that can be processed, as the list of files accepts them: all-lower and all-upper
/// only.
[[nodiscard]] const QStringList& allowedFileTypes();

/// True when the file's extension is one of allowedFileTypes(), compared with case.
[[nodiscard]] bool hasAllowedType(const QString& path);

/// The files of a folder that can be processed, its subfolders' too when asked for: the files of each folder
/// before its subfolders, both in the order people sort names in. Hidden files and folders are passed over,
/// and so is what cannot be read; a folder reached twice through links is walked once.
[[nodiscard]] QStringList filesInFolder(const QString& folder, bool includeSubfolders);

} // namespace quillfern
