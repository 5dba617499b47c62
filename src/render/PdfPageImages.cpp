#include "render/PdfPageImages.h"

#include "platform/pdf/PdfPageExtract.h"
#include "platform/system/Failure.h"

#include <QBuffer>
#include <QPainter>
#include <QPdfDocument>

namespace quillfern {

std::optional<pageimages::PageImage> PdfPageImages::page(const pageimages::PageImageRequest& request)
{
    pdf::ExtractedPage extracted;
    try {
        extracted = pdf::extractPdfPage(request.path, request.page,
                                        request.visiblePage ? pdf::PageArea::Visible : pdf::PageArea::Whole,
                                        {{request.password}});
    } catch (const Failure&) {
        return std::nullopt;
    }
    QBuffer buffer(&extracted.document);
    buffer.open(QIODevice::ReadOnly);
    QPdfDocument document;
    document.load(&buffer);
    if (document.status() != QPdfDocument::Status::Ready || document.pageCount() != 1) return std::nullopt;

    const QSize size = pageimages::pixelSize(extracted.size, request);
    const QImage marks = document.render(0, size);
    QImage image(size, QImage::Format_RGB32);
    if (marks.isNull() || image.isNull()) return std::nullopt;
    image.fill(Qt::white); // the renderer draws marks only, not the paper
    QPainter painter(&image);
    painter.drawImage(0, 0, marks);
    painter.end();
    return pageimages::PageImage{image, extracted.size};
}

} // namespace quillfern
