#include "render/RasterPageImages.h"

#include <QImageReader>
#include <QPainter>

namespace quillfern {

namespace {

constexpr double metresPerPoint = 0.0254 / 72;

/// A pixel is a point where the file states no resolution.
QSizeF sizeInPoints(const QImage& image, bool statesResolution)
{
    if (!statesResolution) return image.size();
    return {image.width() / (image.dotsPerMeterX() * metresPerPoint),
            image.height() / (image.dotsPerMeterY() * metresPerPoint)};
}

} // namespace

std::optional<PageImage> RasterPageImages::page(const PageImageRequest& request)
{
    QImageReader reader(request.path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    for (int i = 0; i < request.page; ++i)
        if (reader.read().isNull()) return std::nullopt;
    const QImage loaded = reader.read();
    if (loaded.isNull()) return std::nullopt;
    const QSizeF page = sizeInPoints(loaded, loaded.dotsPerMeterX() > 0 && loaded.dotsPerMeterY() > 0);
    const QSize size = pixelSize(page, request);
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull()) return std::nullopt;
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.drawImage(0, 0, loaded.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    painter.end();
    return PageImage{image, page};
}

} // namespace quillfern
