#pragma once

#include "platform/raster/RasterPage.h"
#include "platform/raster/RasterReader.h"
#include "platform/raster/TiffFile.h"
#include "platform/raster/TiffPageInfo.h"
#include "platform/system/FilePath.h"

#include <QFileDevice>
#include <memory>

namespace quillfern::raster {

/// The pages of a TIFF file: its directories, in order.
class TiffReader final : public RasterReader
{
  public:
    /// An open file, which errors name by `path`. Throws Failure when it is no TIFF.
    TiffReader(std::shared_ptr<const QFileDevice> file, const FilePath& path, const std::stop_token& stop);

    [[nodiscard]] RasterPage readPage(const std::stop_token& stop = {}) override;
    [[nodiscard]] double nextPageBytes() override;
    void skipPage(const std::stop_token& = {}) override { ++pending_; }
    [[nodiscard]] std::unique_ptr<RasterReader> twin() const override;

  private:
    /// Goes to the next page's directory.
    [[nodiscard]] TiffPageInfo info();

    std::shared_ptr<const QFileDevice> source_;
    FilePath path_;
    TiffFile file_;
    int pending_ = 0; ///< directories to go forward before the next page
};

} // namespace quillfern::raster
