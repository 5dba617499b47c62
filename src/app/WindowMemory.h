#pragma once

#include "platform/store/DefaultsStore.h"

namespace quillfern {

class MainWindow;

/// Remembers what the user has made of the window: its size and place, the divider, the columns of both
/// tables and the order of the files. Main thread.
class WindowMemory
{
  public:
    /// The store outlives this.
    explicit WindowMemory(DefaultsStore& defaults) : defaults_(defaults) {}

    /// Gives the window what is remembered, where there is something and it makes sense. Before it is shown.
    void restore(MainWindow& window) const;
    /// Puts it into the store; it is on the disk after the store's next flush.
    void remember(MainWindow& window);

  private:
    DefaultsStore& defaults_;
};

} // namespace quillfern
