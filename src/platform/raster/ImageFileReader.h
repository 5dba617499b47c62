#pragma once

#include "platform/raster/RasterPage.h"
#include "platform/raster/RasterReader.h"

#include <QIODevice>
#include <QImage>
#include <QImageIOHandler>
#include <QImageReader>
#include <QSize>
#include <memory>

namespace quillfern::raster {

/// The frames of a BMP, JPEG, PNG or GIF file, upright.
class ImageFileReader final : public RasterReader
{
  public:
    /// `device` is open for reading and can seek. Throws Failure when it holds no such picture.
    explicit ImageFileReader(std::unique_ptr<QIODevice> device);

    /// Pixels of a frame as it is stored.
    [[nodiscard]] QSize storedSize() const { return size_; }
    /// True when frames are turned or mirrored to be upright.
    [[nodiscard]] bool isTransformed() const
    {
        return reader_.transformation() != QImageIOHandler::TransformationNone;
    }

    [[nodiscard]] RasterPage readPage() override;
    [[nodiscard]] double nextPageBytes() override;
    /// Frames build on each other: passing over one decodes it all the same.
    void skipPage() override { static_cast<void>(readPage()); }

  private:
    [[nodiscard]] QImage readImage();

    std::unique_ptr<QIODevice> device_;
    QImageReader reader_;
    QSize size_;
};

/// A decoded image as a page.
[[nodiscard]] RasterPage pageFromImage(QImage image);

} // namespace quillfern::raster
