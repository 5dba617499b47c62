#pragma once

#include "platform/raster/CmykColours.h"
#include "platform/raster/TiffPageInfo.h"
#include "platform/raster/TiffSamples.h"

#include <QImage>
#include <QtGlobal>
#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace quillfern::raster {

class TiffFile;

/// Turns rows of a TIFF page's samples into rows of a page image: any that TiffSamples reads, grey with
/// either black or white as zero, palette, RGB and CMYK, with or without opacity.
class TiffRows
{
  public:
    /// Reads the palette of the present directory, where there is one. Throws Failure when it is missing.
    TiffRows(const TiffFile& file, const TiffPageInfo& info);

    /// True for pages whose rows this class understands; others need the library's own colour conversion.
    [[nodiscard]] static bool canConvert(const TiffPageInfo& info);

    [[nodiscard]] QImage::Format format() const;
    /// Converts `count` pixels whose samples stand side by side.
    void convert(const uchar* source, std::size_t count, uchar* target);
    /// Converts the samples that one plane holds of `count` pixels; the bytes of the other planes in the
    /// target stay.
    void convertPlane(int plane, const uchar* source, std::size_t count, uchar* target);
    /// While this is set, rows are not converted; instead the range of their samples is found, on which the
    /// colours of floating-point numbers depend.
    void setMeasuring(bool isMeasuring) { isMeasuring_ = isMeasuring; }
    /// True when rows can be copied from the file into the image without conversion.
    [[nodiscard]] bool isVerbatim() const;

  private:
    [[nodiscard]] bool isGrey() const;
    const uchar* unpack(const uchar* source, std::size_t samples);
    void setColours(const uchar* samples, uchar* pixel, int step) const;
    void convertInks(const uchar* samples, std::size_t count, uchar* target);

    TiffPageInfo info_;
    TiffSamples samples_;
    bool isMeasuring_ = false;
    std::array<std::array<uchar, 3>, 256> palette_ = {};
    std::vector<uchar> unpacked_;
    std::optional<CmykColours> inks_; ///< of pages of inks
    std::vector<uchar> gathered_;
    std::vector<uchar> colours_;
};

/// Divides the colours of RGBA pixels, which were stored multiplied by the opacity, by that opacity.
void unpremultiply(QImage& image);

} // namespace quillfern::raster
