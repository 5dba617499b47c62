#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <optional>

namespace quillfern {

/// Which file a path leads to, told by device and inode (links followed), so that a symbolic link, a ".." or
/// a second mount of the same folder do not hide that two paths are one file.
struct FileIdentity
{
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    bool operator==(const FileIdentity&) const = default;
};

/// The identity of the file at `path`; nothing when there is none or it cannot be looked at.
[[nodiscard]] std::optional<FileIdentity> fileIdentity(const QString& path);

/// True when both paths lead to one existing file.
[[nodiscard]] bool isSameFile(const QString& first, const QString& second);

} // namespace quillfern

template <>
struct std::hash<quillfern::FileIdentity>
{
    std::size_t operator()(const quillfern::FileIdentity& identity) const noexcept
    {
        return std::hash<std::uint64_t>()(identity.inode * 0x9E3779B97F4A7C15ULL ^ identity.device);
    }
};
