#pragma once

#include "platform/raster/RasterPage.h"
#include "platform/raster/StripCodec.h"
#include "platform/raster/TiffContainer.h"
#include "platform/system/WorkerPool.h"

#include <QByteArray>
#include <QSizeF>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <future>
#include <stop_token>

namespace quillfern::store {
class AtomicFile;
}

namespace quillfern::raster {

/// Writes pages into a multi-page TIFF as they come. A page is cut into strips that are encoded on all cores
/// and written in order; meanwhile the caller prepares the next page. What is held in memory depends on the
/// size of a page and not on how many there are.
class RasterWriter
{
  public:
    /// `file` must outlive the writer, and is not committed here. Soon after a stop is requested, the
    /// functions throw Cancelled.
    /// `threads` encode; 0 stands for as many as there are processors.
    explicit RasterWriter(store::AtomicFile& file, std::stop_token stop = {}, int threads = 0);
    /// Gives up strips that wait to be encoded.
    ~RasterWriter();
    RasterWriter(const RasterWriter&) = delete;
    RasterWriter& operator=(const RasterWriter&) = delete;

    /// Adds a page under a TIFF compression code; one that does not suit the pixels is replaced by LZW. The
    /// pixels of pages without alpha are changed as JPEG coding at its best quality changes them, whatever
    /// the compression; bilevel pages skip that coding, because it would not change them. Throws Failure,
    /// here or at a later page.
    void addPage(RasterPage page, std::int32_t compression, const QSizeF& dotsPerInch);
    /// Writes what is left and the directories.
    void finish();

    [[nodiscard]] std::size_t pageCount() const { return pageCount_; }

  private:
    struct PageInWork
    {
        StripFormat format;
        std::uint32_t height = 0;
        std::uint32_t rowsPerStrip = 0;
        QSizeF dotsPerInch;
        QByteArray colourProfile;
        PageTags tags;
        QImage image;              ///< as long as strips of it are not given to the encoder
        std::uint32_t nextRow = 0; ///< the first of these
        std::deque<std::future<QByteArray>> strips;
    };

    /// Gives the strips above `rows` to the encoder.
    void encodeAhead(PageInWork& work, std::uint32_t rows);
    void writeUpTo(std::size_t pagesLeft);

    std::stop_token stop_;
    TiffFileOutput output_;
    TiffContainer container_;
    std::deque<PageInWork> inWork_;
    std::size_t pageCount_ = 0;
    WorkerPool pool_; ///< the last member, so that its threads end before the others are destroyed
};

} // namespace quillfern::raster
