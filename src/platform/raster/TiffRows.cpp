#include "platform/raster/TiffRows.h"

#include "platform/raster/BilevelPixels.h"
#include "platform/raster/TiffFile.h"
#include "platform/system/Failure.h"

#include <algorithm>
#include <cstring>

namespace quillfern::raster {

namespace {

constexpr unsigned opaque = 255;

} // namespace

TiffRows::TiffRows(const TiffFile& file, const TiffPageInfo& info)
    : info_(info), samples_(info.bits, info.hasFloats, info.photometric == PHOTOMETRIC_PALETTE)
{
    if (info.photometric == PHOTOMETRIC_SEPARATED) inks_.emplace(file.bytes(TIFFTAG_ICCPROFILE), false);
    if (info.photometric != PHOTOMETRIC_PALETTE) return;
    std::array<std::uint16_t*, 3> parts = {};
    if (TIFFGetField(file.handle(), TIFFTAG_COLORMAP, &parts[0], &parts[1], &parts[2]) != 1)
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure",
                                        "The file is damaged: one of its pages lacks its palette."));
    const std::size_t size = std::size_t{1} << info.bits;
    // Some writers store values of 8 bits in the palette's 16-bit entries.
    const bool isWide = std::any_of(parts.begin(), parts.end(), [&](const std::uint16_t* part) {
        return std::any_of(part, part + size, [](std::uint16_t value) { return value > opaque; });
    });
    for (std::size_t i = 0; i < size; ++i)
        for (std::size_t c = 0; c < parts.size(); ++c)
            palette_[i][c] = static_cast<uchar>(isWide ? parts[c][i] >> 8 : parts[c][i]);
}

bool TiffRows::canConvert(const TiffPageInfo& info)
{
    const bool isKnown = info.hasIntegers || info.hasFloats;
    if (!isKnown || info.compression == COMPRESSION_OJPEG) return false;
    const bool isReadable = TiffSamples::canRead(info.bits, info.hasFloats);
    switch (info.photometric) {
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_MINISBLACK:
        return isReadable;
    case PHOTOMETRIC_PALETTE:
        return info.bits <= 8 && info.hasIntegers;
    case PHOTOMETRIC_RGB:
        return isReadable && info.samples >= 3;
    case PHOTOMETRIC_YCBCR: // the JPEG codec is asked for RGB
        return info.compression == COMPRESSION_JPEG && info.planar == PLANARCONFIG_CONTIG && info.bits == 8 &&
               info.samples == 3;
    case PHOTOMETRIC_SEPARATED:
        return isReadable && info.samples >= 4 && info.planar == PLANARCONFIG_CONTIG;
    default:
        return false;
    }
}

bool TiffRows::isGrey() const
{
    return info_.photometric == PHOTOMETRIC_MINISWHITE || info_.photometric == PHOTOMETRIC_MINISBLACK;
}

QImage::Format TiffRows::format() const
{
    if (info_.alphaSample >= 0) return QImage::Format_RGBA8888;
    return isGrey() ? QImage::Format_Grayscale8 : QImage::Format_RGB888;
}

bool TiffRows::isVerbatim() const
{
    if (info_.bits != 8 || info_.planar != PLANARCONFIG_CONTIG) return false;
    switch (info_.photometric) {
    case PHOTOMETRIC_MINISBLACK:
        return info_.samples == 1;
    case PHOTOMETRIC_RGB:
    case PHOTOMETRIC_YCBCR:
        return info_.samples == 3 || (info_.samples == 4 && info_.alphaSample == 3);
    default:
        return false;
    }
}

const uchar* TiffRows::unpack(const uchar* source, std::size_t samples)
{
    if (info_.bits == 8) return source;
    unpacked_.resize(samples);
    if (info_.bits == 1 && info_.photometric != PHOTOMETRIC_PALETTE)
        unpackBits(source, samples, 0, unpacked_.data());
    else
        samples_.unpack(source, samples, unpacked_.data());
    return unpacked_.data();
}

