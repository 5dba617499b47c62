#include "platform/raster/TiffPageInfo.h"

#include "platform/raster/RasterLimits.h"
#include "platform/raster/TiffEntries.h"
#include "platform/raster/TiffFile.h"
#include "platform/system/Failure.h"

namespace quillfern::raster {

namespace {

QSizeF dotsPerInch(const TiffFile& file)
{
    double x = file.field(TIFFTAG_XRESOLUTION, 0.0F);
    double y = file.field(TIFFTAG_YRESOLUTION, 0.0F);
    const auto unit = file.field<std::uint16_t>(TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    const auto sensible = [](double value) { return value > 0.01 && value < 1e7; };
    if (!sensible(x) && !sensible(y)) return {plainDotsPerInch, plainDotsPerInch};
    if (!sensible(x)) x = y;
    if (!sensible(y)) y = x;
    if (unit == RESUNIT_CENTIMETER) return {x * centimetresPerInch, y * centimetresPerInch};
    // Without a unit the two numbers only give the ratio of a pixel's width to its height.
    if (unit == RESUNIT_NONE) return {plainDotsPerInch, plainDotsPerInch * y / x};
    return {x, y};
}

void readAlpha(const TiffFile& file, TiffPageInfo& info)
{
    std::uint16_t count = 0;
    std::uint16_t* kinds = nullptr;
    if (TIFFGetField(file.handle(), TIFFTAG_EXTRASAMPLES, &count, &kinds) != 1 || !kinds) count = 0;
    // An extra sample of unstated meaning may be anything (a depth, a spot colour): only those that are said
    // to be opacity are taken as such.
    for (std::uint16_t i = 0; i < count && count < info.samples; ++i) {
        if (kinds[i] != EXTRASAMPLE_ASSOCALPHA && kinds[i] != EXTRASAMPLE_UNASSALPHA) continue;
        info.alphaSample = info.samples - count + i;
        info.isPremultiplied = kinds[i] == EXTRASAMPLE_ASSOCALPHA;
        return;
    }
    // Where nothing is said of the fourth sample of a coloured pixel, the usual programs take opacity for it.
    // libtiff may make up the field then; the directory shows that there is none.
    if (info.samples == 4 && TiffEntries(file).bytes(TIFFTAG_EXTRASAMPLES).isEmpty() &&
        file.field<std::uint16_t>(TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_SEPARATED) == PHOTOMETRIC_RGB)
        info.alphaSample = 3;
}

} // namespace

QSizeF TiffPageInfo::sizeInPoints() const
{
    const QSizeF size(width / dotsPerInch.width() * plainDotsPerInch,
                      height / dotsPerInch.height() * plainDotsPerInch);
    return isTurned() ? size.transposed() : size;
}

TiffPageInfo readTiffPageInfo(const TiffFile& file)
{
    TiffPageInfo info;
    info.width = file.field<std::uint32_t>(TIFFTAG_IMAGEWIDTH, 0);
    info.height = file.field<std::uint32_t>(TIFFTAG_IMAGELENGTH, 0);
    info.bits = file.field<std::uint16_t>(TIFFTAG_BITSPERSAMPLE, 1);
    info.samples = file.field<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1);
    info.planar = file.field<std::uint16_t>(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    info.compression = file.field<std::uint16_t>(TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    info.orientation = file.field<std::uint16_t>(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    if (info.orientation < 1 || info.orientation > 8) info.orientation = ORIENTATION_TOPLEFT;
    const auto format = file.field<std::uint16_t>(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    // libtiff, and what shows pages with it, takes signed numbers for unsigned ones.
    info.hasIntegers =
        format == SAMPLEFORMAT_UINT || format == SAMPLEFORMAT_VOID || format == SAMPLEFORMAT_INT;
    info.hasFloats = format == SAMPLEFORMAT_IEEEFP;
    readAlpha(file, info);
    const int colours = info.samples - (info.alphaSample >= 0 ? 1 : 0);
    const bool isFax = info.compression >= COMPRESSION_CCITTRLE && info.compression <= COMPRESSION_CCITTFAX4;
    info.photometric = file.field<std::uint16_t>(TIFFTAG_PHOTOMETRIC, colours >= 3 ? PHOTOMETRIC_RGB
                                                                      : isFax      ? PHOTOMETRIC_MINISWHITE
                                                                                   : PHOTOMETRIC_MINISBLACK);
    info.dotsPerInch = dotsPerInch(file);
    if (info.width == 0 || info.height == 0 || info.samples == 0)
        throw Failure(
            QT_TRANSLATE_NOOP("quillfern::Failure", "The file is damaged: one of its pages has no size."));
    return info;
}

} // namespace quillfern::raster
