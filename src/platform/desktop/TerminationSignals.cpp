#include "platform/desktop/TerminationSignals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <tuple>
#include <unistd.h>

namespace quillfern::desktop {

namespace {

constexpr std::array signalsToEnd = {SIGTERM, SIGINT, SIGHUP};

std::atomic<int> writeEnd = -1;

/// Only what is safe in the middle of anything: the event loop sees the byte and does the rest.
extern "C" void noteSignal(int)
{
    const int error = errno;
    std::ignore = ::write(writeEnd, "", 1);
    errno = error;
}

/// Gives those signals that are not ignored another effect.
void setEffect(void (*effect)(int))
{
    for (const int number : signalsToEnd) {
        struct sigaction action = {};
        if (::sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
        action = {};
        action.sa_handler = effect;
        action.sa_flags = SA_RESTART;
        ::sigaction(number, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals()
{
    std::array<int, 2> ends = {-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    writeEnd = ends[1];
    notifier_ = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &TerminationSignals::forward);
    setEffect(noteSignal);
}

TerminationSignals::~TerminationSignals()
{
    if (!notifier_) return;
    setEffect(SIG_DFL);
    const auto readEnd = static_cast<int>(notifier_->socket());
    notifier_.reset();
    ::close(readEnd);
    ::close(writeEnd.exchange(-1));
}

void TerminationSignals::forward()
{
    notifier_->setEnabled(false);
    Q_EMIT received();
    setEffect(SIG_DFL);
}

} // namespace quillfern::desktop
