#include "config/Preview.h"

#include "config/PageArea.h"
#include "platform/drawing/RasterCanvas.h"
#include "stamps/AreaOutline.h"
#include "stamps/PageCompositor.h"

#include <QPainter>
#include <algorithm>

namespace quillfern {

namespace {

/// How many of the pages `first` to `last`, neither below 0, have the parity that is stamped.
std::int64_t pagesOfParity(PageRange parity, std::int64_t first, std::int64_t last)
{
    if (last < first) return 0;
    switch (parity) {
    case PageRange::AllPages:
        return last - first + 1;
    case PageRange::OddPages:
        return (last + 1) / 2 - first / 2;
    case PageRange::EvenPages:
        return last / 2 + 1 - (first + 1) / 2;
    default:
        return 0;
    }
}

} // namespace

bool isPreviewStampedPage(const JobConfiguration& job, std::int64_t index)
{
    if (!job.options.pageList.isEmpty())
        return isInPageRange(job, index + 1) && hasChosenParity(job, index + 1);
    if (index < job.startPage - 1) return false;
    if (job.endPage != 0 && index > job.endPage) return false;
    return hasChosenParity(job, index); // counted from 0, so that the first page is even
}

std::int64_t previewStampedPages(const JobConfiguration& job, std::int64_t before)
{
    if (!job.options.pageList.isEmpty()) {
        std::int64_t stamped = 0;
        for (const PageList::Range& range : job.options.pageList.ranges())
            stamped += pagesOfParity(job.pageRange, range.first, std::min(range.last, before));
        return stamped;
    }
    const std::int64_t first = std::max<std::int64_t>(0, job.startPage - 1);
    const std::int64_t last = (job.endPage == 0 ? before : std::min(before, job.endPage + 1)) - 1;
    return pagesOfParity(job.pageRange, first, last); // counted from 0, as above
}

QImage Preview::preview2(const JobConfiguration& job, std::int64_t totalPages, const View& view)
{
    if (!pageimages::isShowable({{}, 0, view.size, view.density})) return {};
    const QRectF area = marginRect(job, view.size);
    QImage image(pageimages::wholePixels(view.size * view.density), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) return {};
    image.setDevicePixelRatio(view.density);
    image.fill(QColor::fromRgbF(0, 0, 0, 0.5F));

    QPainter painter(&image);
    painter.fillRect(area, Qt::white);
    drawAreaOutline(painter, area);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    drawing::RasterCanvas canvas(painter, shaper_);
    std::int32_t index = 0;
    for (const auto& stamp : filledIn(job.stamps, fillInsFor(view.document, view.moment))) {
        if (stamp->isSelected()) {
            canvas.save();
            stamp->draw(canvas, area, stamp->marginAnchor(), job.startNumber, totalPages,
                        index == view.highlightIndex);
            canvas.restore();
        }
        ++index;
    }
    return image;
}

QImage Preview::previewLive(const JobConfiguration& job, const LivePage& page, const View& view)
{
    const auto files = static_cast<std::int64_t>(page.filePagesList.size());
    const bool isInList =
        page.filePath && page.fileIndex >= 0 && page.fileIndex < files && page.pageIndex >= 1;
    std::optional<pageimages::PageImage> shown;
    if (isInList)
        shown = pages_.page({*page.filePath, static_cast<int>(page.pageIndex - 1), view.size, view.density,
                             job.options.visiblePage,
                             job.options.usePasswords ? job.options.password : QString()});
    if (!shown) return preview2(job, page.totalPages, view);

    const auto pagesOf = [&](std::int64_t file) {
        return std::int64_t{page.filePagesList[static_cast<std::size_t>(file)]};
    };
    const std::int64_t index = page.pageIndex - 1;
    const bool isStamped = index < pagesOf(page.fileIndex) && isPreviewStampedPage(job, index);
    if (!isStamped) return shown->image;
    std::int64_t before = previewStampedPages(job, index);
    if (job.isContinuousNumbering)
        for (std::int64_t file = 0; file < page.fileIndex; ++file)
            before += previewStampedPages(job, pagesOf(file));
    StampRun run(job.startNumber);
    run.numberCounter += before * job.numberSteps;

    const std::int64_t total = page.totalPages >= 1 ? page.totalPages : pagesOf(page.fileIndex);
    const StampValues stamps = filledIn(job.stamps, fillInsFor(page.filePath, view.moment));
    const PageCompositor compositor(stamps, shaper_);
    compositor.drawOnImage(shown->image, marginRect(job, shown->size), run, total, view.highlightIndex, true);
    return shown->image;
}

} // namespace quillfern
