#pragma once

#include <QtGlobal>

namespace quillfern {

/// Takes `rows` rows of `width` pixels through JPEG coding at quality 100 without colour subsampling and
/// back, in place. `channels` is 1 for grey or 3 for RGB; rows follow each other without padding. Rows are
/// handled in blocks of eight: a page may be cut into strips of a multiple of eight rows without changing a
/// pixel. May be called from several threads at once. Throws Failure.
void jpegRoundTrip(uchar* pixels, int width, int rows, int channels);

} // namespace quillfern
