#pragma once

#include <QSizeF>
#include <cstdint>

namespace quillfern::raster {

class TiffFile;

/// What the directory of one TIFF page says of its pixels. The names of the values are libtiff's.
struct TiffPageInfo
{
    std::uint32_t width = 0; ///< as stored, before the orientation is applied
    std::uint32_t height = 0;
    std::uint16_t bits = 1;    ///< per sample
    std::uint16_t samples = 1; ///< per pixel
    std::uint16_t photometric = 0;
    std::uint16_t planar = 1;
    std::uint16_t compression = 1;
    std::uint16_t orientation = 1;
    bool hasIntegers = true; ///< samples are unsigned integers
    bool hasFloats = false;  ///< samples are floating-point numbers
    int alphaSample = -1;    ///< index of the sample that is the opacity; -1 for none
    bool isPremultiplied = false;
    QSizeF dotsPerInch; ///< as stored; 72 where the file states none

    /// True for orientations that exchange width and height.
    [[nodiscard]] bool isTurned() const { return orientation >= 5; }
    /// Width and height of the upright page in points.
    [[nodiscard]] QSizeF sizeInPoints() const;
};

/// Reads the present directory. Throws Failure when it states no size or no sensible one.
[[nodiscard]] TiffPageInfo readTiffPageInfo(const TiffFile& file);

} // namespace quillfern::raster
