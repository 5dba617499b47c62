#include "platform/raster/PictureBytes.h"

#include "platform/raster/ImageFileReader.h"
#include "platform/raster/PlainJpeg.h"
#include "platform/raster/TiffContainer.h"
#include "platform/raster/TiffDecoder.h"
#include "platform/raster/TiffFile.h"
#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"

#include <QBuffer>
#include <algorithm>
#include <cstring>

namespace quillfern::raster {

namespace {

/// A picture stays in memory as long as its stamp does and is stored in every profile, so this limit is below
/// that of a page.
constexpr std::int64_t largestPictureBytes = std::int64_t{1} << 28;
constexpr std::int64_t largestPictureFile = std::int64_t{1} << 29;
constexpr std::size_t pictureStripBytes = std::size_t{1} << 18;

void checkPictureSize(const QSize& size)
{
    if (std::int64_t{size.width()} * size.height() > largestPictureBytes / 4)
        throw Failure(
            {QT_TRANSLATE_NOOP("quillfern::Failure", "A picture of %1 x %2 pixels is too large for a stamp."),
             {QString::number(size.width()), QString::number(size.height())}});
}

/// The JPEG that is the only strip of the present page; empty when the page is kept in another way.
QByteArray jpegInside(const TiffFile& file, const TiffPageInfo& info)
{
    TIFF* tiff = file.handle();
    std::uint32_t count = 0;
    void* tables = nullptr;
    const bool isWhole = info.compression == COMPRESSION_JPEG && info.orientation == 1 &&
                         !TIFFIsTiled(tiff) && TIFFNumberOfStrips(tiff) == 1 &&
                         TIFFGetField(tiff, TIFFTAG_JPEGTABLES, &count, &tables) != 1;
    const std::uint64_t size = isWhole ? TIFFGetStrileByteCount(tiff, 0) : 0;
    if (size == 0 || size > static_cast<std::uint64_t>(largestPictureFile)) return {};
    QByteArray jpeg(static_cast<qsizetype>(size), Qt::Uninitialized);
    if (TIFFReadRawStrip(tiff, 0, jpeg.data(), jpeg.size()) != jpeg.size()) return {};
    return readPlainJpeg(jpeg) ? jpeg : QByteArray();
}

struct Decoded
{
    RasterPage page;
    QByteArray jpeg; ///< of the same pixels; empty when there is none
};

Decoded decodeFirstPage(const QByteArray& bytes)
{
    if (!TiffFile::isTiff(bytes)) {
        auto buffer = std::make_unique<QBuffer>();
        buffer->setData(bytes);
        buffer->open(QIODevice::ReadOnly);
        const auto reader = ImageFileReader::open(std::move(buffer));
        checkPictureSize(reader->storedSize());
        RasterPage page = reader->readPage();
        page.spreadBits();
        return {std::move(page), !reader->isTransformed() && readPlainJpeg(bytes) ? bytes : QByteArray()};
    }
    TiffFile file(bytes);
    const TiffPageInfo info = readTiffPageInfo(file);
    checkPictureSize({static_cast<int>(std::min(info.width, 0x7FFFFFFFU)),
                      static_cast<int>(std::min(info.height, 0x7FFFFFFFU))});
    RasterPage page = decodeTiffPage(file, info);
    page.spreadBits();
    if (page.image.isNull())
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "There is not enough memory for the picture."));
    return {std::move(page), jpegInside(file, info)};
}

QByteArray tiffOf(const QImage& image)
{
    StripFormat format;
    format.width = static_cast<std::uint32_t>(image.width());
    format.channels = static_cast<std::uint16_t>(image.depth() / 8);
    format.compression = COMPRESSION_ADOBE_DEFLATE;
    const int rowsPerStrip = std::max(1, static_cast<int>(pictureStripBytes / format.rowBytes()));

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

/// A TIFF around a JPEG, which is not coded anew.
QByteArray tiffOf(const QByteArray& jpeg, const PlainJpeg& facts)
{
    StripFormat format;
    format.width = static_cast<std::uint32_t>(facts.width);
    format.channels = static_cast<std::uint16_t>(facts.components);
    format.compression = COMPRESSION_JPEG;
    format.subsampling = facts.subsampling;
    TiffMemoryOutput output;
    TiffContainer container(output);
    container.beginPage(format, static_cast<std::uint32_t>(facts.height),
                        static_cast<std::uint32_t>(facts.height), QSizeF(72, 72), {});
    container.addStrip(jpeg);
    container.finish();
    return output.bytes();
}

} // namespace

PictureBytes readPictureFile(const FilePath& path)
{
    const auto file = readRegularFile(path);
    if (file->size() > largestPictureFile)
        throw Failure(
            QT_TRANSLATE_NOOP("quillfern::Failure", "The file is too large for the picture of a stamp."));
    const Decoded decoded = decodeFirstPage(file->readAll());
    const QSize size = decoded.page.image.size();
    const auto plain = readPlainJpeg(decoded.jpeg);
    return {plain ? tiffOf(decoded.jpeg, *plain) : tiffOf(decoded.page.image), size};
}

drawing::Picture decodePicture(const QByteArray& bytes)
{
    Decoded decoded = decodeFirstPage(bytes);
    QImage image = std::move(decoded.page.image);
    // The formats that Qt paints fastest; the colours stay as they are, not multiplied by alpha.
    if (image.format() != QImage::Format_Grayscale8)
        image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (image.isNull())
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "There is not enough memory for the picture."));
    return drawing::Picture(std::move(image), std::move(decoded.jpeg));
}

} // namespace quillfern::raster
