#include "platform/store/AtomicFile.h"

#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"

#include <QRandomGenerator>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <linux/fs.h>
#endif

namespace quillfern::store {

namespace {

Reason cannotWrite(const FilePath& path)
{
    return {QT_TRANSLATE_NOOP("quillfern::Failure", "%1 cannot be written."), {path.readable()}};
}

constexpr qsizetype bufferSize = 1 << 20;

QByteArray temporaryNameIn(const QByteArray& folder)
{
    return folder + "/.quillfern-" + QByteArray::number(QRandomGenerator::system()->generate64(), 16) +
           ".tmp";
}

} // namespace

AtomicFile::AtomicFile(FilePath target) : target_(std::move(target)), folder_(target_.parent().bytes())
{
    if (target_.name().isEmpty())
        throw Failure(
            {QT_TRANSLATE_NOOP("quillfern::Failure", "A file needs a name: %1"), {target_.readable()}});
#ifdef O_TMPFILE
    descriptor_ = ::open(folder_.constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666);
#endif
    if (descriptor_ < 0) openNamed();
    buffer_.reserve(bufferSize);
}

void AtomicFile::openNamed()
{
    for (int attempt = 0; attempt < 16; ++attempt) {
        temporaryName_ = temporaryNameIn(folder_);
        descriptor_ = ::open(temporaryName_.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor_ >= 0 || errno != EEXIST) break;
    }
    if (descriptor_ < 0) {
        const int error = errno;
        temporaryName_.clear();
        throw Failure::fromErrno(cannotWrite(target_), error);
    }
}

AtomicFile::~AtomicFile()
{
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!temporaryName_.isEmpty()) ::unlink(temporaryName_.constData());
}

void AtomicFile::write(const char* data, std::size_t size)
{
    if (buffer_.size() + static_cast<qsizetype>(size) > bufferSize) flushBuffer();
    if (static_cast<qsizetype>(size) >= bufferSize)
        writeOut(data, size);
    else
        buffer_.append(data, static_cast<qsizetype>(size));
}

void AtomicFile::flushBuffer()
{
    writeOut(buffer_.constData(), static_cast<std::size_t>(buffer_.size()));
    buffer_.resize(0);
}

void AtomicFile::writeOut(const char* data, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = ::write(descriptor_, data, size);
        if (written < 0) {
            if (errno == EINTR) continue;
            throw Failure::fromErrno(cannotWrite(target_), errno);
        }
        data += written;
        size -= static_cast<std::size_t>(written);
        written_ += written;
    }
    startWriting();
}

void AtomicFile::startWriting()
{
#ifdef SYNC_FILE_RANGE_WRITE
    constexpr long long worthStarting = 4LL << 20;
    if (written_ - started_ >= worthStarting) {
        ::sync_file_range(descriptor_, started_, written_ - started_, SYNC_FILE_RANGE_WRITE);
        started_ = written_;
    }
#endif
}

bool AtomicFile::cloneFrom(int descriptor, long long size)
{
#ifdef FICLONE
    // A clone begins at the start of a file and has the size of the source.
    struct stat status = {};
    if (written_ != 0 || ::fstat(descriptor, &status) != 0 || status.st_size != size) return false;
    if (::ioctl(descriptor_, FICLONE, descriptor) != 0) return false;
    written_ = size;
    started_ = size;
    return ::lseek(descriptor_, size, SEEK_SET) == size;
#else
    Q_UNUSED(descriptor)
    Q_UNUSED(size)
    return false;
#endif
}

void AtomicFile::copyFrom(int descriptor, long long size)
{
    flushBuffer();
    if (cloneFrom(descriptor, size)) return;
    constexpr long long step = 8LL << 20; // so that the disk begins to write long before all is copied
    long long done = 0;
#ifdef Q_OS_LINUX
    while (done < size) {
        off_t from = done;
        const ssize_t copied = ::copy_file_range(descriptor, &from, descriptor_, nullptr,
                                                 static_cast<std::size_t>(std::min(step, size - done)), 0);
        if (copied < 0 && errno == EINTR) continue;
        if (copied <= 0) break; // between these file systems it may be impossible; reading says why
        done += copied;
        written_ += copied;
        startWriting();
    }
#endif
    QByteArray block(bufferSize, Qt::Uninitialized);
    while (done < size) {
        const ssize_t count =
            ::pread(descriptor, block.data(),
                    static_cast<std::size_t>(std::min<long long>(block.size(), size - done)),
                    static_cast<off_t>(done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0)
            throw Failure::fromErrno(QT_TRANSLATE_NOOP("quillfern::Failure", "The file cannot be read."), errno);
        if (count == 0)
            throw Failure(
                QT_TRANSLATE_NOOP("quillfern::Failure", "The file became shorter while it was read."));
        writeOut(block.constData(), static_cast<std::size_t>(count));
        done += count;
    }
}

void AtomicFile::takePermissionsOf(const FilePath& path)
{
    permissionsOf_ = path;
}

void AtomicFile::adoptPermissions() const
{
    struct stat status = {};
    // A link at the target's name is replaced, so it is not followed here; a link at permissionsOf_ is.
    const bool known = permissionsOf_.isEmpty() ? ::lstat(target_.bytes().constData(), &status) == 0
                                                : ::stat(permissionsOf_.bytes().constData(), &status) == 0;
    if (!known || !S_ISREG(status.st_mode)) return;
    // Best effort: only root may give a file away, and a file system may know no permissions at all.
    if (::fchown(descriptor_, status.st_uid, status.st_gid) != 0) errno = 0;
    ::fchmod(descriptor_, status.st_mode & 07777);
}

void AtomicFile::commit()
{
    const Reason doing = cannotWrite(target_);
    flushBuffer();
    adoptPermissions();
    // Without this a power cut after the rename could leave an empty file where a whole one stood.
    if (::fsync(descriptor_) != 0 && errno != EINVAL && errno != EROFS)
        throw Failure::fromErrno(doing, errno);
    if (temporaryName_.isEmpty()) {
        const QByteArray self = "/proc/self/fd/" + QByteArray::number(descriptor_);
        const QByteArray name = temporaryNameIn(folder_);
        if (::linkat(AT_FDCWD, self.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) != 0)
            throw Failure::fromErrno(doing, errno);
        temporaryName_ = name;
    }
    if (std::rename(temporaryName_.constData(), target_.bytes().constData()) != 0)
        throw Failure::fromErrno(doing, errno);
    temporaryName_.clear();
    const int closed = ::close(descriptor_);
    descriptor_ = -1;
    // Some network file systems report a lost write only here.
    if (closed != 0 && errno != EINTR) throw Failure::fromErrno(doing, errno);
}

void AtomicFile::writeWhole(const FilePath& path, const QByteArray& bytes)
{
    AtomicFile file(path);
    file.write(bytes);
    file.commit();
}

void copyFileAtomically(const FilePath& source, const FilePath& target)
{
    const auto input = readRegularFile(source);
    AtomicFile output(target);
    output.takePermissionsOf(source);
    QByteArray block(bufferSize, Qt::Uninitialized);
    for (;;) {
        const qint64 size = input->read(block.data(), block.size());
        if (size < 0)
            throw Failure({QT_TRANSLATE_NOOP("quillfern::Failure", "%1 cannot be read: %2"),
                           {source.readable(), input->errorString()}});
        if (size == 0) break;
        output.write(block.constData(), static_cast<std::size_t>(size));
    }
    output.commit();
}

} // namespace quillfern::store
