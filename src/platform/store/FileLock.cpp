#include "platform/store/FileLock.h"

#include "platform/system/Cancellation.h"
#include "platform/system/Failure.h"

#include <QDeadlineTimer>
#include <QThread>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillfern::store {

void lockOpenFile(int descriptor, const FilePath& path, int patience, const std::stop_token& stop)
{
    const QDeadlineTimer deadline(patience);
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) return;
        throwIfCancelled(stop);
        if (deadline.hasExpired())
            throw Failure({QT_TRANSLATE_NOOP("quillfern::Failure", "%1 is held by another program."),
                           {path.readable()}});
        QThread::msleep(5);
    }
}

FileLock::FileLock(const FilePath& path, int patience)
    : descriptor_(::open(path.bytes().constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR))
{
    if (descriptor_ < 0)
        throw Failure::fromErrno(QStringLiteral("%1 cannot be written.").arg(path.readable()), errno);
    try {
        lockOpenFile(descriptor_, path, patience);
    } catch (...) {
        ::close(descriptor_);
        throw;
    }
}

FileLock::~FileLock()
{
    ::close(descriptor_);
}

} // namespace quillfern::store
