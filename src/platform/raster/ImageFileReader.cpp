#include "platform/raster/ImageFileReader.h"

#include "platform/raster/ImageFileFacts.h"
#include "platform/raster/RasterLimits.h"
#include "platform/system/Failure.h"

#include <QColorSpace>
#include <algorithm>
#include <mutex>

namespace quillfern::raster {

namespace {

constexpr int bytesPerDecodedPixel = 4;
constexpr double plainDotsPerInch = 72;

/// Qt has a single limit on the size of decoded images for the whole process. This class raises it to what
/// one image needs, for as long as that image is being read.
class AllocationLimit
{
  public:
    explicit AllocationLimit(std::int64_t bytes) : lock_(mutex()), before_(QImageReader::allocationLimit())
    {
        const auto needed = static_cast<int>((bytes >> 20) + 1);
        QImageReader::setAllocationLimit(std::max(before_, needed));
    }
    ~AllocationLimit() { QImageReader::setAllocationLimit(before_); }
    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;

  private:
    static std::mutex& mutex()
    {
        static std::mutex limit; // guards Qt's own global
        return limit;
    }

    std::lock_guard<std::mutex> lock_;
    int before_;
};

bool isBlackAndWhite(const QImage& image)
{
    if (image.depth() != 1) return false;
    const QList<QRgb> colours = image.colorTable();
    return std::all_of(colours.begin(), colours.end(),
                       [](QRgb colour) { return colour == 0xFF000000U || colour == 0xFFFFFFFFU; });
}

} // namespace

RasterPage pageFromImage(QImage image)
{
    RasterPage page;
    page.isBilevel = isBlackAndWhite(image);
    const bool isGrey = page.isBilevel || image.format() == QImage::Format_Grayscale8 ||
                        image.format() == QImage::Format_Grayscale16 ||
                        (image.format() == QImage::Format_Indexed8 && image.isGrayscale());
    const QColorSpace space = image.colorSpace();
    if (space.isValid() && space != QColorSpace(QColorSpace::SRgb)) page.colourProfile = space.iccProfile();
    image.setColorSpace(QColorSpace());
    image.convertTo(image.hasAlphaChannel() ? QImage::Format_RGBA8888
                    : isGrey                ? QImage::Format_Grayscale8
                                            : QImage::Format_RGB888);
    if (image.isNull())
        throw Failure(
            QT_TRANSLATE_NOOP("quillfern::Failure", "There is not enough memory for a page of this size."));
    if (page.hasAlpha()) page.isBilevel = false;
    page.image = std::move(image);
    return page;
}

ImageFileReader::ImageFileReader(std::unique_ptr<QIODevice> device) : device_(std::move(device))
{
    const ImageFileFacts facts = readImageFileFacts(*device_);
    device_->seek(0);
    reader_.setDevice(device_.get());
    reader_.setDecideFormatFromContent(true);
    reader_.setAutoTransform(true);
    size_ = reader_.size();
    const QSize size = size_;
    if (!reader_.canRead() || !size.isValid())
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "This is not a picture that can be read."));
    checkPageSize(size.width(), size.height(), bytesPerDecodedPixel);
    if (!facts.isWhole)
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The picture is damaged or cut off."));
    const QSizeF dots = facts.dotsPerInch;
    QSizeF points(size.width() / dots.width() * plainDotsPerInch,
                  size.height() / dots.height() * plainDotsPerInch);
    if (reader_.transformation() & QImageIOHandler::TransformationRotate90) points.transpose();
    setPages(std::max(1, reader_.imageCount()), points);
}

QImage ImageFileReader::readImage()
{
    const QSize size = reader_.size();
    const AllocationLimit limit(size.isValid() ? std::int64_t{size.width()} * size.height() * 8 : 0);
    QImage image;
    if (!reader_.read(&image) || image.isNull())
        throw Failure(
            Reason(QT_TRANSLATE_NOOP("quillfern::Failure", "A page of the file is damaged or cut off."))
                .with(reader_.errorString()));
    return image;
}

double ImageFileReader::nextPageBytes()
{
    return double{bytesPerDecodedPixel} * size_.width() * size_.height();
}

RasterPage ImageFileReader::readPage()
{
    return pageFromImage(readImage());
}

} // namespace quillfern::raster
