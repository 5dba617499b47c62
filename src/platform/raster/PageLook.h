#pragma once

#include "platform/system/FilePath.h"

#include <QSizeF>
#include <optional>
#include <stop_token>

namespace quillfern::raster {

/// The first page of a raster file, upright, as its header states it.
struct PageLook
{
    QSizeF pixels;
    QSizeF points; ///< a pixel is a point where the file states no resolution
};

/// Reads headers, never pixels. Nothing for a file that is no picture or states no sensible size. Throws
/// Cancelled once `stop` is stopped. Any thread.
[[nodiscard]] std::optional<PageLook> lookAtFirstPage(const FilePath& path, const std::stop_token& stop = {});

} // namespace quillfern::raster
