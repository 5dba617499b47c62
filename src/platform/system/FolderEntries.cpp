#include "platform/system/FolderEntries.h"

#include "platform/system/NativePath.h"

#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace quillfern {

namespace {

struct FolderCloser
{
    void operator()(DIR* folder) const { ::closedir(folder); }
};

void tellKind(FolderEntry& entry, mode_t mode)
{
    entry.isFolder = S_ISDIR(mode);
    entry.isFile = S_ISREG(mode);
}

FolderEntry describe(int folder, const dirent& raw)
{
    FolderEntry entry;
    entry.name = pathText(QByteArray(raw.d_name));
    if (raw.d_type != DT_LNK && raw.d_type != DT_UNKNOWN) {
        tellKind(entry, DTTOIF(raw.d_type));
        return entry;
    }
    struct stat status = {};
    const int seen = ::fstatat(folder, raw.d_name, &status, AT_SYMLINK_NOFOLLOW);
    if (seen != 0 || !S_ISLNK(status.st_mode)) {
        // An entry that vanished meanwhile is counted as a file.
        tellKind(entry, seen == 0 ? status.st_mode : S_IFREG);
        return entry;
    }
    // A link that leads nowhere counts as a file: listed and shown to be unreadable, not silently missing.
    const bool leads = ::fstatat(folder, raw.d_name, &status, 0) == 0;
    entry.isFile = !leads || S_ISREG(status.st_mode);
    return entry;
}

} // namespace

std::vector<FolderEntry> folderEntries(const FilePath& folder, const std::function<bool()>& goOn)
{
    std::vector<FolderEntry> entries;
    const std::unique_ptr<DIR, FolderCloser> open(::opendir(folder.bytes().constData()));
    if (!open) return entries;
    while (goOn()) {
        const dirent* raw = ::readdir(open.get());
        if (!raw) break;
        if (std::strcmp(raw->d_name, ".") == 0 || std::strcmp(raw->d_name, "..") == 0) continue;
        entries.push_back(describe(::dirfd(open.get()), *raw));
    }
    return entries;
}

} // namespace quillfern
