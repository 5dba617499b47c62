#pragma once

#include "platform/system/FilePath.h"

#include <QImage>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <optional>

namespace quillfern::pageimages {

/// Which page of a file is to be shown, and how large. The picture of a page that is larger than the box is
/// made small enough to fit; a smaller page keeps its size.
struct PageImageRequest
{
    FilePath path;
    int page = 0;             ///< from 0
    QSizeF box;               ///< points, that is, device-independent pixels
    double density = 1;       ///< device pixels in a device-independent one
    bool visiblePage = false; ///< of a PDF what the crop box shows, otherwise the whole page
    QString password = {};    ///< to be tried on a PDF that needs one

    bool operator==(const PageImageRequest&) const = default;
};

/// A page as its reader sees it.
struct PageImage
{
    QImage image; ///< opaque, its device-pixel ratio such that its device-independent size is about `size`
    QSizeF size;  ///< of the page, in points
};

/// Renders pages of documents. An interface, so that code that draws previews does not depend on how pages
/// are rendered.
class PageImageSource
{
  public:
    virtual ~PageImageSource() = default;
    /// Nothing when the file cannot be shown, has no such page, or takes too long. Never throws.
    [[nodiscard]] virtual std::optional<PageImage> page(const PageImageRequest& request) = 0;
};

/// How many pixels of the picture a point of the page gets: enough for every device pixel on the screen, and
/// no more.
[[nodiscard]] double pixelsPerPoint(const QSizeF& page, const PageImageRequest& request);
/// The picture's size in pixels, at least 1 by 1.
[[nodiscard]] QSize pixelSize(const QSizeF& page, const PageImageRequest& request);

/// A size rounded down to whole pixels, at least 1 by 1.
[[nodiscard]] QSize wholePixels(const QSizeF& size);

/// True when the request's box and density are numbers that a screen can have.
[[nodiscard]] bool isShowable(const PageImageRequest& request);

} // namespace quillfern::pageimages
