#pragma once

#include "platform/raster/StripCodec.h"

#include <QSizeF>
#include <cstdint>
#include <vector>

namespace quillfern {

class AtomicFile;

/// Lays a multi-page TIFF out in a file: encoded strips as they come, and all directories at the end, when it
/// is known whether the offsets fit 32 bits. A document stays a classic TIFF as long as it can and becomes a
/// BigTIFF otherwise; the time for a page does not grow with the number of pages before it.
class TiffContainer
{
  public:
    /// Nothing must have been written to `file`, which must outlive this object and is not committed here.
    /// `classicLimit` is the size from which the document becomes a BigTIFF.
    explicit TiffContainer(AtomicFile& file, std::uint64_t classicLimit = 0xFFFFFFFFU);

    /// Begins the next page; its strips follow from the top.
    void beginPage(const StripFormat& format, std::uint32_t height, std::uint32_t rowsPerStrip,
                   const QSizeF& dotsPerInch, const QByteArray& colourProfile);
    void addStrip(const QByteArray& encoded);
    /// Writes the directories and the header. Throws Failure, as all of them do, when the file cannot be
    /// written.
    void finish();

    [[nodiscard]] std::size_t pageCount() const { return pages_.size(); }

  private:
    struct Page
    {
        StripFormat format;
        std::uint32_t height = 0;
        std::uint32_t rowsPerStrip = 0;
        QSizeF dotsPerInch;
        std::uint64_t profileOffset = 0;
        std::uint64_t profileSize = 0;
        std::vector<std::uint64_t> offsets;
        std::vector<std::uint64_t> sizes;
    };

    std::uint64_t append(const QByteArray& bytes);
    [[nodiscard]] static QByteArray directory(const Page& page, bool isBig, std::uint64_t at, bool isLast);

    AtomicFile& file_;
    std::uint64_t classicLimit_;
    std::uint64_t end_; ///< where the next bytes go
    std::vector<Page> pages_;
};

} // namespace quillfern
