#include "platform/raster/StripCodec.h"

#include "platform/raster/FaxEncoder.h"
#include "platform/raster/JpegCodec.h"
#include "platform/raster/LzwEncoder.h"
#include "platform/raster/TiffOpenOptions.h"
#include "platform/system/Failure.h"

#include <algorithm>
#include <cstring>
#include <libdeflate.h>
#include <memory>
#include <tiffio.h>
#include <vector>

namespace quillfern::raster {

namespace {

/// A third faster than the default of 6, for results that are two per cent larger.
constexpr int deflateLevel = 4;

/// A TIFF that libtiff writes into memory, of which only the one strip is wanted.
struct Scratch
{
    QByteArray bytes;
    toff_t position = 0;
};

tmsize_t readScratch(thandle_t, void*, tmsize_t)
{
    return 0;
}

tmsize_t writeScratch(thandle_t handle, void* data, tmsize_t size)
{
    auto* scratch = static_cast<Scratch*>(handle);
    const auto at = static_cast<qsizetype>(scratch->position);
    if (at + size > scratch->bytes.size()) scratch->bytes.resize(at + size);
    std::memcpy(scratch->bytes.data() + at, data, static_cast<std::size_t>(size));
    scratch->position += static_cast<toff_t>(size);
    return size;
}

toff_t seekScratch(thandle_t handle, toff_t offset, int whence)
{
    auto* scratch = static_cast<Scratch*>(handle);
    if (whence == SEEK_CUR) offset += scratch->position;
    if (whence == SEEK_END) offset += static_cast<toff_t>(scratch->bytes.size());
    return scratch->position = offset;
}

struct Closer
{
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

std::unique_ptr<TIFF, Closer> openScratch(Scratch& scratch)
{
    const auto silent = [](TIFF*, void*, const char*, const char*, va_list) { return 1; };
    const auto options = tiffOpenOptions(silent, nullptr);
    return std::unique_ptr<TIFF, Closer>(TIFFClientOpenExt(
        "strip", "wl", &scratch, readScratch, writeScratch, seekScratch, [](thandle_t) { return 0; },
        [](thandle_t handle) { return static_cast<toff_t>(static_cast<Scratch*>(handle)->bytes.size()); },
        nullptr, nullptr, options.get()));
}

void describe(TIFF* tiff, const StripFormat& format, std::uint32_t rows)
{
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, format.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, rows);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, rows);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, format.isBilevel ? 1 : 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, format.channels);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, format.photometric());
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, format.compression);
    if (format.compression == COMPRESSION_CCITTFAX3)
        TIFFSetField(tiff, TIFFTAG_GROUP3OPTIONS, format.group3Options);
}

/// Every byte as its difference from the byte of the same channel one pixel to the left.
void applyPredictor(const StripFormat& format, QByteArray& rows)
{
    const std::size_t channels = format.channels;
    const std::size_t rowBytes = format.rowBytes();
    std::vector<uchar> before(rowBytes);
    auto* row = reinterpret_cast<uchar*>(rows.data());
    const uchar* end = row + rows.size();
    for (; row < end; row += rowBytes) {
        std::memcpy(before.data(), row, rowBytes);
        for (std::size_t i = channels; i < rowBytes; ++i)
            row[i] = static_cast<uchar>(row[i] - before[i - channels]);
    }
}

