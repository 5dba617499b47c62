#pragma once

#include "platform/system/FilePath.h"

#include <cstdint>
#include <optional>

namespace quillfern::raster {

/// What a raster file's headers say about the pictures in it.
struct ImageFacts
{
    std::int32_t pages = 0;       ///< 0 for a TIFF whose directories cannot be read
    std::int32_t compression = 1; ///< the TIFF compression code of the first image; 1 for other formats
};

/// Looks at a raster file of any supported format, recognised by its content, not by its name. Reads the
/// directories of a TIFF, the headers of others; never pixels. Nothing for any other file and for one that
/// cannot be read.
[[nodiscard]] std::optional<ImageFacts> inspectImageFile(const FilePath& path);

} // namespace quillfern::raster
