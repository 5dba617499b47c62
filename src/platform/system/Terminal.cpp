#include "platform/system/Terminal.h"

#include "platform/system/Failure.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace quillfern {

void keepStandardStreams()
{
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (::fcntl(stream, F_GETFD) >= 0) continue;
        // The lowest free number is the one that is missing.
        const int opened = ::open("/dev/null", O_RDWR);
        if (opened >= 0 && opened != stream) ::close(opened);
    }
}

int terminalColumns()
{
    struct winsize size = {};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

QByteArray readStandardInput(qint64 most, const std::function<bool()>& goOn)
{
    constexpr int patience = 200; // milliseconds
    QByteArray bytes;
    std::array<char, 65536> block;
    while (goOn()) {
        // A signal restarts a read that waits, so that the wait is for poll(), which it ends.
        struct pollfd input = {STDIN_FILENO, POLLIN, 0};
        const int ready = ::poll(&input, 1, patience);
        if (ready == 0 || (ready < 0 && errno == EINTR)) continue;
        const ssize_t count = ::read(STDIN_FILENO, block.data(), block.size());
        if (count == 0) break;
        if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        if (count < 0)
            throw Failure::fromErrno(
                QT_TRANSLATE_NOOP("quillfern::Failure", "The standard input cannot be read."), errno);
        bytes.append(block.data(), count);
        if (bytes.size() > most)
            throw Failure(
                QT_TRANSLATE_NOOP("quillfern::Failure", "The standard input is too large for a list."));
    }
    return bytes;
}

} // namespace quillfern
