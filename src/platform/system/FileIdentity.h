#pragma once

#include "platform/system/FilePath.h"

#include <QByteArray>
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
    /// Nanoseconds; when the file or what belongs to it (names, permissions) was last changed. A program can
    /// set `modified` back, but not this time.
    std::int64_t changed = 0;

    bool operator==(const FileVersion&) const = default;

    /// Whether nothing was written since, as far as `modified` shows; the permissions may have changed.
    [[nodiscard]] bool hasBytesOf(const FileVersion& other) const
    {
        return identity == other.identity && modified == other.modified && size == other.size;
    }
};

/// The present version of the file at `path`; nothing when it cannot be looked at.
[[nodiscard]] std::optional<FileVersion> fileVersion(const FilePath& path);
/// The same for an open file.
[[nodiscard]] std::optional<FileVersion> fileVersion(int descriptor);

/// Where a name is: in which folder, and which name there. Two paths of one place are one directory entry,
/// which a new file would replace; a symbolic link or a second hard link to a file is another place. A file
/// that has one name only is known by its inode, so that two spellings are one place on a file system that
/// does not distinguish them. Compare places that were found at the same time only.
struct FilePlace
{
    FileIdentity folder;
    QByteArray name; ///< empty where `inode` counts
    std::uint64_t inode = 0;

    bool operator==(const FilePlace&) const = default;
};

/// The place of `path`, whether or not anything is there; nothing when its folder cannot be looked at.
[[nodiscard]] std::optional<FilePlace> filePlace(const FilePath& path);

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

template <>
struct std::hash<quillfern::FilePlace>
{
    std::size_t operator()(const quillfern::FilePlace& place) const noexcept
    {
        return qHash(place.name, std::hash<quillfern::FileIdentity>()(place.folder) ^ place.inode);
    }
};
