#pragma once

#include "platform/raster/PageTags.h"

#include <QByteArray>
#include <QIODevice>
#include <QSizeF>
#include <stop_token>

namespace quillfern::raster {

/// What stands in a JPEG file beside the pixels.
struct JpegSegments
{
    QSizeF dotsPerInch; ///< as the rows are stored; 72 where the file states none
    int orientation = 1;
    PageTags tags;
    int scans = 0;             ///< passes over the picture
    bool isArithmetic = false; ///< coded by probabilities, which has no least size
    bool hasEnd = false;       ///< the end mark is there
};

/// Reads through a whole file. What is damaged is left out; stray bytes between segments are passed over.
[[nodiscard]] JpegSegments readJpegSegments(QIODevice& file, const std::stop_token& stop);

} // namespace quillfern::raster
