#pragma once

#include "platform/raster/RasterReader.h"
#include "platform/raster/TiffFile.h"

namespace quillfern {

/// The pages of a TIFF file: its directories, in order.
class TiffReader final : public RasterReader
{
  public:
    explicit TiffReader(const QString& path);
    /// A TIFF in memory, which must outlive the reader.
    explicit TiffReader(const QByteArray& bytes);

    [[nodiscard]] RasterPage readPage() override;
    void skipPage() override { ++pending_; }

  private:
    void begin();

    TiffFile file_;
    int pending_ = 0; ///< directories to go forward before the next page
};

} // namespace quillfern
