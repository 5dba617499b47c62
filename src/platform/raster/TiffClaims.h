#pragma once

#include "platform/raster/TiffPageInfo.h"

namespace quillfern::raster {

class TiffFile;

/// Throws Failure when the strips or tiles of the present page are too short for the pixels that the
/// directory claims, or when a row or a tile alone needs more memory than is sensible. To be called before
/// memory is taken.
void checkTiffClaims(const TiffFile& file, const TiffPageInfo& info);

} // namespace quillfern::raster
