#pragma once

#include "platform/system/FilePath.h"

namespace quillfern {

/// What a processor does before it writes a document.
///
/// Processing in place (source and target are one file, whatever their paths say): with `isBackupFile` the
/// source is copied beside itself under its name with "bak" appended, before anything is written. Otherwise a
/// file at the target's path is removed. Problems are ignored, except that a backup that cannot be made
/// throws Failure, so that the only copy of the file is not overwritten.
///
/// Returns the path to write to: in place, the file that a link leads to.
[[nodiscard]] FilePath prepareTarget(const FilePath& source, const FilePath& target, bool isBackupFile);

} // namespace quillfern
