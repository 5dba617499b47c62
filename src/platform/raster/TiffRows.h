#pragma once

#include "platform/raster/TiffPageInfo.h"

#include <QImage>
#include <array>
#include <vector>

namespace quillfern::raster {

class TiffFile;

/// Turns rows of a TIFF page's samples into rows of a page image: any of 1 to 16 bits a sample, grey of both
/// directions, palette, RGB and CMYK, with or without opacity.
class TiffRows
{
  public:
    /// Reads the palette of the present directory, where there is one. Throws Failure when it is missing.
    TiffRows(const TiffFile& file, const TiffPageInfo& info);

    /// True for pages whose rows this class understands; others need the library's own colour conversion.
    [[nodiscard]] static bool canConvert(const TiffPageInfo& info);

    [[nodiscard]] QImage::Format format() const;
    /// Samples of one pixel side by side, `count` pixels.
    void convert(const uchar* source, std::size_t count, uchar* target);
    /// The samples of one plane, `count` pixels; other planes' bytes in the target stay.
    void convertPlane(int plane, const uchar* source, std::size_t count, uchar* target);
    /// True when a row as the file has it is a row of the image.
    [[nodiscard]] bool isVerbatim() const;

  private:
    [[nodiscard]] bool isGrey() const;
    const uchar* unpack(const uchar* source, std::size_t samples);
    void setColours(const uchar* samples, uchar* pixel, int step) const;

    TiffPageInfo info_;
    std::array<std::array<uchar, 3>, 256> palette_ = {};
    std::vector<uchar> unpacked_;
};

/// Divides the colours of straight-to-be RGBA pixels by their opacity.
void unpremultiply(QImage& image);

} // namespace quillfern::raster
