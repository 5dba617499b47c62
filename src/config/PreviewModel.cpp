#include "config/PreviewModel.h"

#include "platform/system/Guarded.h"

#include <algorithm>

namespace quillfern {

namespace {

constexpr std::int64_t samplePages = 4;           // with no files in the list
constexpr double edges = 30;                      // above and below the picture, together
constexpr double proportion = 0.7061224489795919; // of a page's width to its height

std::int64_t pageTotal(const JobConfiguration& job, const PreviewState& state)
{
    if (state.filePagesList.empty()) return samplePages;
    // The pages of the first file count, whichever file is selected.
    std::int64_t total = state.filePagesList.front();
    if (job.isContinuousNumbering) {
        total = 0;
        for (const std::int32_t pages : state.filePagesList)
            total += pages;
    }
    return job.endPage != 0 ? std::min(total, job.endPage) : total;
}

} // namespace

std::optional<QImage> PreviewModel::PropertyChanged(const JobConfiguration& job, const PreviewState& state)
{
    if (state.isJobRunning) return std::nullopt;
    return guarded<std::optional<QImage>>("Error in [PropertyChanged:] : %@", std::nullopt,
                                          [&] { return std::optional(draw(job, state)); });
}

QImage PreviewModel::draw(const JobConfiguration& job, const PreviewState& state)
{
    const std::int32_t highlight = job.isHighlightStamp ? state.selectedStamp : -1;
    Preview::View view{state.size, state.density, highlight};
    const std::int64_t total = pageTotal(job, state);
    const bool isSelected =
        state.selectedFile >= 0 && static_cast<std::size_t>(state.selectedFile) < state.filePagesList.size();
    if (isSelected) view.document = state.selectedPath;
    if (!job.isLivePreview || !isSelected) return preview_.preview2(job, total, view);

    Preview::LivePage page;
    page.filePath = state.selectedPath;
    page.fileIndex = state.selectedFile;
    page.filePagesList = state.filePagesList;
    page.totalPages = job.isContinuousNumbering ? total : 0;
    return preview_.previewLive(job, page, view);
}

QRectF previewFrame(const QSizeF& box)
{
    const double height = box.height() - edges;
    const double width = height * proportion;
    return {(box.width() - width) * 0.5, (box.height() - height) * 0.5, width, height};
}

double tallestPreviewBox(double width)
{
    return width / proportion + edges;
}

} // namespace quillfern
