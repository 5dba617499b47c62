#pragma once

#include "platform/system/FilePath.h"

#include <QDateTime>
#include <cstdint>
#include <optional>

namespace quillfern {

// What the file system knows of a file, behind links. Any thread.

enum class FileKind {
    Missing,
    Regular,
    Folder,
    Other ///< a pipe, a socket, a device: opening it might never return
};
[[nodiscard]] FileKind fileKind(const FilePath& path);

/// Whether anything has this name; also a link that leads nowhere.
[[nodiscard]] bool isNameTaken(const FilePath& path);

/// How many bytes a name in this folder may have.
[[nodiscard]] qsizetype longestName(const FilePath& folder);

/// The bytes that a file occupies on the disk; nothing when it cannot be looked at.
[[nodiscard]] std::optional<std::uint64_t> allocatedSize(const FilePath& path);

/// The times of a file in UTC; invalid where the file system keeps none, or the file cannot be looked at.
struct FileTimes
{
    QDateTime modified;
    QDateTime created;
    QDateTime accessed;
};
[[nodiscard]] FileTimes fileTimes(const FilePath& path);

} // namespace quillfern
