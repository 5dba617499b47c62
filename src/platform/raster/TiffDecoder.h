#pragma once

#include "platform/raster/RasterPage.h"
#include "platform/raster/TiffPageInfo.h"

namespace quillfern::raster {

class TiffFile;

/// Decodes the page of the present directory and turns it upright. Throws Failure when any of its data is
/// missing or damaged, and, before memory is taken, when the page is too large.
[[nodiscard]] RasterPage decodeTiffPage(TiffFile& file, const TiffPageInfo& info);

/// Bytes of pixels that the page takes when decoded, at most; for a hostile header more than any memory
/// holds.
[[nodiscard]] double decodedTiffBytes(const TiffPageInfo& info);

} // namespace quillfern::raster
