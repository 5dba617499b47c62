#include "stamps/StampRun.h"

#include "stamps/Placement.h"

namespace quillfern {

MarginAnchor StampRun::getNextMarginAnchor(std::size_t index, bool isSymmetric, MarginAnchor anchor)
{
    if (!isSymmetric) return anchor;
    if (index >= lastMarginAnchors_.size()) lastMarginAnchors_.resize(index + 1, MarginAnchor::None);
    MarginAnchor& last = lastMarginAnchors_[index];
    last = last == MarginAnchor::None ? anchor : mirroredAnchor(last);
    return last;
}

void StampRun::reset()
{
    numberCounter = startNumber_;
    lastMarginAnchors_.clear();
}

} // namespace quillfern
