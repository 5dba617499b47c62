#include "config/JobConfiguration.h"

namespace quillfern {

bool hasChosenParity(const JobConfiguration& job, std::int64_t index)
{
    switch (job.pageRange) {
    case PageRange::AllPages:
        return true;
    case PageRange::OddPages:
        return index % 2 == 1;
    case PageRange::EvenPages:
        return index % 2 == 0;
    default:
        return false;
    }
}

} // namespace quillfern
