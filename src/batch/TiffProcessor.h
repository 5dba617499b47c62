#pragma once

#include "batch/JobRun.h"
#include "batch/StampedDocument.h"
#include "config/JobConfiguration.h"
#include "platform/raster/RasterPage.h"
#include "platform/system/FilePath.h"

#include <QSizeF>
#include <cstdint>

namespace quillfern::drawing {
class TextShaper;
}

namespace quillfern {

class PageCompositor;

/// Stamps one raster file into a multi-page TIFF that holds the pages of the range; those of the chosen
/// parity carry stamps. A pixel of a page is one unit of the space in which stamps are drawn, or, by the
/// option of real size, a point is. Used on the shaper's thread.
class TiffProcessor
{
  public:
    /// Both are borrowed and must outlive the processor.
    TiffProcessor(const JobConfiguration& job, drawing::TextShaper& shaper) : job_(job), shaper_(shaper) {}

    /// See DocumentProcessors.
    [[nodiscard]] StampedDocument processTIFF(const FilePath& source, const FilePath& target, JobRun& run,
                                              std::int32_t compression);

  private:
    void stamp(StampedDocument& work, const FilePath& target, JobRun& run, std::int32_t compression);
    void stampPage(raster::RasterPage& page, const QSizeF& points, const PageCompositor& compositor,
                   std::int64_t total, JobRun& run);

    const JobConfiguration& job_;
    drawing::TextShaper& shaper_;
};

} // namespace quillfern
