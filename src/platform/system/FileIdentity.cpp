#include "platform/system/FileIdentity.h"

#include <sys/stat.h>

namespace quillfern {

std::optional<FileIdentity> fileIdentity(const FilePath& path)
{
    struct stat status = {};
    if (::stat(path.bytes().constData(), &status) != 0) return std::nullopt;
    return FileIdentity{status.st_dev, status.st_ino};
}

namespace {

std::int64_t nanoseconds(const struct timespec& time)
{
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

FileVersion versionFrom(const struct stat& status)
{
    return {{status.st_dev, status.st_ino},
            nanoseconds(status.st_mtim),
            status.st_size,
            nanoseconds(status.st_ctim)};
}

} // namespace

std::optional<FileVersion> fileVersion(const FilePath& path)
{
    struct stat status = {};
    if (::stat(path.bytes().constData(), &status) != 0) return std::nullopt;
    return versionFrom(status);
}

std::optional<FileVersion> fileVersion(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0) return std::nullopt;
    return versionFrom(status);
}

std::optional<FilePlace> filePlace(const FilePath& path)
{
    const auto folder = fileIdentity(path.parent());
    if (!folder) return std::nullopt;
    struct stat status = {};
    if (::lstat(path.bytes().constData(), &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1)
        return FilePlace{*folder, {}, status.st_ino};
    return FilePlace{*folder, path.bytes().mid(path.bytes().lastIndexOf('/') + 1), 0};
}

bool isSameFile(const FilePath& first, const FilePath& second)
{
    const auto identity = fileIdentity(first);
    return identity && identity == fileIdentity(second);
}

} // namespace quillfern
