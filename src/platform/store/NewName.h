#pragma once

#include "platform/system/FilePath.h"

#include <QByteArray>

namespace quillfern::store {

/// Gives the file at the path `from` the name `to` in an open folder (AT_FDCWD: a path) unless anything has
/// that name. In one step, so that two programs never take one name. Returns false when the name is taken.
/// Throws Failure, which names the file by `path`.
[[nodiscard]] bool takeNewName(const QByteArray& from, int folder, const QByteArray& to,
                               const FilePath& path);

} // namespace quillfern::store
