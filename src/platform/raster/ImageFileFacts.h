#pragma once

#include <QIODevice>
#include <QSizeF>

namespace quillfern::raster {

/// What a BMP, JPEG, PNG or GIF file says of itself that the image decoder does not pass on.
struct ImageFileFacts
{
    QSizeF dotsPerInch{72, 72}; ///< 72 where the file states none
    bool isWhole = true;        ///< false when the file breaks off before its end mark
};

/// Looks through a whole file, told by its first bytes; the device is left anywhere. Decoders fill in what a
/// cut-off file lacks and call it a picture; this looks for the end.
[[nodiscard]] ImageFileFacts readImageFileFacts(QIODevice& file);

} // namespace quillfern::raster
