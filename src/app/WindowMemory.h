#pragma once

#include "platform/store/DefaultsStore.h"

namespace quillfern {

class MainWindow;

/// Saves and restores how the user arranged the window: its size and place, the divider, the columns of both
/// tables and the order of the files. Main thread.
class WindowMemory
{
  public:
    /// The store outlives this.
    explicit WindowMemory(store::DefaultsStore& defaults) : defaults_(defaults) {}

    /// Arranges the window as saved, as far as the store holds valid values. To be called before the window
    /// is shown.
    void restore(MainWindow& window) const;
    /// Puts the window's arrangement into the store, whose next flush writes it to the disk.
    void remember(MainWindow& window);

  private:
    store::DefaultsStore& defaults_;
};

} // namespace quillfern
