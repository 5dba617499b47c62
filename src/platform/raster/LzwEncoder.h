#pragma once

#include <QByteArray>

namespace quillfern::raster {

/// Packs bytes into one strip of TIFF's LZW coding (codes of 9 to 12 bits, high bits first). Long runs of a
/// zero byte, which blank paper becomes under the horizontal predictor, are looked up by their length instead
/// of byte by byte.
[[nodiscard]] QByteArray encodeLzw(const QByteArray& bytes);

} // namespace quillfern::raster
