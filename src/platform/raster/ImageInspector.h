#pragma once

#include "platform/system/FilePath.h"

#include <QString>
#include <cstdint>

namespace quillfern {

/// What a file's headers tell about the pages in it.
struct ImageFacts
{
    std::int32_t pages = 0;       ///< 0 when the file cannot be read
    std::int32_t compression = 1; ///< the TIFF compression code of the first image; 1 for other formats
};

/// Looks at a PDF or raster file of any supported format, told by its content, not by its name. Reads the
/// trailer and page tree of a PDF, the directories of a TIFF, the headers of others; never pixels.
[[nodiscard]] ImageFacts inspectImageFile(const FilePath& path);

} // namespace quillfern
