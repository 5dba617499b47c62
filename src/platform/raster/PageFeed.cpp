#include "platform/raster/PageFeed.h"

#include "platform/raster/RasterLimits.h"

#include <algorithm>
#include <numeric>

namespace quillfern::raster {

namespace {

std::vector<int> pagesFrom(int first, int last)
{
    std::vector<int> pages(static_cast<std::size_t>(std::max(0, last - first + 1)));
    std::iota(pages.begin(), pages.end(), first);
    return pages;
}

} // namespace

PageFeed::PageFeed(RasterReader& reader, int first, int last, const std::stop_token& stop)
    : PageFeed(reader, pagesFrom(first, last), stop)
{
}

PageFeed::PageFeed(RasterReader& reader, std::vector<int> pages, const std::stop_token& stop)
    : onRequest_(stop, Stop{ending_}), pages_(std::move(pages))
{
    lanes_.push_back({&reader});
    if (pages_.size() > 1 && reader.nextPageBytes() <= static_cast<double>(largestPageInPairs))
        twin_ = reader.twin();
    if (twin_) lanes_.push_back({twin_.get()});
    for (std::size_t i = 0; i < lanes_.size(); ++i)
        decodeAhead(lanes_[i], i);
}

PageFeed::~PageFeed()
{
    ending_.request_stop();
    for (const Lane& lane : lanes_)
        if (lane.ahead.valid()) lane.ahead.wait();
}

void PageFeed::decodeAhead(Lane& lane, std::size_t index)
{
    if (index >= pages_.size()) return;
    for (; lane.position < pages_[index]; ++lane.position)
        lane.reader->skipPage(ending_.get_token());
    ++lane.position;
    // Where the system allows no further thread, next() does the work.
    lane.ahead =
        std::async(std::launch::async | std::launch::deferred,
                   [reader = lane.reader, stop = ending_.get_token()]() -> std::optional<RasterPage> {
                       if (reader->nextPageBytes() > static_cast<double>(largestPageAhead))
                           return std::nullopt;
                       return reader->readPage(stop);
                   });
}

std::optional<RasterPage> PageFeed::next()
{
    if (index_ == pages_.size()) return std::nullopt;
    Lane& lane = lanes_[index_ % lanes_.size()];
    std::optional<RasterPage> page = lane.ahead.get();
    if (!page) page = lane.reader->readPage(ending_.get_token());
    decodeAhead(lane, index_ + lanes_.size());
    ++index_;
    return page;
}

} // namespace quillfern::raster
