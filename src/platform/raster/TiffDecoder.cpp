#include "platform/raster/TiffDecoder.h"

#include "platform/raster/RasterLimits.h"
#include "platform/raster/TiffFile.h"
#include "platform/raster/TiffRows.h"
#include "platform/system/Failure.h"

#include <QtEndian>
#include <algorithm>
#include <bit>
#include <cstring>

namespace quillfern::raster {

namespace {

constexpr auto damaged = QT_TRANSLATE_NOOP("quillfern::Failure", "A page of the file is damaged or cut off.");

/// True for pages whose bits can be kept as stored: one bit a pixel, upright.
bool canKeepBits(const TiffFile& file, const TiffPageInfo& info)
{
    const bool isGrey =
        info.photometric == PHOTOMETRIC_MINISWHITE || info.photometric == PHOTOMETRIC_MINISBLACK;
    return info.bits == 1 && info.samples == 1 && isGrey && info.alphaSample < 0 && info.hasIntegers &&
           info.orientation == ORIENTATION_TOPLEFT && !TIFFIsTiled(file.handle());
}

QImage decodeBits(TiffFile& file, const TiffPageInfo& info)
{
    QImage image = makePageImage(info.width, info.height, QImage::Format_Mono);
    const bool isWhiteZero = info.photometric == PHOTOMETRIC_MINISWHITE;
    image.setColorTable(isWhiteZero ? QList<QRgb>{0xFFFFFFFF, 0xFF000000}
                                    : QList<QRgb>{0xFF000000, 0xFFFFFFFF});
    const tmsize_t size = TIFFScanlineSize(file.handle());
    if (size <= 0 || size > image.bytesPerLine()) throw file.failure(damaged);
    for (std::uint32_t y = 0; y < info.height; ++y)
        if (TIFFReadScanline(file.handle(), image.scanLine(static_cast<int>(y)), y) < 0)
            throw file.failure(damaged);
    return image;
}

void decodeScanlines(TiffFile& file, const TiffPageInfo& info, TiffRows& rows, QImage& image)
{
    const tmsize_t size = TIFFScanlineSize(file.handle());
    const bool separate = info.planar == PLANARCONFIG_SEPARATE && info.samples > 1;
    const std::size_t needed = (std::size_t{info.width} * info.bits * (separate ? 1U : info.samples) + 7) / 8;
    if (size <= 0 || static_cast<std::size_t>(size) < needed) throw file.failure(damaged);
    const bool direct = rows.isVerbatim() && size <= image.bytesPerLine();
    std::vector<uchar> line(direct ? 0 : static_cast<std::size_t>(size));
    const auto planes = static_cast<std::uint16_t>(separate ? info.samples : 1);
    for (std::uint16_t plane = 0; plane < planes; ++plane) {
        for (std::uint32_t y = 0; y < info.height; ++y) {
            uchar* target = image.scanLine(static_cast<int>(y));
            if (TIFFReadScanline(file.handle(), direct ? target : line.data(), y, plane) < 0)
                throw file.failure(damaged);
            if (separate)
                rows.convertPlane(plane, line.data(), info.width, target);
            else if (!direct)
                rows.convert(line.data(), info.width, target);
        }
    }
}

void decodeTiles(TiffFile& file, const TiffPageInfo& info, TiffRows& rows, QImage& image)
{
    TIFF* tiff = file.handle();
    const auto tileWidth = file.field<std::uint32_t>(TIFFTAG_TILEWIDTH, 0);
    const auto tileHeight = file.field<std::uint32_t>(TIFFTAG_TILELENGTH, 0);
    const std::uint64_t size = TIFFTileSize64(tiff);
    const std::uint64_t rowSize = TIFFTileRowSize64(tiff);
    const bool separate = info.planar == PLANARCONFIG_SEPARATE && info.samples > 1;
    const std::uint64_t needed =
        (std::uint64_t{tileWidth} * info.bits * (separate ? 1U : info.samples) + 7) / 8;
    if (tileWidth == 0 || tileHeight == 0 || rowSize < needed || size < rowSize * tileHeight)
        throw file.failure(damaged);
    if (size > static_cast<std::uint64_t>(largestPageBytes))
        throw Failure(
            QT_TRANSLATE_NOOP("quillfern::Failure", "The tiles of a page are too large to be processed."));
    std::vector<uchar> tile(size);
    const auto planes = static_cast<std::uint16_t>(separate ? info.samples : 1);
    const auto bytesPerPixel = static_cast<std::uint32_t>(image.depth() / 8);
    for (std::uint16_t plane = 0; plane < planes; ++plane) {
        for (std::uint32_t y = 0; y < info.height; y += std::min(tileHeight, info.height - y)) {
            for (std::uint32_t x = 0; x < info.width; x += std::min(tileWidth, info.width - x)) {
                if (TIFFReadTile(tiff, tile.data(), x, y, 0, plane) < 0) throw file.failure(damaged);
                const std::uint32_t width = std::min(tileWidth, info.width - x);
                const std::uint32_t height = std::min(tileHeight, info.height - y);
                for (std::uint32_t row = 0; row < height; ++row) {
                    uchar* target =
                        image.scanLine(static_cast<int>(y + row)) + std::size_t{x} * bytesPerPixel;
                    const uchar* source = tile.data() + rowSize * row;
                    if (separate)
                        rows.convertPlane(plane, source, width, target);
                    else
                        rows.convert(source, width, target);
                }
            }
        }
    }
}

QImage decodeRows(TiffFile& file, const TiffPageInfo& info)
{
    if (info.photometric == PHOTOMETRIC_YCBCR)
        TIFFSetField(file.handle(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    TiffRows rows(file, info);
    QImage image = makePageImage(info.width, info.height, rows.format());
    if (TIFFIsTiled(file.handle()))
        decodeTiles(file, info, rows, image);
    else
        decodeScanlines(file, info, rows, image);
    if (info.isPremultiplied) unpremultiply(image);
    return image;
}

/// Lets libtiff convert the colours: Lab, logarithmic, raw YCbCr and the old kind of JPEG.
QImage decodeConverted(TiffFile& file, const TiffPageInfo& info)
{
    char reason[1024] = "";
    TIFFRGBAImage converter;
    if (TIFFRGBAImageBegin(&converter, file.handle(), 1, reason) != 1)
        throw Failure(Reason(QT_TRANSLATE_NOOP("quillfern::Failure",
                                               "A page of the file is of a kind that cannot be processed."))
                          .with(QString::fromLocal8Bit(reason)));
    const std::unique_ptr<TIFFRGBAImage, void (*)(TIFFRGBAImage*)> end(&converter, TIFFRGBAImageEnd);
    // Rows as they are stored; the caller turns the page.
    converter.orientation = ORIENTATION_TOPLEFT;
    converter.req_orientation = ORIENTATION_TOPLEFT;
    QImage image = makePageImage(info.width, info.height, QImage::Format_RGBA8888);
    auto* pixels = reinterpret_cast<std::uint32_t*>(image.bits());
    if (TIFFRGBAImageGet(&converter, pixels, info.width, info.height) != 1) throw file.failure(damaged);
    if constexpr (std::endian::native == std::endian::big)
        std::for_each_n(pixels, std::size_t{info.width} * info.height,
                        [](std::uint32_t& pixel) { pixel = qbswap(pixel); });
    if (info.alphaSample < 0) return image.convertToFormat(QImage::Format_RGB888);
    unpremultiply(image);
    return image;
}

/// The image as its reader sees it, for TIFF's eight ways of storing one.
QImage upright(QImage image, int orientation)
{
    switch (orientation) {
    case ORIENTATION_TOPRIGHT:
        return image.mirrored(true, false);
    case ORIENTATION_BOTRIGHT:
        return image.mirrored(true, true);
    case ORIENTATION_BOTLEFT:
        return image.mirrored(false, true);
    case ORIENTATION_LEFTTOP:
        return image.transformed(QTransform().rotate(90)).mirrored(true, false);
    case ORIENTATION_RIGHTTOP:
        return image.transformed(QTransform().rotate(90));
    case ORIENTATION_RIGHTBOT:
        return image.transformed(QTransform().rotate(270)).mirrored(true, false);
    case ORIENTATION_LEFTBOT:
        return image.transformed(QTransform().rotate(270));
    default:
        return image;
    }
}

QByteArray colourProfile(const TiffFile& file, const TiffPageInfo& info)
{
    // Where the samples are converted (CMYK, palette, Lab), the profile no longer describes them.
    if (info.photometric != PHOTOMETRIC_MINISBLACK && info.photometric != PHOTOMETRIC_MINISWHITE &&
        info.photometric != PHOTOMETRIC_RGB)
        return {};
    std::uint32_t size = 0;
    void* data = nullptr;
    if (TIFFGetField(file.handle(), TIFFTAG_ICCPROFILE, &size, &data) != 1 || !data) return {};
    return {static_cast<const char*>(data), static_cast<qsizetype>(size)};
}

} // namespace

RasterPage decodeTiffPage(TiffFile& file, const TiffPageInfo& info)
{
    file.clearErrors();
    RasterPage page;
    page.image = canKeepBits(file, info) ? decodeBits(file, info)
                                         : upright(TiffRows::canConvert(info) ? decodeRows(file, info)
                                                                              : decodeConverted(file, info),
                                                   info.orientation);
    // A codec may report damage and still return part of a page; only whole pages are accepted.
    if (file.hasError()) throw file.failure(damaged);
    page.isBilevel = info.bits == 1 && info.samples == 1 && page.isGrey();
    page.isWhiteZero = info.photometric == PHOTOMETRIC_MINISWHITE;
    if (info.compression == COMPRESSION_CCITTFAX3)
        page.group3Options = file.field<std::uint32_t>(TIFFTAG_GROUP3OPTIONS, 0);
    page.colourProfile = colourProfile(file, info);
    return page;
}

double decodedTiffBytes(const TiffPageInfo& info)
{
    const bool isGrey = info.samples == 1 && (info.photometric == PHOTOMETRIC_MINISWHITE ||
                                              info.photometric == PHOTOMETRIC_MINISBLACK);
    return static_cast<double>(info.width) * info.height * (isGrey ? 1 : info.alphaSample >= 0 ? 4 : 3);
}

} // namespace quillfern::raster
