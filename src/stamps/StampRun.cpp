#include "stamps/StampRun.h"

#include "stamps/Placement.h"

namespace quillfern {

std::int32_t StampRun::getNextMarginAnchor(std::size_t index, bool isSymmetric, std::int32_t anchor)
{
    if (!isSymmetric) return anchor;
    if (index >= lastMarginAnchors_.size()) lastMarginAnchors_.resize(index + 1, None);
    std::int32_t& last = lastMarginAnchors_[index];
    last = last == None ? anchor : mirroredAnchor(last);
    return last;
}

void StampRun::reset()
{
    numberCounter = startNumber_;
    lastMarginAnchors_.clear();
}

} // namespace quillfern
