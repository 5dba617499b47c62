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

} // namespace quillfern
