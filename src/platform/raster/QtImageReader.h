#pragma once

#include "platform/raster/ImageFileReader.h"

#include <QImageReader>

namespace quillfern::raster {

class StoppableDevice;

/// The frames of any format that Qt reads.
class QtImageReader final : public ImageFileReader
{
  public:
    /// Throws Failure when `device` holds no such picture.
    QtImageReader(std::unique_ptr<QIODevice> device, const std::stop_token& stop);
    ~QtImageReader() override;

    [[nodiscard]] RasterPage readPage(const std::stop_token& stop = {}) override;
    /// Frames build on each other: passing over one decodes it all the same.
    void skipPage(const std::stop_token& stop = {}) override { static_cast<void>(readPage(stop)); }

  private:
    std::unique_ptr<StoppableDevice> device_;
    QImageReader reader_;
};

} // namespace quillfern::raster
