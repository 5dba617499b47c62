#include "platform/system/FileFacts.h"

#include <QFile>
#include <sys/stat.h>

namespace quillfern {

std::optional<std::uint64_t> allocatedSize(const QString& path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) return std::nullopt;
    constexpr std::uint64_t block = 512; // the unit of st_blocks, whatever the file system's own
    return static_cast<std::uint64_t>(status.st_blocks) * block;
}

} // namespace quillfern
