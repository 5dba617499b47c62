#include "platform/drawing/Picture.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace quillfern::drawing {

struct Picture::Halves
{
    std::mutex mutex;
    std::vector<QImage> images; ///< a half, a quarter, an eighth ... of the sides
};

Picture::Picture(QImage image, QByteArray jpeg)
    : image_(std::move(image)), jpeg_(std::move(jpeg)), isGrey_(image_.allGray()),
      halves_(std::make_shared<Halves>())
{
}

QImage Picture::imageFor(const QSizeF& size) const
{
    std::size_t level = 0;
    QImage image = image_;
    const std::lock_guard lock(halves_->mutex);
    // Interpolation reads four pixels for each one it makes, so scaling to between a half and the whole skips
    // none.
    while (image.width() >= 2 * size.width() && image.height() >= 2 * size.height() && image.width() > 1 &&
           image.height() > 1) {
        if (level == halves_->images.size())
            halves_->images.push_back(image.scaled((image.width() + 1) / 2, (image.height() + 1) / 2,
                                                   Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        image = halves_->images[level++];
    }
    return image;
}

} // namespace quillfern::drawing
