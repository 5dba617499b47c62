#include "app/Activity.h"

namespace quillfern {

bool Activity::begin(State state)
{
    if (!isIdle()) return false;
    Q_EMIT aboutToBegin();
    enter(state);
    return true;
}

void Activity::end(State state)
{
    if (isIdle() || state_ != state) return;
    enter(State::Idle);
    Q_EMIT ended();
}

void Activity::enter(State state)
{
    state_ = state;
    busy_ = state != State::Idle;
    Q_EMIT changed();
}

} // namespace quillfern
