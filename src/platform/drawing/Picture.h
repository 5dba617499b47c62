#pragma once

#include <QImage>

namespace quillfern {

/// A decoded picture that is drawn many times. Shared, immutable; may be read from any thread.
class Picture
{
  public:
    explicit Picture(QImage image) : image_(std::move(image)) {}

    [[nodiscard]] const QImage& image() const { return image_; }
    /// Tells pictures apart for as long as the program runs; copies of one picture share it.
    [[nodiscard]] qint64 key() const { return image_.cacheKey(); }

  private:
    QImage image_;
};

} // namespace quillfern
