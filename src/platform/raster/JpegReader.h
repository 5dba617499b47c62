#pragma once

#include "platform/raster/ImageFileReader.h"
#include "platform/raster/JpegSegments.h"

namespace quillfern::raster {

/// The page of a JPEG file, decoded row by row.
class JpegReader final : public ImageFileReader
{
  public:
    JpegReader(std::unique_ptr<QIODevice> device, const std::stop_token& stop);

    [[nodiscard]] RasterPage readPage(const std::stop_token& stop = {}) override;
    void skipPage(const std::stop_token& = {}) override { wasRead_ = true; }

    /// True for the first bytes of a JPEG.
    [[nodiscard]] static bool isJpeg(const QByteArray& start) { return start.startsWith("\xFF\xD8\xFF"); }
    /// True when the file begins as a JPEG whose size is known.
    [[nodiscard]] static bool hasHeader(QIODevice& file);

  private:
    std::unique_ptr<QIODevice> device_;
    JpegSegments segments_;
    bool wasRead_ = false;
};

} // namespace quillfern::raster
