#pragma once

#include "platform/system/FilePath.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

namespace quillfern {

/// Identifies the file that a path leads to by its device and inode (links followed): paths through a
/// symbolic link, a ".." or a second mount of the same folder give the same identity for the same file.
struct FileIdentity
{
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    bool operator==(const FileIdentity&) const = default;
};

/// The identity of the file at `path`; nothing when there is none or it cannot be looked at.
[[nodiscard]] std::optional<FileIdentity> fileIdentity(const FilePath& path);

/// A file in the state it was in at some time; a file that has been written to since has another version.
struct FileVersion
{
    FileIdentity identity;
    std::int64_t modified = 0; ///< nanoseconds
    std::int64_t size = 0;     ///< bytes

    bool operator==(const FileVersion&) const = default;
};

/// The present version of the file at `path`; nothing when it cannot be looked at.
[[nodiscard]] std::optional<FileVersion> fileVersion(const FilePath& path);

/// True when both paths lead to one existing file.
[[nodiscard]] bool isSameFile(const FilePath& first, const FilePath& second);

} // namespace quillfern

template <>
struct std::hash<quillfern::FileIdentity>
{
    std::size_t operator()(const quillfern::FileIdentity& identity) const noexcept
    {
        return std::hash<std::uint64_t>()(identity.inode * 0x9E3779B97F4A7C15ULL ^ identity.device);
    }
};
