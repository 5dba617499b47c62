#include "platform/system/DiskSpace.h"

#include <sys/statvfs.h>

namespace quillfern {

std::optional<std::uint64_t> freeSpace(const FilePath& folder)
{
    struct statvfs disk = {};
    if (::statvfs(folder.bytes().constData(), &disk) != 0) return std::nullopt;
    return static_cast<std::uint64_t>(disk.f_bavail) * disk.f_frsize;
}

} // namespace quillfern
