#pragma once

#include "platform/raster/RasterReader.h"

#include <QImageReader>

namespace quillfern {

/// The frames of a BMP, JPEG, PNG or GIF file, upright.
class ImageFileReader final : public RasterReader
{
  public:
    explicit ImageFileReader(const QString& path);

    [[nodiscard]] RasterPage readPage() override;
    /// Frames build on each other: passing over one decodes it all the same.
    void skipPage() override { static_cast<void>(readPage()); }

  private:
    [[nodiscard]] QImage readImage();

    QImageReader reader_;
};

/// A decoded image as a page.
[[nodiscard]] RasterPage pageFromImage(QImage image);

} // namespace quillfern
