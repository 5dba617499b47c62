#include "platform/raster/PictureBytes.h"

#include "platform/raster/ImageFileReader.h"
#include "platform/raster/TiffContainer.h"
#include "platform/raster/TiffDecoder.h"
#include "platform/raster/TiffFile.h"
#include "platform/system/Failure.h"

#include <QBuffer>
#include <QFile>
#include <algorithm>
#include <cstring>
#include <tiff.h>

namespace quillfern {

namespace {

/// A picture is held for as long as its stamp is, and goes into every profile: less than a page may be.
constexpr std::int64_t largestPictureBytes = std::int64_t{1} << 28;
constexpr std::int64_t largestPictureFile = std::int64_t{1} << 29;
constexpr std::size_t stripBytes = std::size_t{1} << 18;

void checkPictureSize(const QSize& size)
{
    if (std::int64_t{size.width()} * size.height() > largestPictureBytes / 4)
        throw Failure(QStringLiteral("a picture of %1 x %2 pixels is too large for a stamp")
                          .arg(size.width())
                          .arg(size.height()));
}

RasterPage decodeFirstPage(const QByteArray& bytes)
{
    if (!TiffFile::isTiff(bytes)) {
        auto buffer = std::make_unique<QBuffer>();
        buffer->setData(bytes);
        buffer->open(QIODevice::ReadOnly);
        ImageFileReader reader(std::move(buffer));
        checkPictureSize(reader.storedSize());
        return reader.readPage();
    }
    TiffFile file(bytes);
    const TiffPageInfo info = readTiffPageInfo(file);
    checkPictureSize({static_cast<int>(std::min(info.width, 0x7FFFFFFFU)),
                      static_cast<int>(std::min(info.height, 0x7FFFFFFFU))});
    return decodeTiffPage(file, info);
}

QByteArray tiffOf(const QImage& image)
{
    StripFormat format;
    format.width = static_cast<std::uint32_t>(image.width());
    format.channels = static_cast<std::uint16_t>(image.depth() / 8);
    format.compression = COMPRESSION_ADOBE_DEFLATE;
    const int rowsPerStrip = std::max(1, static_cast<int>(stripBytes / format.rowBytes()));

    TiffMemoryOutput output;
    TiffContainer container(output);
    container.beginPage(format, static_cast<std::uint32_t>(image.height()),
                        static_cast<std::uint32_t>(rowsPerStrip), QSizeF(72, 72), {});
    for (int top = 0; top < image.height(); top += rowsPerStrip) {
        QByteArray rows;
        for (int y = top; y < std::min(top + rowsPerStrip, image.height()); ++y)
            rows.append(reinterpret_cast<const char*>(image.constScanLine(y)),
                        static_cast<qsizetype>(format.rowBytes()));
        container.addStrip(encodeStrip(format, std::move(rows)));
    }
    container.finish();
    return output.bytes();
}

} // namespace

PictureBytes readPictureFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(QStringLiteral("the picture cannot be read: %1").arg(file.errorString()));
    if (file.size() > largestPictureFile)
        throw Failure(QStringLiteral("the file is too large for the picture of a stamp"));
    const RasterPage page = decodeFirstPage(file.readAll());
    return {tiffOf(page.image), page.image.size()};
}

Picture decodePicture(const QByteArray& bytes)
{
    QImage image = decodeFirstPage(bytes).image;
    // The forms that painting is fast with; the colours stay as they are, not multiplied by alpha.
    if (image.format() != QImage::Format_Grayscale8)
        image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (image.isNull()) throw Failure(QStringLiteral("not enough memory for a picture"));
    return Picture(std::move(image));
}

} // namespace quillfern
