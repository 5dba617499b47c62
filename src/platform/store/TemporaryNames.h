#pragma once

#include "platform/system/FilePath.h"

#include <QByteArray>

namespace quillfern::store {

/// A hidden name for a file that this process writes, new with every call:
/// ".quillfern-<host>-<process>-<start>-<random>.tmp". The host is a checksum of the machine's name, the
/// start is when the process began, since process numbers are used again.
[[nodiscard]] QByteArray temporaryName();

/// Removes from a folder the files with such a name that a killed process has left behind: those of this
/// user and machine, not changed for a day, whose process does not run any more. Problems are ignored.
void removeLeftovers(const FilePath& folder);

} // namespace quillfern::store
