#include "platform/raster/PageTags.h"

#include <algorithm>
#include <array>
#include <tiff.h>

namespace quillfern::raster {

bool isPageText(std::uint16_t tag)
{
    constexpr std::array texts = {TIFFTAG_IMAGEDESCRIPTION, TIFFTAG_MAKE,   TIFFTAG_MODEL,
                                  TIFFTAG_DATETIME,         TIFFTAG_ARTIST, TIFFTAG_COPYRIGHT};
    return std::find(texts.begin(), texts.end(), tag) != texts.end();
}

} // namespace quillfern::raster
