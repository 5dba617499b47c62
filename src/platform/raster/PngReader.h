#pragma once

#include "platform/raster/ImageFileReader.h"
#include "platform/raster/PageTags.h"

namespace quillfern::raster {

/// The page of a PNG file. Rows are reduced to eight bits a sample as they are decoded.
class PngReader final : public ImageFileReader
{
  public:
    PngReader(std::unique_ptr<QIODevice> device, const std::stop_token& stop);

    [[nodiscard]] RasterPage readPage(const std::stop_token& stop = {}) override;
    void skipPage(const std::stop_token& = {}) override { wasRead_ = true; }

    /// True for the first bytes of a PNG.
    [[nodiscard]] static bool isPng(const QByteArray& start) { return start == "\x89PNG\r\n\x1A\n"; }
    /// True when what stands before the pixels can be read.
    [[nodiscard]] static bool hasHeader(QIODevice& file);

  private:
    std::unique_ptr<QIODevice> device_;
    PageTags tags_;
    bool wasRead_ = false;
};

} // namespace quillfern::raster
