#pragma once

#include <QString>

class QFile;

namespace quillfern {

// Calls of the system that take the paths of NativePath.h, for what Qt would do with valid UTF-8 only.

/// The path of the file itself behind all links; empty when it is not there.
[[nodiscard]] QString resolvedPath(const QString& path);

/// Removes the name of a file. Whether it is gone now, or was not there.
bool removeFile(const QString& path);

/// A descriptor for reading a regular file, owned by the caller; a pipe or device is refused rather than
/// waited for. Throws Failure.
[[nodiscard]] int openRegularFile(const QString& path);

/// The same for code that reads through Qt: opens `file`, which then has no name. Throws Failure.
void openRegularFile(QFile& file, const QString& path);

} // namespace quillfern
