#pragma once

#include <QObject>
#include <atomic>

namespace quillfern {

/// What the window is busy with: one thing at a time, or nothing. Everything that looks or behaves
/// differently meanwhile observes this and keeps no flag of its own. Main thread.
class Activity final : public QObject
{
    Q_OBJECT

  public:
    enum class State {
        Idle,
        Gathering, ///< files are looked for and their pages counted
        Job,       ///< from the start of a job until its progress sheet is closed
    };

    [[nodiscard]] State state() const { return state_; }
    [[nodiscard]] bool isIdle() const { return state_ == State::Idle; }
    [[nodiscard]] bool isGathering() const { return state_ == State::Gathering; }
    [[nodiscard]] bool isJob() const { return state_ == State::Job; }
    /// True unless idle, for classes that read a flag instead of observing signals. Any thread.
    [[nodiscard]] const std::atomic<bool>& busy() const { return busy_; }

    /// Leaves the idle state. False, with nothing changed, when something else is under way.
    bool begin(State state);
    /// Goes back to the idle state if `state` is what is under way.
    void end(State state);

  Q_SIGNALS:
    /// The idle state is about to be left; all controls are still as they were.
    void aboutToBegin();
    /// The state has changed; controls are to show the new state.
    void changed();
    /// The state is idle again, and everything that observes changed() shows this.
    void ended();

  private:
    void enter(State state);

    State state_ = State::Idle;
    std::atomic<bool> busy_ = false; ///< follows state_
};

} // namespace quillfern
