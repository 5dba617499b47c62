#include "platform/raster/ImageFileReader.h"

#include "platform/raster/BmpReader.h"
#include "platform/raster/GifReader.h"
#include "platform/raster/JpegReader.h"
#include "platform/raster/Orientation.h"
#include "platform/raster/PngReader.h"
#include "platform/raster/QtImageReader.h"
#include "platform/raster/RasterLimits.h"
#include "platform/system/Failure.h"

namespace quillfern::raster {

std::unique_ptr<ImageFileReader> ImageFileReader::open(std::unique_ptr<QIODevice> device,
                                                       const std::stop_token& stop)
{
    const QByteArray start = device->peek(8);
    if (JpegReader::isJpeg(start)) return std::make_unique<JpegReader>(std::move(device), stop);
    if (PngReader::isPng(start)) return std::make_unique<PngReader>(std::move(device), stop);
    if (start.startsWith("GIF8")) return std::make_unique<GifReader>(std::move(device), stop);
    if (start.startsWith("BM")) return std::make_unique<BmpReader>(std::move(device));
    return std::make_unique<QtImageReader>(std::move(device), stop);
}

void ImageFileReader::describe(const QSize& size, int bytesPerPixel, const QSizeF& dotsPerInch,
                               int orientation, int frames)
{
    checkPageSize(size.width(), size.height(), bytesPerPixel);
    size_ = size;
    bytesPerPixel_ = bytesPerPixel;
    orientation_ = orientation;
    const QSizeF points(size.width() / dotsPerInch.width() * plainDotsPerInch,
                        size.height() / dotsPerInch.height() * plainDotsPerInch);
    setPages(frames, isTurned(orientation) ? points.transposed() : points);
}

QByteArray profileFor(const QByteArray& profile, bool isGrey)
{
    return (profile.mid(16, 4) == "GRAY") == isGrey ? profile : QByteArray();
}

void throwDamaged(const QString& said)
{
    const Reason reason(QT_TRANSLATE_NOOP("quillfern::Failure", "A page of the file is damaged or cut off."));
    throw Failure(said.isEmpty() ? reason : reason.with(said));
}

} // namespace quillfern::raster
