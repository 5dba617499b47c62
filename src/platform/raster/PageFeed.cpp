#include "platform/raster/PageFeed.h"

#include "platform/raster/RasterLimits.h"

namespace quillfern {

PageFeed::PageFeed(RasterReader& reader, int first, int last) : reader_(reader), first_(first), last_(last)
{
}

PageFeed::~PageFeed()
{
    if (ahead_.valid()) ahead_.wait();
}

void PageFeed::decodeAhead()
{
    ++position_;
    ahead_ = std::async(std::launch::async, [this] { return reader_.readPage(); });
}

std::optional<RasterPage> PageFeed::next()
{
    for (; position_ < first_ && position_ <= last_; ++position_)
        reader_.skipPage();
    if (!ahead_.valid()) {
        if (position_ > last_) return std::nullopt;
        decodeAhead();
    }
    RasterPage page = ahead_.get();
    if (position_ <= last_ && page.image.sizeInBytes() <= largestPageAhead) decodeAhead();
    return page;
}

} // namespace quillfern
