#include "config/JobConfiguration.h"

namespace quillfern {

bool hasChosenParity(const JobConfiguration& job, std::int64_t index)
{
    switch (job.pageRange) {
    case AllPages:
        return true;
    case OddPages:
        return index % 2 == 1;
    case EvenPages:
        return index % 2 == 0;
    default:
        return false;
    }
}

} // namespace quillfern
