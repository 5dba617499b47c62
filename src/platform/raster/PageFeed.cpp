#include "platform/raster/PageFeed.h"

#include "platform/raster/RasterLimits.h"

namespace quillfern::raster {

PageFeed::PageFeed(RasterReader& reader, int first, int last, const std::stop_token& stop)
    : onRequest_(stop, Stop{ending_}), first_(first), last_(last), page_(first)
{
    lanes_.push_back({&reader});
    if (first < last && reader.nextPageBytes() <= static_cast<double>(largestPageInPairs))
        twin_ = reader.twin();
    if (twin_) lanes_.push_back({twin_.get()});
    for (Lane& lane : lanes_)
        decodeAhead(lane, first++);
}

PageFeed::~PageFeed()
{
    ending_.request_stop();
    for (const Lane& lane : lanes_)
        if (lane.ahead.valid()) lane.ahead.wait();
}

void PageFeed::decodeAhead(Lane& lane, int page)
{
    if (page > last_) return;
    for (; lane.position < page; ++lane.position)
        lane.reader->skipPage(ending_.get_token());
    ++lane.position;
    lane.ahead =
        std::async(std::launch::async,
                   [reader = lane.reader, stop = ending_.get_token()]() -> std::optional<RasterPage> {
                       if (reader->nextPageBytes() > static_cast<double>(largestPageAhead))
                           return std::nullopt;
                       return reader->readPage(stop);
                   });
}

std::optional<RasterPage> PageFeed::next()
{
    if (page_ > last_) return std::nullopt;
    Lane& lane = lanes_[static_cast<std::size_t>(page_ - first_) % lanes_.size()];
    std::optional<RasterPage> page = lane.ahead.get();
    if (!page) page = lane.reader->readPage(ending_.get_token());
    decodeAhead(lane, page_ + static_cast<int>(lanes_.size()));
    ++page_;
    return page;
}

} // namespace quillfern::raster
