#pragma once

#include <QByteArray>
#include <QtGlobal>

namespace quillfern::raster {

/// Takes `rows` rows of `width` pixels through JPEG coding at quality 100 without colour subsampling and
/// back, in place. `channels` is 1 for grey or 3 for RGB; rows follow each other without padding. Rows are
/// handled in blocks of eight: a page may be cut into strips of a multiple of eight rows without changing a
/// pixel. May be called from several threads at once. Throws Failure.
void jpegRoundTrip(uchar* pixels, int width, int rows, int channels);

/// The same pixels as one JPEG of that quality. `width` is at most widestJpeg; rows begin `pitch` bytes
/// apart.
[[nodiscard]] QByteArray encodeJpeg(const uchar* pixels, int width, int rows, int channels, int pitch);

inline constexpr int widestJpeg = 65500;

} // namespace quillfern::raster
