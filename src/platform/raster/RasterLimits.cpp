#include "platform/raster/RasterLimits.h"

#include "platform/system/Failure.h"

#include <QPixelFormat>
#include <algorithm>

namespace quillfern {

void checkPageSize(std::int64_t width, std::int64_t height, int bytesPerPixel)
{
    const QString size = QStringLiteral("%1 x %2 pixels").arg(width).arg(height);
    if (width <= 0 || height <= 0)
        throw Failure(QStringLiteral("the file is damaged: a page of %1").arg(size));
    if (width > largestPageBytes / bytesPerPixel / height)
        throw Failure(QStringLiteral("a page of %1 is too large to be processed").arg(size));
}

QImage makePageImage(std::int64_t width, std::int64_t height, QImage::Format format)
{
    // Pixels of one bit may have to become bytes.
    checkPageSize(width, height, std::max(1, QImage::toPixelFormat(format).bitsPerPixel() / 8));
    QImage image(static_cast<int>(width), static_cast<int>(height), format);
    if (image.isNull()) throw Failure(QStringLiteral("not enough memory for a page"));
    return image;
}

} // namespace quillfern