void TiffRows::setColours(const uchar* samples, uchar* pixel, int step) const
{
    switch (info_.photometric) {
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_MINISBLACK: {
        const auto value = info_.photometric == PHOTOMETRIC_MINISWHITE
                               ? static_cast<uchar>(opaque - samples[0])
                               : samples[0];
        std::fill_n(pixel, step == 1 ? 1 : 3, value);
        break;
    }
    case PHOTOMETRIC_PALETTE:
        std::copy_n(palette_[samples[0]].begin(), 3, pixel);
        break;
    default:
        std::copy_n(samples, 3, pixel);
    }
}

void TiffRows::convert(const uchar* source, std::size_t count, uchar* target)
{
    const std::size_t colours =
        info_.alphaSample >= 0 ? static_cast<std::size_t>(info_.alphaSample) : info_.samples;
    if (isMeasuring_) {
        samples_.measure(source, count * info_.samples, info_.samples, colours);
        return;
    }
    const uchar flip = info_.photometric == PHOTOMETRIC_MINISWHITE ? opaque : 0;
    if (info_.bits == 1 && info_.samples == 1 && isGrey()) {
        unpackBits(source, count, flip, target);
        return;
    }
    const uchar* samples = unpack(source, count * info_.samples);
    if (inks_) {
        convertInks(samples, count, target);
        return;
    }
    const int step = format() == QImage::Format_Grayscale8 ? 1 : info_.alphaSample >= 0 ? 4 : 3;
    if (step == 1 && info_.samples == 1) {
        for (std::size_t i = 0; i < count; ++i)
            target[i] = samples[i] ^ flip;
        return;
    }
    for (std::size_t i = 0; i < count; ++i, samples += info_.samples, target += step) {
        setColours(samples, target, step);
        if (step == 4) target[3] = samples[info_.alphaSample];
    }
}

void TiffRows::convertInks(const uchar* samples, std::size_t count, uchar* target)
{
    constexpr std::size_t inks = 4;
    if (info_.samples == inks) {
        inks_->convert(samples, count, target);
        return;
    }
    gathered_.resize(count * inks);
    for (std::size_t i = 0; i < count; ++i)
        std::copy_n(samples + i * info_.samples, inks, gathered_.data() + i * inks);
    colours_.resize(count * 3);
    inks_->convert(gathered_.data(), count, colours_.data());
    if (info_.alphaSample < 0) {
        std::copy(colours_.begin(), colours_.end(), target);
        return;
    }
    for (std::size_t i = 0; i < count; ++i, target += 4) {
        std::copy_n(colours_.data() + i * 3, 3, target);
        target[3] = samples[i * info_.samples + static_cast<std::size_t>(info_.alphaSample)];
    }
}

void TiffRows::convertPlane(int plane, const uchar* source, std::size_t count, uchar* target)
{
    if (isMeasuring_) {
        if (plane != info_.alphaSample) samples_.measure(source, count, 1, 1);
        return;
    }
    const uchar* samples = unpack(source, count);
    const int colours = isGrey() || info_.photometric == PHOTOMETRIC_PALETTE ? 1 : 3;
    const auto step = static_cast<std::size_t>(format() == QImage::Format_Grayscale8 ? 1
                                               : info_.alphaSample >= 0              ? 4
                                                                                     : 3);
    if (plane == info_.alphaSample) {
        for (std::size_t i = 0; i < count; ++i)
            target[i * step + 3] = samples[i];
    } else if (plane < colours && colours == 3) {
        for (std::size_t i = 0; i < count; ++i)
            target[i * step + static_cast<std::size_t>(plane)] = samples[i];
    } else if (plane == 0) {
        for (std::size_t i = 0; i < count; ++i)
            setColours(samples + i, target + i * step, static_cast<int>(step));
    }
}

void unpremultiply(QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        uchar* pixel = image.scanLine(y);
        for (int x = 0; x < image.width(); ++x, pixel += 4) {
            const unsigned alpha = pixel[3];
            if (alpha == opaque) continue;
            for (int c = 0; c < 3; ++c)
                pixel[c] =
                    alpha == 0
                        ? uchar{0}
                        : static_cast<uchar>(std::min(opaque, (pixel[c] * opaque + alpha / 2) / alpha));
        }
    }
}

} // namespace quillfern::raster
