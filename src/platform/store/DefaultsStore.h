#pragma once

#include "platform/store/Record.h"

#include <QString>
#include <optional>

namespace quillfern::store {

/// The per-user store of values that outlive a run. An interface, so that tests keep values in memory. Main
/// thread.
class DefaultsStore
{
  public:
    virtual ~DefaultsStore() = default;
    /// The value under `key`; nothing when there is none.
    [[nodiscard]] virtual std::optional<RecordValue> value(const QString& key) const = 0;
    /// Sets a value; it is on the disk after the next flush.
    virtual void setValue(const QString& key, RecordValue value) = 0;
    /// Writes what was set. Throws Failure; the store on the disk is then as it was.
    virtual void flush() = 0;
};

} // namespace quillfern::store
