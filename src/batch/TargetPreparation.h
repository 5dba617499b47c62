#pragma once

#include "platform/system/FilePath.h"

namespace quillfern {

/// What a processor does before it writes a document.
///
/// Processing in place (source and target are one file, whatever their paths say): with `isBackupFile` the
/// source is copied beside itself under its name with "bak" appended, before anything is written. Otherwise a
/// file that stands at the target is removed. Problems are ignored, but a backup that was asked for and
/// cannot be made throws Failure: the only copy is not overwritten then.
///
/// Returns the path to write to: in place, the file itself behind any link.
[[nodiscard]] FilePath prepareTarget(const FilePath& source, const FilePath& target, bool isBackupFile);

} // namespace quillfern
