#pragma once

#include "platform/store/Record.h"

namespace quillfern {

/// The keys of a record in their order, which is part of the format.
[[nodiscard]] inline QStringList keysOf(const store::Record& record)
{
    QStringList keys;
    for (const auto& entry : record.entries())
        keys.append(entry.first);
    return keys;
}

} // namespace quillfern
