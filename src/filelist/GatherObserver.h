#pragma once

#include <QString>

namespace quillfern {

/// Told how gathering goes, on the main thread, while the gatherer waits.
class GatherObserver
{
  public:
    virtual ~GatherObserver() = default;
    /// The controls go to their busy state (false) or back to their idle one (true).
    virtual void resetViewObject(bool idle) = 0;
    /// Gathering has begun: the busy colour, the indicator.
    virtual void startProcess() = 0;
    /// It has ended; the totals are final.
    virtual void stopProcess() = 0;
    /// The text for the label that shows the time.
    virtual void updateTimeTakenLabel(const QString& text) = 0;
    /// Some more files are in the list.
    virtual void filesAdded() {}
};

} // namespace quillfern
