#pragma once

#include <QDropEvent>

namespace quillfern {

/// Accepts a drag or drop as a copy, whatever its source proposes: after a move the source would remove what
/// was dragged. A source that offers no copy is refused; false then.
inline bool acceptAsCopy(QDropEvent& event)
{
    if (!event.possibleActions().testFlag(Qt::CopyAction)) {
        event.ignore();
        return false;
    }
    event.setDropAction(Qt::CopyAction);
    event.accept();
    return true;
}

} // namespace quillfern
