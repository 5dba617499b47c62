#pragma once

#include "platform/store/DefaultsStore.h"

namespace quillfern {

/// Whether folders are walked with their subfolders: the user's preference, kept in the defaults store.
class IncludeSubfolders
{
  public:
    /// The store is not owned and must outlive this object.
    explicit IncludeSubfolders(store::DefaultsStore& store) : store_(store) {}

    /// False when never set.
    [[nodiscard]] bool inculdeSubfolders() const;
    /// The value is on the disk when this function returns; a failure to write is reported in the system log.
    void setInculdeSubfolders(bool include);

  private:
    store::DefaultsStore& store_;
};

} // namespace quillfern
