#pragma once

#include "platform/drawing/Canvas.h"
#include "platform/drawing/Picture.h"
#include "platform/store/Record.h"
#include "platform/system/FilePath.h"
#include "stamps/IStampItem.h"
#include "stamps/StampBase.h"

#include <QByteArray>
#include <QRectF>
#include <QSize>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>

namespace quillfern {

/// What a stamp takes over from a picture file. Reading a large picture is slow and may be done on any
/// thread; moving a LoadedPicture is quick.
struct LoadedPicture
{
    FilePath path;
    QByteArray tiff;
    QSize size; ///< pixels
    drawing::Picture picture;

    /// Reads a BMP, JPEG, PNG or GIF file. Throws Failure when the file cannot be used.
    [[nodiscard]] static LoadedPicture readFor(const FilePath& path);
};

/// A stamp that puts a picture on every page. The stamp contains the picture, so that a profile does not
/// depend on the picture file.
class ImageStamp final : public StampBase
{
  public:
    std::optional<QString> stampImagePath = QString(); ///< where the picture came from; for people
    std::int64_t stampImageWidth = 0;                  ///< drawn size in points; draws nothing unless above 0
    std::int64_t stampImageHeight = 0;
    std::int64_t stampImageOpacity = 100; ///< percent
    std::int64_t stampImageRotation = 0;  ///< whole degrees, counter-clockwise on the page

    /// The encoded picture (a TIFF of one page); empty or absent for a stamp without a picture.
    [[nodiscard]] const std::optional<QByteArray>& stampImage() const { return stampImage_; }
    /// Replaces the encoded picture and decodes it. Throws Failure for bytes that cannot be decoded; the
    /// stamp keeps such bytes and draws nothing.
    void setStampImage(std::optional<QByteArray> bytes);
    /// Takes over a picture, its path, and its size in pixels as the drawn size.
    void take(LoadedPicture loaded);
    /// Takes the picture of a file. Throws Failure, with nothing changed, when the file cannot be used.
    void loadPicture(const FilePath& path);
    /// Forgets the picture, its path and its size.
    void removePicture();
    /// The decoded picture; present exactly when stampImage() holds bytes that can be decoded.
    [[nodiscard]] const std::optional<drawing::Picture>& cacheImage() const { return cacheImage_; }

    void setData(const store::Record* data) override;
    [[nodiscard]] std::optional<store::Record> getData() const override;
    void fillAbsentValues() override;
    /// See IStampItem; the numbers are ignored.
    [[nodiscard]] std::unique_ptr<IStampItem> clone() const override;
    void draw(drawing::Canvas& canvas, const QRectF& rect, MarginAnchor marginAnchor, std::int64_t pageNumber,
              std::int64_t totalPages, bool isHighLightStamp) const override;
    [[nodiscard]] QString description() const override;

  private:
    std::optional<QByteArray> stampImage_ = QByteArray();
    std::optional<drawing::Picture> cacheImage_;
};

} // namespace quillfern
