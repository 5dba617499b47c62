#include "stamps/StampRun.h"

#include "stamps/Placement.h"

#include <algorithm>

namespace quillfern {

MarginAnchor StampRun::getNextMarginAnchor(std::size_t index, bool isSymmetric, MarginAnchor anchor)
{
    if (!isSymmetric) return anchor;
    if (index >= lastMarginAnchors_.size()) lastMarginAnchors_.resize(index + 1, MarginAnchor::None);
    MarginAnchor& last = lastMarginAnchors_[index];
    last = last == MarginAnchor::None ? anchor : mirroredAnchor(last);
    return last;
}

StampRun StampRun::after(std::int64_t pages, std::int64_t numberSteps, const StampValues& stamps) const
{
    StampRun run = *this;
    if (pages <= 0) return run;
    run.numberCounter += pages * numberSteps;
    for (std::size_t i = 0; i < stamps.size(); ++i) {
        if (!stamps[i]->isSelected()) continue;
        // The sides repeat after two pages; only the first page of a run is special.
        for (std::int64_t page = std::min(pages, pages % 2 + 2); page > 0; --page)
            (void)run.getNextMarginAnchor(i, stamps[i]->isSymmetry(), stamps[i]->marginAnchor());
    }
    return run;
}

void StampRun::reset()
{
    numberCounter = startNumber_;
    lastMarginAnchors_.clear();
}

} // namespace quillfern
