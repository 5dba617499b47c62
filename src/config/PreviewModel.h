#pragma once

#include "config/Preview.h"

#include <QRectF>
#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillfern {

/// What of the window decides about the picture in it.
struct PreviewState
{
    bool isJobRunning = false;
    std::vector<std::int32_t> filePagesList; ///< the page count of every file of the list, in order
    int selectedFile = -1;                   ///< the first selected row; -1 for none
    FilePath selectedPath;                   ///< that file's
    int selectedStamp = -1;
    QSizeF size;        ///< of the picture's place, device-independent pixels
    double density = 1; ///< device pixels in one of them
};

/// Decides what the preview shows and has it drawn.
class PreviewModel
{
  public:
    /// The preview is borrowed and must outlive the model.
    explicit PreviewModel(Preview& preview) : preview_(preview) {}

    /// The picture of this job for this state of the window. Nothing while a job runs or after a failure:
    /// what is shown then stays.
    [[nodiscard]] std::optional<QImage> PropertyChanged(const JobConfiguration& job,
                                                        const PreviewState& state);

  private:
    QImage draw(const JobConfiguration& job, const PreviewState& state);

    Preview& preview_;
};

/// Where the picture stands in its box of this size: centred, with a page's proportions.
[[nodiscard]] QRectF previewFrame(const QSizeF& box);
/// The height of the tallest box of this width that its previewFrame() does not stick out of.
[[nodiscard]] double tallestPreviewBox(double width);

} // namespace quillfern
