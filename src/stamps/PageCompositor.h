#pragma once

#include "platform/drawing/InkProbe.h"
#include "stamps/StampList.h"
#include "stamps/StampRun.h"

#include <QImage>
#include <QRectF>
#include <cstdint>
#include <vector>

namespace quillfern {

/// What the stamps show on one page, and at which anchor each of them does.
struct PageStamps
{
    QRectF area; ///< inside the margins, in the space of the page
    std::int64_t number = 0;
    std::int64_t pages = 0;
    std::vector<MarginAnchor> anchors; ///< of all stamps; of no meaning for those that are not enabled
};

/// Puts stamps on one page. What changes from page to page is in the run that the caller hands in; two pages
/// must not be composited with one run at once. Belongs to one thread, as its shaper does.
class PageCompositor
{
  public:
    /// Both are borrowed and must outlive the compositor.
    PageCompositor(const StampValues& stamps, drawing::TextShaper& shaper) : stamps_(stamps), shaper_(shaper)
    {
    }

    /// Draws every enabled stamp on a PDF page, those marked so beneath its content and the others above it,
    /// in list order, with the run's number. `fillRect` is the area inside the margins, `pages` the total.
    void drawPDFNumber(drawing::PageLayers& page, const QRectF& fillRect, StampRun& run,
                       std::int64_t pages) const;

    /// Draws every enabled stamp over an image, in list order. `area` is the area inside the margins in the
    /// space of the image, whose size in that space is its size in device-independent pixels.
    /// `highlightIndex` counts all stamps, enabled or not; a value that matches none highlights none. A
    /// preview also shades the margins and outlines the area.
    void drawOnImage(QImage& image, const QRectF& area, StampRun& run, std::int64_t pages,
                     std::int32_t highlightIndex, bool isPreview) const;

    // The same in steps, for pages whose pixels depend on what is drawn on them.

    /// Begins the next page of an output: decides on the anchors. Arguments as for drawOnImage().
    [[nodiscard]] PageStamps place(const QRectF& area, StampRun& run, std::int64_t pages) const;
    /// Finds out what drawing them takes; draws nothing.
    [[nodiscard]] drawing::InkProbe probe(const PageStamps& stamps) const;
    /// Draws them over an image that begins at `origin` of the page, pixel for pixel.
    void drawPart(QImage& image, const QPoint& origin, const PageStamps& stamps) const;

    /// Kept in the interface; draws nothing.
    void drawTIFFNumber(QImage&, std::int64_t, std::int64_t, std::int32_t) const {}

  private:
    void drawAll(drawing::Canvas& canvas, const PageStamps& stamps, std::int32_t highlightIndex) const;

    const StampValues& stamps_;
    drawing::TextShaper& shaper_;
};

} // namespace quillfern
