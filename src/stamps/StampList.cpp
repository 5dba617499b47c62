#include "stamps/StampList.h"

namespace quillfern {

StampValues valuesOf(const StampList& stamps)
{
    StampValues values;
    values.reserve(stamps.size());
    for (const auto& stamp : stamps)
        values.push_back(stamp->clone());
    return values;
}

StampValues filledIn(const StampValues& stamps, const FillIns& fillIns)
{
    StampValues values = stamps;
    for (auto& stamp : values)
        if (std::shared_ptr<const IStampItem> filled = stamp->filledIn(fillIns)) stamp = std::move(filled);
    return values;
}

} // namespace quillfern
