#include "platform/raster/TiffStrips.h"

#include "platform/raster/RasterLimits.h"
#include "platform/raster/TiffDecoder.h"
#include "platform/raster/TiffFile.h"
#include "platform/raster/TiffRows.h"
#include "platform/system/Cancellation.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <future>
#include <libdeflate.h>
#include <memory>
#include <optional>
#include <system_error>
#include <vector>

namespace quillfern::raster {

namespace {

constexpr auto damaged = QT_TRANSLATE_NOOP("quillfern::Failure", "A page of the file is damaged or cut off.");
/// Strips above this are not decoded whole.
constexpr std::size_t largestWholeStrip = std::size_t{1} << 22;

bool isDeflate(const TiffPageInfo& info)
{
    return info.compression == COMPRESSION_ADOBE_DEFLATE || info.compression == COMPRESSION_DEFLATE;
}

std::uint32_t rowsPerStrip(const TiffFile& file, const TiffPageInfo& info)
{
    return std::clamp<std::uint32_t>(file.field<std::uint32_t>(TIFFTAG_ROWSPERSTRIP, info.height), 1,
                                     info.height);
}

/// Rows of an image that several threads fill.
struct Target
{
    uchar* bits;
    std::size_t pitch;

    [[nodiscard]] uchar* row(std::uint32_t y) const { return bits + pitch * y; }
};

/// Turns differences from the pixel to the left into samples.
template <std::size_t channels>
void accumulate(uchar* row, std::size_t size)
{
    std::array<uchar, channels> last = {};
    for (std::size_t i = 0; i + channels <= size; i += channels)
        for (std::size_t c = 0; c < channels; ++c)
            row[i + c] = last[c] = static_cast<uchar>(last[c] + row[i + c]);
}

struct DecompressorFree
{
    void operator()(libdeflate_decompressor* decompressor) const
    {
        libdeflate_free_decompressor(decompressor);
    }
};

/// Strips of bytes under Deflate, without libtiff's copies and its slow predictor.
class DeflatedStrips
{
  public:
    DeflatedStrips(TiffFile& file, const TiffPageInfo& info)
        : file_(file), channels_(info.samples), rowsPerStrip_(rowsPerStrip(file, info)),
          hasDifferences_(file.field<std::uint16_t>(TIFFTAG_PREDICTOR, PREDICTOR_NONE) ==
                          PREDICTOR_HORIZONTAL),
          inflater_(libdeflate_alloc_decompressor())
    {
    }

    /// True for pages that this class reads.
    [[nodiscard]] static bool canRead(const TiffFile& file, const TiffPageInfo& info)
    {
        const auto predictor = file.field<std::uint16_t>(TIFFTAG_PREDICTOR, PREDICTOR_NONE);
        return isDeflate(info) && info.bits == 8 && (info.samples == 1 || info.samples == 3) &&
               (predictor == PREDICTOR_NONE || predictor == PREDICTOR_HORIZONTAL) &&
               file.field<std::uint16_t>(TIFFTAG_FILLORDER, FILLORDER_MSB2LSB) == FILLORDER_MSB2LSB;
    }

    /// Fills `rows` rows of `size` bytes; false where the strip does not give them.
    [[nodiscard]] bool read(std::uint32_t strip, uchar* into, std::uint32_t rows, std::size_t size)
    {
        const std::uint64_t stored = TIFFGetStrileByteCount(file_.handle(), strip);
        // What is stated may be too much and the strip whole all the same.
        if (!inflater_ || TIFFGetStrileOffset(file_.handle(), strip) + stored > file_.size())
            throw Failure(damaged);
        packed_.resize(std::max<std::size_t>(packed_.size(), stored));
        const auto count = static_cast<tmsize_t>(stored);
        if (TIFFReadRawStrip(file_.handle(), strip, packed_.data(), count) != count) return false;
        const auto result = libdeflate_zlib_decompress(
            inflater_.get(), packed_.data(), static_cast<std::size_t>(stored), into, size * rows, nullptr);
        // The last strip of some files holds rows beyond the page.
        const bool mayBeLonger = rows < rowsPerStrip_;
        if (result != LIBDEFLATE_SUCCESS && !(mayBeLonger && result == LIBDEFLATE_INSUFFICIENT_SPACE))
            return false;
        for (std::uint32_t y = 0; hasDifferences_ && y < rows; ++y) {
            uchar* row = into + size * y;
            channels_ == 1 ? accumulate<1>(row, size) : accumulate<3>(row, size);
        }
        return true;
    }

