#pragma once

#include <QImage>

namespace quillfern::raster {

// How a picture is stored, in the numbers that TIFF and EXIF share: 1 upright, 2 to 4 mirrored or upside
// down, 5 to 8 the same with rows and columns exchanged.

/// True for orientations that exchange width and height.
[[nodiscard]] constexpr bool isTurned(int orientation)
{
    return orientation >= 5;
}

/// The image as its reader sees it. The image given is freed as early as possible. Throws Failure when there
/// is not enough memory.
[[nodiscard]] QImage upright(QImage image, int orientation);

} // namespace quillfern::raster
