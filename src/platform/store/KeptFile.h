#pragma once

#include "platform/system/FilePath.h"

#include <QByteArray>

namespace quillfern::store {

/// Writes `bytes` whole to `path`. A file that has this name already is not lost: it keeps its content under
/// the name with "-2" before the extension, or "-3" and so on. Several programs may write to one path at the
/// same time; the last one's bytes are at `path` then.
///
/// Returns where the bytes are: `path`, or the other name on a file system that cannot exchange two names.
/// Throws Failure; the earlier file is then untouched.
[[nodiscard]] FilePath writeKeepingEarlier(const FilePath& path, const QByteArray& bytes);

} // namespace quillfern::store
