#pragma once

#include "platform/system/FilePath.h"

#include <cstdint>

namespace quillfern {

/// What the list shows of a file's content.
struct PageCount
{
    std::int32_t pages = 0;       ///< 0 when the file cannot be read
    std::int32_t compression = 1; ///< the TIFF compression code of the first picture; 1 for other formats
};

/// Counts the pages of a PDF or raster file of any supported format, recognised by its content, not by its
/// name. Reads the trailer and page tree of a PDF, the directories of a TIFF and the headers of other
/// formats, never pixels.
[[nodiscard]] PageCount countPages(const FilePath& path);

} // namespace quillfern