  private:
    TiffFile& file_;
    std::uint16_t channels_;
    std::uint32_t rowsPerStrip_;
    bool hasDifferences_;
    std::unique_ptr<libdeflate_decompressor, DecompressorFree> inflater_;
    std::vector<uchar> packed_;
};

/// Decodes the rows from `first` on, with which a strip begins, up to `last`.
void decodeRange(TiffFile& file, const TiffPageInfo& info, const Target& target, std::uint32_t first,
                 std::uint32_t last)
{
    TIFF* tiff = file.handle();
    if (info.photometric == PHOTOMETRIC_YCBCR) TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    TiffRows rows(file, info);
    const tmsize_t stated = TIFFScanlineSize(tiff);
    const std::size_t needed = (std::size_t{info.width} * info.bits * info.samples + 7) / 8;
    if (stated <= 0 || static_cast<std::size_t>(stated) < needed) throw file.failure(damaged);
    const auto size = static_cast<std::size_t>(stated);
    const std::uint32_t perStrip = rowsPerStrip(file, info);
    const bool isWhole = isDeflate(info) && size * perStrip <= largestWholeStrip;
    const std::uint32_t step = isWhole ? perStrip : 1;
    const bool isVerbatim = rows.isVerbatim() && size <= target.pitch;
    const bool isDirect = isVerbatim && (step == 1 || size == target.pitch);
    std::vector<uchar> buffer(isDirect ? 0 : size * step);
    std::optional<DeflatedStrips> deflated;
    if (isWhole && DeflatedStrips::canRead(file, info)) deflated.emplace(file, info);
    for (std::uint32_t y = first; y < last; y += step) {
        throwIfCancelled(file.stop());
        const std::uint32_t count = std::min(step, last - y);
        uchar* into = isDirect ? target.row(y) : buffer.data();
        const auto bytes = static_cast<tmsize_t>(size * count);
        const bool isRead = deflated  ? deflated->read(y / perStrip, into, count, size)
                            : isWhole ? TIFFReadEncodedStrip(tiff, y / perStrip, into, bytes) == bytes
                                      : TIFFReadScanline(tiff, into, y) >= 0;
        if (!isRead && isWhole && !file.ranOut()) throw DamagedStrip(damaged);
        if (!isRead) throw file.failure(damaged);
        for (std::uint32_t row = 0; !isDirect && row < count; ++row) {
            if (isVerbatim)
                std::memcpy(target.row(y + row), into + size * row, size);
            else
                rows.convert(into + size * row, info.width, target.row(y + row));
        }
    }
    if (file.hasError()) throw file.failure(damaged);
}

} // namespace

bool gainsByStrips(const TiffFile& file, const TiffPageInfo& info)
{
    const bool isPlain = !TIFFIsTiled(file.handle()) && !info.hasFloats && TiffRows::canConvert(info) &&
                         (info.planar == PLANARCONFIG_CONTIG || info.samples == 1);
    const bool isLarge = decodedTiffBytes(info) > static_cast<double>(largestPageInPairs) &&
                         rowsPerStrip(file, info) < info.height;
    return isPlain && (isDeflate(info) || isLarge);
}

QImage decodeStrips(TiffFile& file, const TiffPageInfo& info)
{
    file.clearErrors();
    QImage image = makePageImage(info.width, info.height, TiffRows(file, info).format());
    const Target target{image.bits(), static_cast<std::size_t>(image.bytesPerLine())};
    const std::uint32_t perStrip = rowsPerStrip(file, info);
    const std::uint32_t strips = (info.height + perStrip - 1) / perStrip;
    std::uint32_t middle = info.height;
    std::unique_ptr<TiffFile> other;
    std::future<void> rest; // ends before what its thread uses
    if (image.sizeInBytes() > largestPageInPairs && strips > 1) other = file.twin();
    if (other) {
        middle = (strips + 1) / 2 * perStrip;
        try {
            rest = std::async(std::launch::async,
                              [&, middle] { decodeRange(*other, info, target, middle, info.height); });
        } catch (const std::system_error&) { // no thread can be had
            middle = info.height;
        }
    }
    decodeRange(file, info, target, 0, middle);
    if (rest.valid()) rest.get();
    if (info.isPremultiplied) unpremultiply(image);
    return image;
}

} // namespace quillfern::raster
