#include "platform/store/AtomicFile.h"

#include "platform/store/NewName.h"
#include "platform/store/TemporaryNames.h"
#include "platform/system/Cancellation.h"
#include "platform/system/FileAccess.h"
#include "platform/system/NativePath.h"

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

} // namespace

void AtomicFile::requireReplaceable(const FilePath& path)
{
    struct stat status = {};
    const char* const name = path.bytes().constData();
    if (::lstat(name, &status) != 0 || S_ISREG(status.st_mode)) return;
    if (S_ISLNK(status.st_mode) &&
        (::stat(name, &status) != 0 || S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)))
        return; // the link itself is replaced
    const char* const why =
        S_ISDIR(status.st_mode)
            ? QT_TRANSLATE_NOOP("quillfern::Failure", "%1 cannot be written: it is a folder.")
            : QT_TRANSLATE_NOOP("quillfern::Failure",
                                "%1 cannot be written: it is a device, pipe or socket.");
    throw Failure({why, {path.readable()}});
}

AtomicFile::AtomicFile(FilePath target, const FilePath& folder)
    : target_(std::move(target)), folder_(folder.bytes())
{
    if (target_.name().isEmpty())
        throw Failure(
            {QT_TRANSLATE_NOOP("quillfern::Failure", "A file needs a name: %1"), {target_.readable()}});
    requireReplaceable(target_);
    constexpr mode_t usual = 0666;
    constexpr mode_t closed = S_IRUSR | S_IWUSR;
#ifdef O_TMPFILE
    descriptor_ = ::open(folder_.constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, usual);
#endif
    if (descriptor_ >= 0) {
        fresh_ = accessOf(descriptor_);
        ::fchmod(descriptor_, closed); // nobody could have opened a file without a name yet
    } else {
        // What a new file is like here, is seen of one that holds nothing: whoever opens the other one as
        // soon as it has a name would go on reading it.
        const int sample = openNamed(usual);
        fresh_ = accessOf(sample);
        ::close(sample);
        ::unlink(temporaryName_.constData());
        descriptor_ = openNamed(closed);
    }
    buffer_.reserve(bufferSize);
}

