#include "platform/raster/TiffClaims.h"

#include "platform/raster/RasterLimits.h"
#include "platform/raster/TiffFile.h"
#include "platform/system/Failure.h"

#include <algorithm>

namespace quillfern::raster {

namespace {

/// Samples that may be anything, and the empty parts of a picture, are few bytes in a row of sensible size.
constexpr std::uint64_t largestRow = std::uint64_t{1} << 28;

/// What a byte becomes at most when it is decompressed.
double largestRatio(const TiffFile& file, const TiffPageInfo& info)
{
    switch (info.compression) {
    case COMPRESSION_NONE:
        return 1;
    case COMPRESSION_PACKBITS:
        return 64;
    case COMPRESSION_LZW: // strings of 4096 bytes for codes of 12 bits
        return 4096.0 * 8 / 12;
    case COMPRESSION_ADOBE_DEFLATE:
    case COMPRESSION_DEFLATE:
        return 1032;
    case COMPRESSION_JPEG:
    case COMPRESSION_OJPEG: // a bit a block, and colours of a quarter of the size
        return 8 * 64 * 4;
    case COMPRESSION_CCITTRLE:
    case COMPRESSION_CCITTFAX3:
    case COMPRESSION_CCITTFAX4: // a bit a row
        return 8 * static_cast<double>(TIFFScanlineSize64(file.handle()));
    default: // others know longer runs
        return 1e5;
    }
}

/// Bytes of the strips or tiles. Several of them may be the same bytes of the file, within reason.
double storedBytes(const TiffFile& file)
{
    TIFF* tiff = file.handle();
    const std::uint32_t count = TIFFIsTiled(tiff) ? TIFFNumberOfTiles(tiff) : TIFFNumberOfStrips(tiff);
    constexpr int shared = 8;
    const double most = static_cast<double>(file.size()) * shared;
    double sum = 0;
    for (std::uint32_t i = 0; i < count && sum < most; ++i)
        sum += static_cast<double>(std::min(TIFFGetStrileByteCount(tiff, i), file.size()));
    return std::min(sum, most);
}

} // namespace

void checkTiffClaims(const TiffFile& file, const TiffPageInfo& info)
{
    TIFF* tiff = file.handle();
    const bool isTiled = TIFFIsTiled(tiff) != 0;
    const std::uint64_t row = isTiled ? TIFFTileSize64(tiff) : TIFFScanlineSize64(tiff);
    if (row > largestRow)
        throw Failure(
            QT_TRANSLATE_NOOP("quillfern::Failure", "The tiles of a page are too large to be processed."));
    const bool separate = info.planar == PLANARCONFIG_SEPARATE && !isTiled;
    const double rows =
        isTiled ? TIFFNumberOfTiles(tiff) : double{1} * info.height * (separate ? info.samples : 1);
    const double claimed = static_cast<double>(row) * rows;
    if (claimed <= smallestClaim) return;
    const double pixels = double{1} * info.width * info.height;
    checkClaim(info.width, info.height, claimed / pixels, storedBytes(file), largestRatio(file, info));
}

} // namespace quillfern::raster
