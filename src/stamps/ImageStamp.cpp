#include "stamps/ImageStamp.h"

#include "platform/raster/PictureBytes.h"
#include "platform/system/Guarded.h"
#include "stamps/Placement.h"

#include <QCoreApplication>
#include <algorithm>

namespace quillfern {

LoadedPicture LoadedPicture::readFor(const FilePath& path)
{
    raster::PictureBytes bytes = raster::readPictureFile(path);
    drawing::Picture picture = raster::decodePicture(bytes.tiff);
    return {path, std::move(bytes.tiff), bytes.size, std::move(picture)};
}

void ImageStamp::setStampImage(std::optional<QByteArray> bytes)
{
    cacheImage_.reset();
    stampImage_ = std::move(bytes);
    if (stampImage_ && !stampImage_->isEmpty()) cacheImage_ = raster::decodePicture(*stampImage_);
}

void ImageStamp::take(LoadedPicture loaded)
{
    stampImagePath = loaded.path.text();
    stampImageWidth = loaded.size.width();
    stampImageHeight = loaded.size.height();
    stampImage_ = std::move(loaded.tiff);
    cacheImage_ = std::move(loaded.picture);
}

void ImageStamp::loadPicture(const FilePath& path)
{
    take(LoadedPicture::readFor(path));
}

void ImageStamp::removePicture()
{
    stampImagePath = QString();
    stampImageWidth = 0;
    stampImageHeight = 0;
    stampImage_ = QByteArray();
    cacheImage_.reset();
}

std::unique_ptr<IStampItem> ImageStamp::clone() const
{
    return std::make_unique<ImageStamp>(*this);
}

void ImageStamp::draw(drawing::Canvas& canvas, const QRectF& rect, MarginAnchor marginAnchor, std::int64_t,
                      std::int64_t, bool isHighLightStamp) const
{
    guarded("Error in [Draw:rect:marginAnchor:pageNumber:totalPages:isHighLightStamp:] : %@", [&] {
        if (!cacheImage_ || stampImageWidth <= 0 || stampImageHeight <= 0 || stampImageOpacity <= 0) return;
        const QSizeF size(static_cast<double>(stampImageWidth), static_cast<double>(stampImageHeight));
        const int angle =
            static_cast<int>(std::clamp<std::int64_t>(stampImageRotation, -1'000'000'000, 1'000'000'000));
        const QPointF corner =
            guarded("Error in [getTransformedPoint:textSize:angle:rect:marginAnchor:pointIndex] : %@",
                    QPointF(0, 0), [&] { return getTransformedPoint(size, angle, rect, marginAnchor, 0); });

        canvas.save();
        canvas.translate(rect.x() + corner.x(), rect.y() + corner.y());
        canvas.rotate(-angle * radiansPerDegree);
        const QRectF target(QPointF(0, 0), size);
        canvas.drawPicture(*cacheImage_, target,
                           static_cast<double>(std::min<std::int64_t>(stampImageOpacity, 100)) * 0.01);
        if (isHighLightStamp) canvas.fillRect(target, QColor::fromRgbF(1, 0, 0, 0.5F));
        canvas.restore();
    });
}

QString ImageStamp::description() const
{
    QString name = label().value_or(QString());
    if (name.isEmpty() && stampImagePath) name = FilePath::fromText(*stampImagePath).stem();
    return QCoreApplication::translate("quillfern::ImageStamp", "Image [%1]").arg(name);
}

std::optional<store::Record> ImageStamp::getData() const
{
    return guarded<std::optional<store::Record>>("Error in (ImageStamp=>getData) : %@", std::nullopt, [this] {
        store::RecordBuilder builder;
        builder.add(QStringLiteral("stampImageRotation"), store::low32(stampImageRotation))
            .add(QStringLiteral("stampImageOpacity"), store::low32(stampImageOpacity))
            .add(QStringLiteral("stampImageHeight"), store::low32(stampImageHeight))
            .add(QStringLiteral("stampImageWidth"), store::low32(stampImageWidth))
            .add(QStringLiteral("stampImage"), stampImage_)
            .add(QStringLiteral("stampImagePath"), stampImagePath);
        addShared(builder);
        return std::optional(builder.take());
    });
}

void ImageStamp::fillAbsentValues()
{
    StampBase::fillAbsentValues();
    if (!stampImage_) stampImage_ = QByteArray();
    if (!stampImagePath) stampImagePath = QString();
}

void ImageStamp::setData(const store::Record* data)
{
    cacheImage_.reset();
    guarded("Error in (ImageStamp=>setData:) : %@", [&] {
        if (!data) return;
        readShared(*data);
        stampImagePath = data->text(QStringLiteral("stampImagePath"));
        stampImage_ = data->bytes(QStringLiteral("stampImage"));
        stampImageWidth = data->integer32(QStringLiteral("stampImageWidth"));
        stampImageHeight = data->integer32(QStringLiteral("stampImageHeight"));
        stampImageOpacity = data->integer32(QStringLiteral("stampImageOpacity"));
        stampImageRotation = data->integer32(QStringLiteral("stampImageRotation"));
        setStampImage(stampImage_);
    });
}

} // namespace quillfern