int AtomicFile::openNamed(mode_t mode)
{
    for (int attempt = 0; attempt < 16; ++attempt) {
        temporaryName_ = folder_ + '/' + temporaryName();
        const int descriptor =
            ::open(temporaryName_.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (descriptor >= 0) return descriptor;
        if (errno != EEXIST) break;
    }
    const int error = errno;
    temporaryName_.clear();
    throw Failure::fromErrno(cannotWrite(target_), error);
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
    if (hash_) hash_->add(data, size);
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

long long AtomicFile::copyInsideSystem(int descriptor, long long size, const std::stop_token& stop)
{
    long long done = 0;
#ifdef Q_OS_LINUX
    constexpr long long step = 8LL << 20; // so that the disk begins to write long before all is copied
    while (done < size) {
        throwIfCancelled(stop);
        off_t from = done;
        const ssize_t copied = ::copy_file_range(descriptor, &from, descriptor_, nullptr,
                                                 static_cast<std::size_t>(std::min(step, size - done)), 0);
        if (copied < 0 && errno == EINTR) continue;
        if (copied <= 0) break; // between these file systems it may be impossible; reading says why
        done += copied;
        written_ += copied;
        startWriting();
    }
#else
    Q_UNUSED(descriptor)
    Q_UNUSED(size)
    Q_UNUSED(stop)
#endif
    return done;
}

void AtomicFile::copyFrom(int descriptor, long long size, const std::stop_token& stop)
{
    flushBuffer();
    const bool isBegin = written_ == 0;
    if (!hash_ && cloneFrom(descriptor, size)) return;
    long long done = hash_ ? 0 : copyInsideSystem(descriptor, size, stop);
    QByteArray block(bufferSize, Qt::Uninitialized);
    while (done < size) {
        throwIfCancelled(stop);
        const long long count = std::min<long long>(block.size(), size - done);
        readExactly(descriptor, done, block.data(), static_cast<std::size_t>(count));
        writeOut(block.constData(), static_cast<std::size_t>(count));
        done += count;
    }
    if (hash_ && isBegin) copied_ = CopiedBytes{size, hash_->digest()};
}

void AtomicFile::hashBytes()
{
    isHashed_ = true;
    if (written_ == 0 && buffer_.isEmpty()) hash_.emplace();
}

QByteArray AtomicFile::sha256(const std::stop_token& stop)
{
    flushBuffer();
    if (hash_) return hash_->digest();
    struct stat status = {};
    if (::fstat(descriptor_, &status) != 0) throw Failure::fromErrno(cannotWrite(target_), errno);
    return Sha256::ofFile(descriptor_, status.st_size, stop);
}

void AtomicFile::takeAttributes(FileAttributes attributes, bool withDates)
{
    attributes_ = std::move(attributes);
    takesDates_ = withDates;
}

void AtomicFile::makePrivate()
{
    fresh_ = AccessList::ofMode(fresh_.owner, fresh_.group, fresh_.ownerRights << 6);
}

void AtomicFile::adoptAttributes() const
{
    const auto attributes = attributes_ || bound_ ? attributes_ : FileAttributes::ofFileAt(target_);
    if (attributes)
        attributes->giveTo(descriptor_);
    else
        setAccess(descriptor_, bound_ ? fresh_.limitedBy(*bound_) : fresh_);
    if (attributes && takesDates_) attributes->giveDatesTo(descriptor_);
}

void AtomicFile::flush()
{
    if (isFlushed_) return;
    flushBuffer();
    adoptAttributes();
    // Without this a power cut after the rename could leave an empty file where a whole one stood.
    if (::fsync(descriptor_) != 0 && errno != EINVAL && errno != EROFS)
        throw Failure::fromErrno(cannotWrite(target_), errno);
    isFlushed_ = true;
}

void AtomicFile::prepareCommit()
{
    flush();
    if (temporaryName_.isEmpty()) {
        const QByteArray self = "/proc/self/fd/" + QByteArray::number(descriptor_);
        const QByteArray name = folder_ + '/' + temporaryName();
        if (::linkat(AT_FDCWD, self.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) != 0)
            throw Failure::fromErrno(cannotWrite(target_), errno);
        temporaryName_ = name;
    }
}

void AtomicFile::commit()
{
    prepareCommit();
    const Reason doing = cannotWrite(target_);
    requireReplaceable(target_);
    if (std::rename(temporaryName_.constData(), target_.bytes().constData()) != 0)
        throw Failure::fromErrno(doing, errno);
    close();
}

bool AtomicFile::commitInto(const FolderBelow& folder, const QString& name, bool mayReplace)
{
    prepareCommit();
    target_ = folder.path().child(name);
    const QByteArray bytes = nativePath(name);
    if (mayReplace) {
        requireReplaceable(target_);
        if (::renameat(AT_FDCWD, temporaryName_.constData(), folder.descriptor(), bytes.constData()) != 0)
            throw Failure::fromErrno(cannotWrite(target_), errno);
    } else if (!takeNewName(temporaryName_, folder.descriptor(), bytes, target_)) {
        return false;
    }
    close();
    return true;
}

void AtomicFile::close()
{
    temporaryName_.clear();
    const int closed = ::close(descriptor_);
    descriptor_ = -1;
    // Some network file systems report a lost write only here.
    if (closed != 0 && errno != EINTR) throw Failure::fromErrno(cannotWrite(target_), errno);
}

void AtomicFile::writeWhole(const FilePath& path, const QByteArray& bytes)
{
    AtomicFile file(path);
    file.write(bytes);
    file.commit();
}

} // namespace quillfern::store
