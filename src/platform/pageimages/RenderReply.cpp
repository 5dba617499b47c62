#include "platform/pageimages/RenderReply.h"

#include <cmath>
#include <cstring>

namespace quillfern::pageimages {

namespace {

struct Header
{
    char magic[8] = {};
    double pageWidth = 0;
    double pageHeight = 0;
    qint32 width = 0;
    qint32 height = 0;
};

constexpr char magic[8] = {'q', 'u', 'i', 'l', 'l', 'p', 'g', '1'};
constexpr qsizetype headerSize = sizeof(Header);
constexpr qint64 pixelBytes = 4;

} // namespace

QByteArray encodeRenderReply(const PageImage& page)
{
    Header header;
    std::memcpy(header.magic, magic, sizeof magic);
    header.pageWidth = page.size.width();
    header.pageHeight = page.size.height();
    header.width = page.image.width();
    header.height = page.image.height();
    QByteArray bytes(reinterpret_cast<const char*>(&header), headerSize);
    bytes.reserve(headerSize + page.image.width() * pixelBytes * page.image.height());
    for (int y = 0; y < page.image.height(); ++y)
        bytes.append(reinterpret_cast<const char*>(page.image.constScanLine(y)),
                     page.image.width() * pixelBytes);
    return bytes;
}

qint64 largestRenderReply(const PageImageRequest& request)
{
    const auto side = [&](double length) { return static_cast<qint64>(length * request.density) + 2; };
    return headerSize + side(request.box.width()) * side(request.box.height()) * pixelBytes;
}

std::optional<PageImage> decodeRenderReply(const QByteArray& bytes, const PageImageRequest& request)
{
    if (bytes.size() < headerSize) return std::nullopt;
    Header header;
    std::memcpy(&header, bytes.constData(), headerSize);
    if (std::memcmp(header.magic, magic, sizeof magic) != 0) return std::nullopt;
    const QSizeF page(header.pageWidth, header.pageHeight);
    if (!std::isfinite(page.width()) || !std::isfinite(page.height()) || page.isEmpty()) return std::nullopt;
    // The picture must have the size that follows from the page's.
    const QSize size = pixelSize(page, request);
    if (size != QSize(header.width, header.height)) return std::nullopt;
    if (bytes.size() != headerSize + size.width() * pixelBytes * size.height()) return std::nullopt;
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull()) return std::nullopt;
    const char* row = bytes.constData() + headerSize;
    for (int y = 0; y < size.height(); ++y, row += size.width() * pixelBytes)
        std::memcpy(image.scanLine(y), row, static_cast<std::size_t>(size.width() * pixelBytes));
    image.setDevicePixelRatio(pixelsPerPoint(page, request));
    return PageImage{image, page};
}

} // namespace quillfern::pageimages
