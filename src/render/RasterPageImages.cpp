#include "render/RasterPageImages.h"

#include "platform/raster/RasterReader.h"
#include "platform/system/Failure.h"

#include <QColorSpace>
#include <QPainter>

namespace quillfern {

namespace {

/// The page's pixels converted to the colours of a screen.
QImage forScreen(raster::RasterPage page)
{
    page.spreadBits();
    if (page.isGrey() || page.colourProfile.isEmpty()) return page.image;
    const QColorSpace space = QColorSpace::fromIccProfile(page.colourProfile);
    if (!space.isValid()) return page.image;
    page.image.setColorSpace(space);
    return page.image.convertedToColorSpace(QColorSpace::SRgb);
}

} // namespace

std::optional<pageimages::PageImage> RasterPageImages::page(const pageimages::PageImageRequest& request)
{
    try {
        const auto reader = raster::RasterReader::open(request.path);
        if (request.page >= reader->pageCount()) return std::nullopt;
        for (int i = 0; i < request.page; ++i)
            reader->skipPage();
        // Every page is shown at the size of the first page, as a job stamps it.
        const QSizeF page = reader->firstPageSize();
        const QSize size = pageimages::pixelSize(page, request);
        const QImage pixels =
            forScreen(reader->readPage()).scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QImage image(size, QImage::Format_RGB32);
        if (pixels.isNull() || image.isNull()) return std::nullopt;
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.drawImage(0, 0, pixels);
        painter.end();
        return pageimages::PageImage{image, page};
    } catch (const Failure&) {
        return std::nullopt;
    }
}

} // namespace quillfern
