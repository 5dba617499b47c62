#include "platform/raster/TiffDecoder.h"

#include "platform/raster/Orientation.h"
#include "platform/raster/RasterLimits.h"
#include "platform/raster/TiffClaims.h"
#include "platform/raster/TiffEntries.h"
#include "platform/raster/TiffFile.h"
#include "platform/raster/TiffRows.h"
#include "platform/raster/TiffStrips.h"
#include "platform/system/Cancellation.h"

#include <algorithm>
#include <vector>

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
    for (std::uint32_t y = 0; y < info.height; ++y) {
        throwIfCancelled(file.stop());
        if (TIFFReadScanline(file.handle(), image.scanLine(static_cast<int>(y)), y) < 0)
            throw file.failure(damaged);
    }
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
            throwIfCancelled(file.stop());
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
    std::vector<uchar> tile(size);
    const auto planes = static_cast<std::uint16_t>(separate ? info.samples : 1);
    const auto bytesPerPixel = static_cast<std::uint32_t>(image.depth() / 8);
    for (std::uint16_t plane = 0; plane < planes; ++plane) {
        for (std::uint32_t y = 0; y < info.height; y += std::min(tileHeight, info.height - y)) {
            for (std::uint32_t x = 0; x < info.width; x += std::min(tileWidth, info.width - x)) {
                throwIfCancelled(file.stop());
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
    const auto decode = TIFFIsTiled(file.handle()) ? decodeTiles : decodeScanlines;
    if (info.hasFloats) {
        rows.setMeasuring(true);
        decode(file, info, rows, image);
        rows.setMeasuring(false);
    }
    decode(file, info, rows, image);
    if (info.isPremultiplied) unpremultiply(image);
    return image;
}

/// Whole strips or rows of tiles, which libtiff would decode again for each part of them.
std::uint32_t bandRows(const TiffFile& file, const TiffPageInfo& info)
{
    const bool isTiled = TIFFIsTiled(file.handle()) != 0;
    const auto unit =
        file.field<std::uint32_t>(isTiled ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP, info.height);
    return std::clamp<std::uint32_t>(unit, 1, info.height);
}

/// Pixels as libtiff packs them, as bytes.
void putPixels(const std::uint32_t* source, uchar* target, std::uint32_t count, int step)
{
    for (std::uint32_t x = 0; x < count; ++x, target += step) {
        target[0] = static_cast<uchar>(TIFFGetR(source[x]));
        target[1] = static_cast<uchar>(TIFFGetG(source[x]));
        target[2] = static_cast<uchar>(TIFFGetB(source[x]));
        if (step == 4) target[3] = static_cast<uchar>(TIFFGetA(source[x]));
    }
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
    const bool hasAlpha = info.alphaSample >= 0;
    QImage image =
        makePageImage(info.width, info.height, hasAlpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    // Strip by strip, so that pixels of four bytes are not held for the whole page.
    const std::uint32_t step = bandRows(file, info);
    std::vector<std::uint32_t> band(std::size_t{info.width} * step);
    for (std::uint32_t top = 0; top < info.height; top += step) {
        throwIfCancelled(file.stop());
        const std::uint32_t rows = std::min(step, info.height - top);
        converter.row_offset = static_cast<int>(top);
        if (TIFFRGBAImageGet(&converter, band.data(), info.width, rows) != 1) throw file.failure(damaged);
        for (std::uint32_t y = 0; y < rows; ++y)
            putPixels(band.data() + std::size_t{y} * info.width, image.scanLine(static_cast<int>(top + y)),
                      info.width, hasAlpha ? 4 : 3);
    }
    if (hasAlpha) unpremultiply(image);
    return image;
}

QByteArray colourProfile(const TiffFile& file, const TiffPageInfo& info)
{
    // Where the samples are converted (CMYK, Lab), the profile no longer describes them; those of a palette
    // and of YCbCr are of RGB.
    switch (info.photometric) {
    case PHOTOMETRIC_MINISBLACK:
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_RGB:
    case PHOTOMETRIC_PALETTE:
    case PHOTOMETRIC_YCBCR:
        return file.bytes(TIFFTAG_ICCPROFILE);
    default:
        return {};
    }
}

PageTags pageTags(const TiffFile& file)
{
    PageTags tags;
    for (const int tag : {TIFFTAG_IMAGEDESCRIPTION, TIFFTAG_MAKE, TIFFTAG_MODEL, TIFFTAG_DATETIME,
                          TIFFTAG_ARTIST, TIFFTAG_COPYRIGHT}) {
        const QByteArray text(file.field<const char*>(static_cast<std::uint32_t>(tag), nullptr));
        if (!text.isEmpty()) tags[static_cast<std::uint16_t>(tag)] = text;
    }
    if (const QByteArray xmp = file.bytes(TIFFTAG_XMLPACKET); !xmp.isEmpty()) tags[TIFFTAG_XMLPACKET] = xmp;
    // Many writers give IPTC records, which are bytes, a type of larger numbers, which libtiff does not read.
    QByteArray iptc = TiffEntries(file).bytes(TIFFTAG_RICHTIFFIPTC);
    constexpr char recordStart = 0x1C;
    if (iptc.size() > 3 && iptc[0] != recordStart && iptc[3] == recordStart)
        for (qsizetype i = 0; i + 4 <= iptc.size(); i += 4)
            std::reverse(iptc.begin() + i, iptc.begin() + i + 4);
    if (!iptc.isEmpty()) tags[TIFFTAG_RICHTIFFIPTC] = iptc;
    return tags;
}

/// The pixels of the page, upright, and nothing less.
QImage decodePixels(TiffFile& file, const TiffPageInfo& info)
{
    file.clearErrors();
    QImage image = canKeepBits(file, info)      ? decodeBits(file, info)
                   : TiffRows::canConvert(info) ? decodeRows(file, info)
                                                : decodeConverted(file, info);
    // A codec may report damage and still return part of a page; only whole pages are accepted.
    if (file.hasError()) throw file.failure(damaged);
    return image;
}

/// Makes libtiff forget the strip that it holds, which happens when the directory is read anew.
void beginAnew(TiffFile& file)
{
    if (TIFFSetSubDirectory(file.handle(), TIFFCurrentDirOffset(file.handle())) != 1)
        throw file.failure(damaged);
}

/// The pixels of a page whose last strip is longer in the directory than in the file. What is missing may be
/// no more than an end mark or bytes that nothing reads: that is so when the pixels are the same whatever is
/// taken for them.
QImage decodeShortPixels(TiffFile& file, const TiffPageInfo& info)
{
    struct Padding
    {
        TiffFile& file;
        ~Padding() { file.setBytesBehindEnd(std::nullopt); }
    };
    const Padding padding{file};
    const auto decodeWith = [&](uchar behindEnd) {
        file.setBytesBehindEnd(behindEnd);
        beginAnew(file);
        return decodePixels(file, info);
    };
    const QImage image = decodeWith(0);
    if (decodeWith(0xFF) != image) throw Failure(damaged);
    return image;
}

/// The pixels of a page in the quick way; none where that is not to be had, or fails.
QImage decodeQuickly(TiffFile& file, const TiffPageInfo& info)
{
    if (canKeepBits(file, info) || !gainsByStrips(file, info)) return {};
    try {
        return decodeStrips(file, info);
    } catch (const Cancelled&) {
        throw;
    } catch (const DamagedStrip&) {
        throw;
    } catch (const Failure&) {
        beginAnew(file);
        return {};
    }
}

} // namespace

RasterPage decodeTiffPage(TiffFile& file, const TiffPageInfo& info)
{
    checkTiffClaims(file, info);
    RasterPage page;
    page.image = decodeQuickly(file, info);
    try {
        if (page.image.isNull()) page.image = decodePixels(file, info);
    } catch (const Cancelled&) {
        throw;
    } catch (const Failure&) {
        if (!file.ranOut()) throw;
        page.image = decodeShortPixels(file, info);
    }
    page.image = upright(std::move(page.image), info.orientation);
    page.isBilevel = info.bits == 1 && info.samples == 1 && page.isGrey();
    page.isWhiteZero = info.photometric == PHOTOMETRIC_MINISWHITE;
    if (info.compression == COMPRESSION_CCITTFAX3)
        page.group3Options = file.field<std::uint32_t>(TIFFTAG_GROUP3OPTIONS, 0);
    page.colourProfile = colourProfile(file, info);
    page.tags = pageTags(file);
    return page;
}

double decodedTiffBytes(const TiffPageInfo& info)
{
    const bool isGrey = info.samples == 1 && (info.photometric == PHOTOMETRIC_MINISWHITE ||
                                              info.photometric == PHOTOMETRIC_MINISBLACK);
    return static_cast<double>(info.width) * info.height * (isGrey ? 1 : info.alphaSample >= 0 ? 4 : 3);
}

} // namespace quillfern::raster
