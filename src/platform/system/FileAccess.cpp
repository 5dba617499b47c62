#include "platform/system/FileAccess.h"

#include "platform/system/Failure.h"
#include "platform/system/FileFacts.h"

#include <QFile>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace quillfern {

FilePath resolvedPath(const FilePath& path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.bytes().constData(), nullptr),
                                                           &std::free);
    return real ? FilePath::fromBytes(real.get()) : FilePath();
}

bool removeFile(const FilePath& path)
{
    return ::unlink(path.bytes().constData()) == 0 || errno == ENOENT;
}

bool renameFile(const FilePath& from, const FilePath& to)
{
    return std::rename(from.bytes().constData(), to.bytes().constData()) == 0;
}

bool makeFolders(const FilePath& folder)
{
    if (folder.isEmpty()) return false;
    if (fileKind(folder) == FileKind::Folder) return true;
    if (folder.parent() == folder || !makeFolders(folder.parent())) return false;
    return ::mkdir(folder.bytes().constData(), 0777) == 0 || fileKind(folder) == FileKind::Folder;
}

bool mayWriteInto(const FilePath& folder)
{
    return ::access(folder.bytes().constData(), W_OK) == 0; // the kernel also knows of read-only file systems
}

int openRegularFile(const FilePath& path)
{
    const QString name = path.readable();
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;
    int descriptor = -1;
#ifdef O_NOATIME
    // Reading leaves no trace in the date of the last access; the system allows this to the owner only.
    descriptor = ::open(path.bytes().constData(), flags | O_NOATIME);
    if (descriptor < 0 && errno == EPERM)
#endif
        descriptor = ::open(path.bytes().constData(), flags);
    if (descriptor < 0)
        throw Failure::fromErrno({QT_TRANSLATE_NOOP("quillfern::Failure", "%1 cannot be read."), {name}},
                                 errno);
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) return descriptor;
    ::close(descriptor);
    throw Failure(
        {QT_TRANSLATE_NOOP("quillfern::Failure", "%1 cannot be read, because it is not a regular file."),
         {name}});
}

void readExactly(int descriptor, std::int64_t offset, char* bytes, std::size_t size)
{
    std::size_t filled = 0;
    while (filled < size) {
        const ssize_t count = ::pread(descriptor, bytes + filled, size - filled,
                                      static_cast<off_t>(offset) + static_cast<off_t>(filled));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0)
            throw Failure::fromErrno(QT_TRANSLATE_NOOP("quillfern::Failure", "The file cannot be read."),
                                     errno);
        if (count == 0)
            throw Failure(
                QT_TRANSLATE_NOOP("quillfern::Failure", "The file became shorter while it was read."));
        filled += static_cast<std::size_t>(count);
    }
}

std::unique_ptr<QFileDevice> readRegularFile(const FilePath& path)
{
    const int descriptor = openRegularFile(path);
    auto file = std::make_unique<QFile>();
    if (file->open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) return file;
    ::close(descriptor);
    throw Failure({QT_TRANSLATE_NOOP("quillfern::Failure", "%1 cannot be read: %2"),
                   {path.readable(), file->errorString()}});
}

} // namespace quillfern
