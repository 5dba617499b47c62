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

/// Reads through a whole file, whose format is recognised by its first bytes; the position of the device
/// afterwards is undefined. Decoders fill in what a cut-off file lacks without an error, so the end mark is
/// looked for here.
[[nodiscard]] ImageFileFacts readImageFileFacts(QIODevice& file);

} // namespace quillfern::raster
