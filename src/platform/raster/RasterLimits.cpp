#include "platform/raster/RasterLimits.h"

#include "platform/system/Failure.h"

#include <QPixelFormat>
#include <algorithm>

namespace quillfern::raster {

void checkPageSize(std::int64_t width, std::int64_t height, int bytesPerPixel)
{
    const auto failure = [&](const char* text) {
        return Failure({text, {QString::number(width), QString::number(height)}});
    };
    if (width <= 0 || height <= 0)
        throw failure(QT_TRANSLATE_NOOP("quillfern::Failure",
                                        "The file is damaged: one of its pages has %1 x %2 pixels."));
    if (width > largestPageBytes / bytesPerPixel / height)
        throw failure(QT_TRANSLATE_NOOP("quillfern::Failure",
                                        "A page of %1 x %2 pixels is too large to be processed."));
}

void checkClaim(double width, double height, double bytesPerPixel, double stored, double ratio)
{
    const double claimed = width * height * bytesPerPixel;
    if (claimed <= smallestClaim || claimed <= stored * ratio) return;
    throw Failure(
        {QT_TRANSLATE_NOOP("quillfern::Failure",
                           "The file is damaged or cut off: it is too short for a page of %1 x %2 pixels."),
         {QString::number(width, 'f', 0), QString::number(height, 'f', 0)}});
}

QImage makePageImage(std::int64_t width, std::int64_t height, QImage::Format format)
{
    // Pixels of one bit count as a byte each, because they may have to be expanded later.
    checkPageSize(width, height, std::max(1, QImage::toPixelFormat(format).bitsPerPixel() / 8));
    QImage image(static_cast<int>(width), static_cast<int>(height), format);
    if (image.isNull())
        throw Failure(
            QT_TRANSLATE_NOOP("quillfern::Failure", "There is not enough memory for a page of this size."));
    return image;
}

} // namespace quillfern::raster
