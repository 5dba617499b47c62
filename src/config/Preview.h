#pragma once

#include "config/JobConfiguration.h"
#include "platform/pageimages/PageImage.h"
#include "platform/system/FilePath.h"

#include <QDateTime>
#include <QImage>
#include <QSizeF>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillfern::drawing {
class TextShaper;
}

namespace quillfern {

/// Draws what the stamps will look like, with the compositor and the canvas that the job draws raster pages
/// with. Has no effect on any job: every picture is numbered in a run of its own. To be used on the shaper's
/// thread.
class Preview
{
  public:
    /// Both are borrowed and must outlive the preview.
    Preview(drawing::TextShaper& shaper, pageimages::PageImageSource& pages) : shaper_(shaper), pages_(pages)
    {
    }

    /// How large the picture may be, and which stamp is highlighted.
    struct View
    {
        QSizeF size;                                     ///< device-independent pixels, one for a point
        double density = 1;                              ///< device pixels in a device-independent one
        std::int32_t highlightIndex = -1;                ///< counts all stamps; -1 for none
        std::optional<FilePath> document = std::nullopt; ///< whose name stamps print
        QDateTime moment = QDateTime::currentDateTime(); ///< that they print
    };

    /// A page of a file of the list, and what the numbers on that page depend on.
    struct LivePage
    {
        std::optional<FilePath> filePath;
        std::int64_t fileIndex = -1;
        std::int64_t pageIndex = 1;              ///< from 1
        std::vector<std::int32_t> filePagesList; ///< the page count of every file, in list order
        std::int64_t totalPages = 0;             ///< below 1: the file's own count
    };

    /// A blank page of the view's size with the area inside the margins and every stamp. Returns a null image
    /// for a view without room or larger than a screen can be.
    [[nodiscard]] QImage preview2(const JobConfiguration& job, std::int64_t totalPages, const View& view);

    /// A page of a file with its stamps, numbered as the job would number it, at the page's own size in
    /// points with as many pixels as the view can show; the blank page when the file cannot be shown. A page
    /// that the job would not stamp is shown without stamps.
    [[nodiscard]] QImage previewLive(const JobConfiguration& job, const LivePage& page, const View& view);

  private:
    drawing::TextShaper& shaper_;
    pageimages::PageImageSource& pages_;
};

/// How many of the pages in front of the one with the 0-based index `before` the preview regards as stamped.
/// The preview's rule is not the job's: for the parity it counts pages from 0, and it includes one page after
/// endPage. With a list of pages it is the job's.
[[nodiscard]] std::int64_t previewStampedPages(const JobConfiguration& job, std::int64_t before);
/// True when the preview regards the page with this 0-based index as stamped.
[[nodiscard]] bool isPreviewStampedPage(const JobConfiguration& job, std::int64_t index);

} // namespace quillfern
