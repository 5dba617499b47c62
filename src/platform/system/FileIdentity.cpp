#include "platform/system/FileIdentity.h"

#include <sys/stat.h>

namespace quillfern {

std::optional<FileIdentity> fileIdentity(const FilePath& path)
{
    struct stat status = {};
    if (::stat(path.bytes().constData(), &status) != 0) return std::nullopt;
    return FileIdentity{status.st_dev, status.st_ino};
}

std::optional<FileVersion> fileVersion(const FilePath& path)
{
    struct stat status = {};
    if (::stat(path.bytes().constData(), &status) != 0) return std::nullopt;
    return FileVersion{{status.st_dev, status.st_ino},
                       std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec,
                       status.st_size};
}

bool isSameFile(const FilePath& first, const FilePath& second)
{
    const auto identity = fileIdentity(first);
    return identity && identity == fileIdentity(second);
}

} // namespace quillfern
