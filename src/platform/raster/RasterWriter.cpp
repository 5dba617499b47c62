#include "platform/raster/RasterWriter.h"

#include "platform/raster/BilevelPixels.h"
#include "platform/raster/JpegCodec.h"
#include "platform/raster/RasterLimits.h"
#include "platform/system/Cancellation.h"

#include <algorithm>
#include <cstring>
#include <thread>
#include <tiff.h>
#include <vector>

namespace quillfern::raster {

namespace {

/// What a strip holds before encoding, about: enough to compress well, little enough to stay in the cache.
constexpr std::size_t stripBytes = std::size_t{1} << 18;
/// Strips of a huge page that are encoded before the first of them is written.
constexpr std::uint32_t stripsAhead = 64;
constexpr std::uint32_t rowUnit = 8; ///< JPEG's blocks

std::uint32_t rowsPerStrip(const StripFormat& format, std::uint32_t height)
{
    const auto rows = static_cast<std::uint32_t>(
        std::min<std::size_t>(stripBytes / format.rowBytes() / rowUnit * rowUnit, height));
    return std::max(rows, rowUnit);
}

/// Row `y` as one bit a pixel.
void packRow(const QImage& image, int y, const StripFormat& format, uchar* target)
{
    if (image.depth() == 8)
        packBits(image.constScanLine(y), format.width, format.isWhiteZero ? 0xFFU : 0U, target);
    else
        std::memcpy(target, image.constScanLine(y), format.rowBytes());
}

/// True when every row can be read back under the format's code.
bool canBeRead(const QImage& image, const StripFormat& format)
{
    if (format.compression != COMPRESSION_CCITTRLE && format.compression != COMPRESSION_CCITTFAX3)
        return true;
    std::vector<uchar> row(format.rowBytes());
    for (int y = 0; y < image.height(); ++y) {
        packRow(image, y, format, row.data());
        if (hasTooManyRuns(format, row.data())) return false;
    }
    return true;
}

QByteArray encodeRows(const QImage& image, int top, int rows, const StripFormat& format)
{
    if (format.isJpeg())
        return encodeJpeg(image.constScanLine(top), image.width(), rows, format.channels,
                          static_cast<int>(image.bytesPerLine()));
    const std::size_t rowBytes = format.rowBytes();
    QByteArray bytes(static_cast<qsizetype>(rowBytes) * rows, Qt::Uninitialized);
    auto* target = reinterpret_cast<uchar*>(bytes.data());
    for (int y = 0; y < rows; ++y, target += rowBytes) {
        if (format.isBilevel)
            packRow(image, top + y, format, target);
        else
            std::memcpy(target, image.constScanLine(top + y), rowBytes);
    }
    if (!format.isBilevel && format.channels != 4)
        jpegRoundTrip(reinterpret_cast<uchar*>(bytes.data()), image.width(), rows, format.channels);
    return encodeStrip(format, std::move(bytes));
}

} // namespace

RasterWriter::RasterWriter(store::AtomicFile& file, std::stop_token stop, int threads)
    : stop_(std::move(stop)), output_(file), container_(output_),
      pool_(threads > 0 ? threads : static_cast<int>(std::thread::hardware_concurrency()))
{
}

RasterWriter::~RasterWriter()
{
    pool_.clear();
    (void)pool_.waitForDone();
}

void RasterWriter::addPage(RasterPage page, std::int32_t compression, const QSizeF& dotsPerInch)
{
    PageInWork work;
    work.format.width = static_cast<std::uint32_t>(page.image.width());
    work.format.channels = static_cast<std::uint16_t>(page.channels());
    work.format.isBilevel = page.isBilevel;
    work.format.isWhiteZero = page.isWhiteZero;
    work.format.group3Options = page.group3Options;
    work.format.compression = suitableCompression(compression, work.format);
    if (!canBeRead(page.image, work.format)) work.format.compression = COMPRESSION_LZW;
    work.height = static_cast<std::uint32_t>(page.image.height());
    work.rowsPerStrip = rowsPerStrip(work.format, work.height);
    work.dotsPerInch = dotsPerInch;
    work.colourProfile = page.colourProfile;
    work.tags = page.tags;

    work.image = std::move(page.image);
    inWork_.push_back(std::move(work));
    ++pageCount_;
    const qsizetype size = inWork_.back().image.sizeInBytes();
    if (size > largestPageAhead) {
        writeUpTo(0);
        return;
    }
    encodeAhead(inWork_.back(), inWork_.back().height);
    inWork_.back().image = QImage();
    // A large page that is encoded while the next is decoded keeps all cores at work.
    writeUpTo(size > largestPageInPairs ? 0 : 1);
}

void RasterWriter::encodeAhead(PageInWork& work, std::uint32_t rows)
{
    for (; work.nextRow < std::min(rows, work.height); work.nextRow += work.rowsPerStrip) {
        const auto top = static_cast<int>(work.nextRow);
        const auto count = static_cast<int>(std::min(work.rowsPerStrip, work.height - work.nextRow));
        // The image is shared by the strips' tasks and freed with the last of them.
        auto task = std::make_shared<std::packaged_task<QByteArray()>>(
            [image = work.image, top, count, format = work.format, stop = stop_] {
                throwIfCancelled(stop);
                return encodeRows(image, top, count, format);
            });
        work.strips.push_back(task->get_future());
        pool_.start([task = std::move(task)]() mutable {
            (*task)();
            task.reset();
        });
    }
}

void RasterWriter::writeUpTo(std::size_t pagesLeft)
{
    while (inWork_.size() > pagesLeft) {
        PageInWork& work = inWork_.front();
        container_.beginPage(work.format, work.height, work.rowsPerStrip, work.dotsPerInch,
                             work.colourProfile, work.tags);
        while (work.nextRow < work.height || !work.strips.empty()) {
            throwIfCancelled(stop_);
            const auto ahead = static_cast<std::uint32_t>(work.strips.size());
            if (ahead < stripsAhead)
                encodeAhead(work, work.nextRow + work.rowsPerStrip * (stripsAhead - ahead));
            container_.addStrip(work.strips.front().get());
            work.strips.pop_front();
        }
        inWork_.pop_front();
    }
}

void RasterWriter::finish()
{
    writeUpTo(0);
    container_.finish();
}

} // namespace quillfern::raster
