#pragma once

#include "platform/raster/PageTags.h"

#include <QByteArray>
#include <QSizeF>

namespace quillfern::raster {

/// What the EXIF block of a picture says that concerns a page. A block is a small TIFF without pixels.
struct ExifFields
{
    int orientation = 1;
    QSizeF dotsPerInch; ///< empty where the block states none
    PageTags tags;
};

/// Reads a block; whatever is damaged in the block is left out.
[[nodiscard]] ExifFields readExif(const QByteArray& block);

} // namespace quillfern::raster
