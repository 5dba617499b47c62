#include "platform/system/FileIdentity.h"

#include "platform/system/NativePath.h"

#include <sys/stat.h>

namespace quillfern {

std::optional<FileIdentity> fileIdentity(const QString& path)
{
    struct stat status = {};
    if (::stat(nativePath(path).constData(), &status) != 0) return std::nullopt;
    return FileIdentity{status.st_dev, status.st_ino};
}

std::optional<FileVersion> fileVersion(const QString& path)
{
    struct stat status = {};
    if (::stat(nativePath(path).constData(), &status) != 0) return std::nullopt;
    return FileVersion{{status.st_dev, status.st_ino},
                       std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec,
                       status.st_size};
}

bool isSameFile(const QString& first, const QString& second)
{
    const auto identity = fileIdentity(first);
    return identity && identity == fileIdentity(second);
}

} // namespace quillfern
