#pragma once

#include "config/JobConfiguration.h"
#include "config/Preview.h"
#include "platform/system/FilePath.h"

#include <QImage>
#include <QRectF>
#include <QSizeF>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillfern {

/// The state of the window that the preview's picture depends on.
struct PreviewState
{
    bool isJobRunning = false;
    std::vector<std::int32_t> filePagesList; ///< the page count of every file of the list, in order
    int selectedFile = -1;                   ///< the first selected row; -1 for none
    FilePath selectedPath;                   ///< of that file
    int selectedStamp = -1;
    QSizeF size;        ///< of the picture's place, device-independent pixels
    double density = 1; ///< device pixels in one of them
};

/// Decides what the preview shows, and lets a Preview draw that.
class PreviewModel
{
  public:
    /// The preview is borrowed and must outlive the model.
    explicit PreviewModel(Preview& preview) : preview_(preview) {}

    /// The picture of this job for this state of the window. Returns no picture while a job runs and after a
    /// failure; the window then keeps the picture that it shows.
    [[nodiscard]] std::optional<QImage> PropertyChanged(const JobConfiguration& job,
                                                        const PreviewState& state);

  private:
    QImage draw(const JobConfiguration& job, const PreviewState& state);

    Preview& preview_;
};

/// Where the picture stands in its box of this size: centred, with a page's proportions.
[[nodiscard]] QRectF previewFrame(const QSizeF& box);
/// The height of the tallest box of this width whose previewFrame() lies within the box.
[[nodiscard]] double tallestPreviewBox(double width);

} // namespace quillfern
