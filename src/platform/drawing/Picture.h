#pragma once

#include <QByteArray>
#include <QImage>
#include <QSizeF>
#include <memory>

namespace quillfern::drawing {

/// A decoded picture that is drawn many times. Shared, immutable; may be read from any thread.
class Picture
{
  public:
    /// `jpeg` is the JPEG file that the picture comes from, when there is one and it is shown as stored
    /// (neither turned nor mirrored).
    explicit Picture(QImage image, QByteArray jpeg = {});

    [[nodiscard]] const QImage& image() const { return image_; }
    /// Different for different pictures for as long as the program runs; copies of one picture share it.
    [[nodiscard]] qint64 key() const { return image_.cacheKey(); }
    /// The JPEG that decodes to image(); empty when there is none.
    [[nodiscard]] const QByteArray& jpeg() const { return jpeg_; }
    [[nodiscard]] bool isGrey() const { return isGrey_; } ///< no pixel has a colour

    /// The picture to draw at `size` pixels: the picture itself, or a smaller one made by averaging where
    /// picking pixels from the whole would drop most of them. Each halved size is computed only once.
    [[nodiscard]] QImage imageFor(const QSizeF& size) const;

  private:
    struct Halves;

    QImage image_;
    QByteArray jpeg_;
    bool isGrey_;
    std::shared_ptr<Halves> halves_;
};

} // namespace quillfern::drawing
