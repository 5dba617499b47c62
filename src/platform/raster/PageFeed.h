#pragma once

#include "platform/raster/RasterReader.h"

#include <future>
#include <optional>

namespace quillfern {

/// Hands out the pages of a reader from `first` to `last` (1-based), decoding the next one on a thread of its
/// own while the caller works on the present one. Pages too large for that are decoded when they are asked
/// for.
class PageFeed
{
  public:
    PageFeed(RasterReader& reader, int first, int last);
    /// Waits for the page being decoded.
    ~PageFeed();
    PageFeed(const PageFeed&) = delete;
    PageFeed& operator=(const PageFeed&) = delete;

    /// The next page; nothing after the last. Throws the reader's Failure.
    [[nodiscard]] std::optional<RasterPage> next();

  private:
    void decodeAhead();

    RasterReader& reader_;
    int first_;
    int last_;
    int position_ = 1; ///< of the reader
    std::future<RasterPage> ahead_;
};

} // namespace quillfern
