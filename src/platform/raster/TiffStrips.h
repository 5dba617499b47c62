#pragma once

#include "platform/raster/TiffPageInfo.h"
#include "platform/system/Failure.h"

#include <QImage>

namespace quillfern::raster {

class TiffFile;

/// A strip is there whole, and its checksum or its codes are wrong: decoding row by row would not notice the
/// checksum.
class DamagedStrip final : public Failure
{
  public:
    using Failure::Failure;
};

/// True for pages for which decodeStrips() is quicker than row by row: Deflate strips, which are decoded
/// whole, and large pages, of which two threads decode a half each.
[[nodiscard]] bool gainsByStrips(const TiffFile& file, const TiffPageInfo& info);

/// The pixels of such a page, as they are stored (not upright). Throws Failure at anything odd, also where
/// decoding row by row may still give all pixels. Afterwards the file may stand inside a strip.
[[nodiscard]] QImage decodeStrips(TiffFile& file, const TiffPageInfo& info);

} // namespace quillfern::raster
