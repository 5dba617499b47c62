#include "platform/raster/QtImageReader.h"

#include "platform/raster/Orientation.h"
#include "platform/raster/RasterLimits.h"
#include "platform/system/Cancellation.h"

#include <QColorSpace>
#include <algorithm>
#include <mutex>

namespace quillfern::raster {

/// Passes reading on to another device, until a stop is requested: then every read fails, and with it the
/// decoder.
class StoppableDevice final : public QIODevice
{
  public:
    explicit StoppableDevice(std::unique_ptr<QIODevice> device) : device_(std::move(device))
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    void setStop(const std::stop_token& stop) { stop_ = stop; }
    [[nodiscard]] qint64 size() const override { return device_->size(); }
    bool seek(qint64 position) override { return QIODevice::seek(position) && device_->seek(position); }

  protected:
    qint64 readData(char* data, qint64 size) override
    {
        return stop_.stop_requested() ? -1 : device_->read(data, size);
    }
    qint64 writeData(const char*, qint64) override { return -1; }

  private:
    std::unique_ptr<QIODevice> device_;
    std::stop_token stop_;
};

namespace {

constexpr int bytesPerDecodedPixel = 4;

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

} // namespace

QtImageReader::QtImageReader(std::unique_ptr<QIODevice> device, const std::stop_token& stop)
    : device_(std::make_unique<StoppableDevice>(std::move(device)))
{
    device_->setStop(stop);
    reader_.setDevice(device_.get());
    reader_.setDecideFormatFromContent(true);
    reader_.setAutoTransform(true);
    const QSize size = reader_.size();
    throwIfCancelled(stop);
    if (!reader_.canRead() || !size.isValid())
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "This is not a picture that can be read."));
    const bool isTurned = reader_.transformation() & QImageIOHandler::TransformationRotate90;
    const bool isStored = reader_.transformation() == QImageIOHandler::TransformationNone;
    describe(size, bytesPerDecodedPixel, {plainDotsPerInch, plainDotsPerInch},
             isTurned   ? 6
             : isStored ? 1
                        : 2,
             std::max(1, reader_.imageCount()));
    throwIfCancelled(stop);
}

QtImageReader::~QtImageReader() = default;

RasterPage QtImageReader::readPage(const std::stop_token& stop)
{
    device_->setStop(stop);
    const QSize size = reader_.size();
    const AllocationLimit limit(size.isValid() ? std::int64_t{size.width()} * size.height() * 8 : 0);
    QImage image;
    const bool isRead = reader_.read(&image);
    throwIfCancelled(stop);
    if (!isRead || image.isNull()) throwDamaged(reader_.errorString());
    return pageFromImage(std::move(image));
}

} // namespace quillfern::raster
