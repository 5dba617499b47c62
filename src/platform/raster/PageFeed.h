#pragma once

#include "platform/raster/RasterPage.h"
#include "platform/raster/RasterReader.h"

#include <cstddef>
#include <future>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace quillfern::raster {

/// Hands out pages of a reader in ascending order, decoding the next ones on threads of
/// their own while the caller works on the present one: two at a time when the first page is small and the
/// reader has a twin. Pages too large to be decoded ahead are decoded when asked for.
class PageFeed
{
  public:
    /// `reader` must outlive the feed and stands before its first page. `pages` are 1-based and ascending;
    /// those between them are passed over.
    PageFeed(RasterReader& reader, std::vector<int> pages, const std::stop_token& stop = {});
    /// All pages from `first` to `last`.
    PageFeed(RasterReader& reader, int first, int last, const std::stop_token& stop = {});
    /// Gives up the pages being decoded.
    ~PageFeed();
    PageFeed(const PageFeed&) = delete;
    PageFeed& operator=(const PageFeed&) = delete;

    /// The next page; nothing after the last. Throws the reader's Failure, or Cancelled soon after the
    /// stop is requested, after which there are no more.
    [[nodiscard]] std::optional<RasterPage> next();

  private:
    struct Lane
    {
        RasterReader* reader;
        int position = 1;                                  ///< of the reader
        std::future<std::optional<RasterPage>> ahead = {}; ///< nothing for a page that is too large
    };

    void decodeAhead(Lane& lane, std::size_t index);

    struct Stop
    {
        std::stop_source& source;
        void operator()() const { source.request_stop(); }
    };

    std::stop_source ending_; ///< stops the decoders, on request and at the end of the feed
    std::stop_callback<Stop> onRequest_;
    std::unique_ptr<RasterReader> twin_;
    std::vector<int> pages_;
    std::size_t index_ = 0;   ///< in pages_, of the next to be handed out
    std::vector<Lane> lanes_; ///< one or two, which decode pages in turn
};

} // namespace quillfern::raster
