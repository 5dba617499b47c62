#include "platform/system/FileFacts.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillfern {

FileKind fileKind(const FilePath& path)
{
    struct stat status = {};
    if (::stat(path.bytes().constData(), &status) != 0) return FileKind::Missing;
    if (S_ISDIR(status.st_mode)) return FileKind::Folder;
    return S_ISREG(status.st_mode) ? FileKind::Regular : FileKind::Other;
}

bool isNameTaken(const FilePath& path)
{
    struct stat status = {};
    return ::lstat(path.bytes().constData(), &status) == 0;
}

qsizetype longestName(const FilePath& folder)
{
    constexpr qsizetype usual = 255;
    const long most = ::pathconf(folder.bytes().constData(), _PC_NAME_MAX);
    return most > 0 ? most : usual;
}

std::optional<std::uint64_t> allocatedSize(const FilePath& path)
{
    struct stat status = {};
    if (::stat(path.bytes().constData(), &status) != 0) return std::nullopt;
    constexpr std::uint64_t block = 512; // the unit of st_blocks, whatever the file system's own
    return static_cast<std::uint64_t>(status.st_blocks) * block;
}

namespace {

QDateTime moment(std::int64_t seconds, std::int64_t nanoseconds)
{
    return QDateTime::fromMSecsSinceEpoch(seconds * 1000 + nanoseconds / 1000000, Qt::UTC);
}

} // namespace

#ifdef STATX_BTIME

FileTimes fileTimes(const FilePath& path)
{
    FileTimes times;
    struct statx facts = {};
    constexpr unsigned wanted = STATX_MTIME | STATX_ATIME | STATX_BTIME;
    if (::statx(AT_FDCWD, path.bytes().constData(), AT_STATX_SYNC_AS_STAT, wanted, &facts) != 0) return times;
    const auto taken = [&](unsigned bit, const struct statx_timestamp& stamp) {
        return (facts.stx_mask & bit) != 0 ? moment(stamp.tv_sec, stamp.tv_nsec) : QDateTime();
    };
    times.modified = taken(STATX_MTIME, facts.stx_mtime);
    times.created = taken(STATX_BTIME, facts.stx_btime);
    times.accessed = taken(STATX_ATIME, facts.stx_atime);
    return times;
}

#else

FileTimes fileTimes(const FilePath& path)
{
    FileTimes times;
    struct stat status = {};
    if (::stat(path.bytes().constData(), &status) != 0) return times;
    times.modified = moment(status.st_mtime, 0);
    times.accessed = moment(status.st_atime, 0);
    return times; // the birth of a file is not known to this call
}

#endif

} // namespace quillfern
