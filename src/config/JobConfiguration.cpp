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

std::int64_t stampedPages(const JobConfiguration& job, std::int64_t pages)
{
    std::int64_t count = 0;
    for (std::int64_t page = 1; page <= pages; ++page)
        if (isInPageRange(job, page) && hasChosenParity(job, page)) ++count;
    return count;
}

} // namespace quillfern
