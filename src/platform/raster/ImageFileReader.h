#pragma once

#include "platform/raster/RasterReader.h"

#include <QIODevice>
#include <QSize>
#include <memory>
#include <stop_token>

namespace quillfern::raster {

/// The frames of a file of any format but TIFF, upright. Each format has a class of its own below this one.
class ImageFileReader : public RasterReader
{
  public:
    /// `device` is open for reading and can seek. The format goes by the content. Throws Failure when the
    /// file holds no picture.
    [[nodiscard]] static std::unique_ptr<ImageFileReader> open(std::unique_ptr<QIODevice> device,
                                                               const std::stop_token& stop = {});

    [[nodiscard]] QSize storedSize() const { return size_; } ///< pixels of a frame as it is stored
    /// True when frames are turned or mirrored to be upright.
    [[nodiscard]] bool isTransformed() const { return orientation_ != 1; }

    [[nodiscard]] double nextPageBytes() override
    {
        return static_cast<double>(bytesPerPixel_) * size_.width() * size_.height();
    }

  protected:
    /// Holds the size against the limits. `dotsPerInch` is that of the stored rows.
    void describe(const QSize& size, int bytesPerPixel, const QSizeF& dotsPerInch, int orientation,
                  int frames = 1);
    [[nodiscard]] int orientation() const { return orientation_; }

  private:
    QSize size_;
    int bytesPerPixel_ = 4;
    int orientation_ = 1;
};

/// The profile where it describes such samples: one for shades does not describe colours, nor the other way
/// round.
[[nodiscard]] QByteArray profileFor(const QByteArray& profile, bool isGrey);

/// Throws Failure: the file is damaged or cut off.
[[noreturn]] void throwDamaged(const QString& said = {});

} // namespace quillfern::raster
