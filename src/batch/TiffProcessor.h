#pragma once

#include "batch/DocumentProcessors.h"
#include "platform/raster/RasterPage.h"

namespace quillfern {

class PageCompositor;
class TextShaper;

/// Stamps one raster file into a multi-page TIFF that holds the pages of the range; those of the chosen
/// parity carry stamps. A pixel of a page is one unit of the stamps' space. Used on the job's worker thread.
class TiffProcessor
{
  public:
    TiffProcessor(Numbering& number, TextShaper& shaper, PageProgress progress)
        : number_(number), shaper_(shaper), progress_(std::move(progress))
    {
    }

    /// See DocumentProcessors. A total of 0 or less stands for the file's own page count. `compression` is
    /// the TIFF code for the output; on pages that it does not suit LZW takes its place.
    bool processTIFF(const FilePath& source, const FilePath& target, std::int64_t totalPages,
                     std::int32_t compression);

    [[nodiscard]] const QString& lastProblem() const { return problem_; }

  private:
    bool stamp(const FilePath& source, const FilePath& target, std::int64_t totalPages,
               std::int32_t compression);
    void stampPage(RasterPage& page, const PageCompositor& compositor, std::int64_t total);

    Numbering& number_;
    TextShaper& shaper_;
    PageProgress progress_;
    QString problem_;
};

} // namespace quillfern