struct CompressorFree
{
    void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

/// What libtiff makes of the bytes, with the same library below, but without its copies.
QByteArray encodeDeflate(const QByteArray& rows)
{
    const std::unique_ptr<libdeflate_compressor, CompressorFree> deflater(
        libdeflate_alloc_compressor(deflateLevel));
    if (!deflater) throw std::bad_alloc();
    const auto size = static_cast<std::size_t>(rows.size());
    QByteArray strip(static_cast<qsizetype>(libdeflate_zlib_compress_bound(deflater.get(), size)),
                     Qt::Uninitialized);
    const std::size_t used = libdeflate_zlib_compress(deflater.get(), rows.constData(), size, strip.data(),
                                                      static_cast<std::size_t>(strip.size()));
    return {strip.constData(), static_cast<qsizetype>(used)}; // a copy, which leaves no hole
}

/// Group 3 fax and PackBits coding, as libtiff does it.
QByteArray encodeWithLibrary(const StripFormat& format, QByteArray rows, int rowCount)
{
    Scratch scratch;
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    {
        const auto tiff = openScratch(scratch);
        if (!tiff)
            throw Failure(
                QT_TRANSLATE_NOOP("quillfern::Failure", "There is not enough memory to store a page."));
        describe(tiff.get(), format, static_cast<std::uint32_t>(rowCount));
        if (TIFFWriteEncodedStrip(tiff.get(), 0, rows.data(), rows.size()) < 0)
            throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "A page could not be stored."));
        offset = TIFFGetStrileOffset(tiff.get(), 0);
        size = TIFFGetStrileByteCount(tiff.get(), 0);
    }
    QByteArray strip = scratch.bytes.mid(static_cast<qsizetype>(offset), static_cast<qsizetype>(size));
    // libtiff's decoder looks ahead by up to 13 bits, and at the end of a strip takes those that are missing
    // for bits of the row: a last row of a single byte would be read at the wrong place.
    if (format.compression == COMPRESSION_CCITTRLE) strip.append('\0');
    return strip;
}

} // namespace

bool StripFormat::isJpeg() const
{
    return compression == COMPRESSION_JPEG;
}

bool StripFormat::hasPredictor() const
{
    return !isBilevel && (compression == COMPRESSION_LZW || compression == COMPRESSION_ADOBE_DEFLATE ||
                          compression == COMPRESSION_DEFLATE);
}

std::uint16_t StripFormat::photometric() const
{
    if (channels > 1) return isJpeg() ? PHOTOMETRIC_YCBCR : PHOTOMETRIC_RGB;
    return isBilevel && isWhiteZero ? PHOTOMETRIC_MINISWHITE : PHOTOMETRIC_MINISBLACK;
}

std::uint16_t suitableCompression(std::int32_t requested, const StripFormat& format)
{
    switch (requested) {
    case COMPRESSION_NONE:
    case COMPRESSION_LZW:
    case COMPRESSION_ADOBE_DEFLATE:
    case COMPRESSION_DEFLATE:
    case COMPRESSION_PACKBITS:
        return static_cast<std::uint16_t>(requested);
    case COMPRESSION_OJPEG:
    case COMPRESSION_JPEG: {
        const bool suits =
            !format.isBilevel && format.channels != 4 && format.width <= std::uint32_t{widestJpeg};
        return suits ? COMPRESSION_JPEG : COMPRESSION_LZW;
    }
    case COMPRESSION_CCITTRLE:
    case COMPRESSION_CCITTFAX3:
    case COMPRESSION_CCITTFAX4:
        return format.isBilevel ? static_cast<std::uint16_t>(requested) : std::uint16_t{COMPRESSION_LZW};
    default:
        return COMPRESSION_LZW;
    }
}

bool hasTooManyRuns(const StripFormat& format, const uchar* row)
{
    const bool isOneDimensional =
        format.compression == COMPRESSION_CCITTRLE ||
        (format.compression == COMPRESSION_CCITTFAX3 && (format.group3Options & GROUP3OPT_2DENCODING) == 0);
    if (!isOneDimensional || format.width % 32 != 0) return false;
    return std::all_of(row, row + format.rowBytes(), [](uchar byte) { return byte == 0xAA; });
}

QByteArray encodeStrip(const StripFormat& format, QByteArray rows)
{
    const auto rowCount = static_cast<int>(static_cast<std::size_t>(rows.size()) / format.rowBytes());
    switch (format.compression) {
    case COMPRESSION_NONE:
        return rows;
    case COMPRESSION_LZW:
        if (format.hasPredictor()) applyPredictor(format, rows);
        return encodeLzw(rows);
    case COMPRESSION_DEFLATE:
    case COMPRESSION_ADOBE_DEFLATE:
        if (format.hasPredictor()) applyPredictor(format, rows);
        return encodeDeflate(rows);
    case COMPRESSION_JPEG:
        return encodeJpeg(reinterpret_cast<const uchar*>(rows.constData()), static_cast<int>(format.width),
                          rowCount, format.channels, static_cast<int>(format.rowBytes()));
    case COMPRESSION_CCITTFAX4:
        return encodeGroup4(rows, format.width);
    default:
        return encodeWithLibrary(format, std::move(rows), rowCount);
    }
}

} // namespace quillfern::raster
