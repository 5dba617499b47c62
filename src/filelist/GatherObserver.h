#pragma once

#include <QString>

namespace quillfern {

/// Is notified of the progress of gathering, on the main thread, while the gathering thread waits.
class GatherObserver
{
  public:
    virtual ~GatherObserver() = default;
    /// The controls go to their busy state (false) or back to their idle one (true).
    virtual void resetViewObject(bool idle) = 0;
    /// Gathering has begun: the busy colour and the indicator are to be shown.
    virtual void startProcess() = 0;
    /// Gathering has ended; the totals are final.
    virtual void stopProcess() = 0;
    /// The text for the label that shows the time.
    virtual void updateTimeTakenLabel(const QString& text) = 0;
    /// Some more files are in the list.
    virtual void filesAdded() {}
};

} // namespace quillfern
