#pragma once

#include "stamps/IStampItem.h"

namespace quillfern {

/// What an editor asks of whoever holds the list of stamps. The list's owner also keeps a stamp alive that is
/// being edited and not in the list yet. Main thread.
class StampHost
{
  public:
    virtual ~StampHost() = default;
    /// Puts the stamp at the end of the list.
    virtual void addStamp(IStampItem& stamp) = 0;
    /// Takes the stamp out of the list, which ends its editor. The editor must not touch anything of its own
    /// after this call.
    virtual void removeStamp(IStampItem& stamp) = 0;
    /// A property has changed that lists show and the preview does not.
    virtual void stampRenamed(IStampItem& stamp) = 0;
};

} // namespace quillfern
