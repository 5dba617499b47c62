#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <memory>

namespace quillfern::desktop {

/// Turns the signals that ask a program to end (SIGTERM, SIGINT, SIGHUP) into a Qt signal, so that the
/// program can save what has to be saved. A signal that the program was started to ignore stays ignored. One
/// object at a time; main thread.
class TerminationSignals final : public QObject
{
    Q_OBJECT

  public:
    /// From now on the system's signals wait for the event loop.
    TerminationSignals();
    /// Gives the signals their usual effect again.
    ~TerminationSignals() override;

  Q_SIGNALS:
    /// The program is asked to end; emitted once. From then on a further signal ends the program at once.
    void received();

  private:
    void forward();

    std::unique_ptr<QSocketNotifier> notifier_; ///< null when the system has no pipe left
};

} // namespace quillfern::desktop
