#pragma once

#include "platform/store/DefaultsStore.h"

namespace quillfern {

/// Whether folders are walked with their subfolders: the user's preference, kept in the defaults store.
class IncludeSubfolders
{
  public:
    /// The store is not owned and outlives this.
    explicit IncludeSubfolders(store::DefaultsStore& store) : store_(store) {}

    /// False when never set.
    [[nodiscard]] bool inculdeSubfolders() const;
    /// On the disk when this returns; a store that cannot be written is told of in the system log.
    void setInculdeSubfolders(bool include);

  private:
    store::DefaultsStore& store_;
};

} // namespace quillfern
