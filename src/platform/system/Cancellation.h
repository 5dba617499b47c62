#pragma once

#include "platform/system/Failure.h"

#include <stop_token>

namespace quillfern {

/// Thrown inside work on a file that was given up by request. Nothing of the work has a name yet, so nothing
/// remains of it.
class Cancelled final : public Failure
{
  public:
    Cancelled()
        : Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The file was given up before it was done."))
    {
    }
};

/// Throws Cancelled once a stop was requested. Cheap enough for every row, block and object; whatever may
/// take longer than a tenth of a second calls this in between. A default-made token never stops.
inline void throwIfCancelled(const std::stop_token& stop)
{
    if (stop.stop_requested()) throw Cancelled();
}

} // namespace quillfern
