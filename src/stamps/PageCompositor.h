#pragma once

#include "platform/drawing/Canvas.h"
#include "platform/drawing/InkProbe.h"
#include "platform/drawing/TextShaper.h"
#include "stamps/StampList.h"
#include "stamps/StampRun.h"

#include <QImage>
#include <QPoint>
#include <QRectF>
#include <QSizeF>
#include <cstdint>
#include <vector>

namespace quillfern {

/// What the stamps show on one page, and the anchor of each stamp.
struct PageStamps
{
    QRectF area;           ///< inside the margins, in the space of the page
    QSizeF scale = {1, 1}; ///< pixels in a unit of that space
    std::int64_t number = 0;
    std::int64_t pages = 0;
    std::vector<MarginAnchor> anchors; ///< one for each stamp; meaningless for a stamp that is not enabled
};

/// Puts stamps on one page. What changes from page to page is in the run that the caller passes; one run must
/// not be used for two pages at the same time. To be used on the shaper's thread only.
class PageCompositor
{
  public:
    /// Both are borrowed and must outlive the compositor.
    PageCompositor(const StampValues& stamps, drawing::TextShaper& shaper) : stamps_(stamps), shaper_(shaper)
    {
    }

    /// Throws Failure when an enabled stamp shows text and no font is installed: the stamp would be missing
    /// on every page.
    void requireFont() const;

    /// Draws every enabled stamp on a PDF page, in list order, with the run's number: the stamps with
    /// isDrawUnderPDFContent() beneath the page's content, the others above it. `fillRect` is the area inside
    /// the margins, `pages` the total.
    void drawPDFNumber(drawing::PageLayers& page, const QRectF& fillRect, StampRun& run,
                       std::int64_t pages) const;

    /// Draws every enabled stamp over an image, in list order. `area` is the area inside the margins in the
    /// space of the image, whose size in that space is its size in device-independent pixels.
    /// `highlightIndex` counts all stamps, enabled or not; a value that is no stamp's index highlights
    /// nothing. A preview also shades the margins and outlines the area.
    void drawOnImage(QImage& image, const QRectF& area, StampRun& run, std::int64_t pages,
                     std::int32_t highlightIndex, bool isPreview) const;

    // drawOnImage() in steps, for pages whose pixel format depends on what is drawn on them.

    /// Begins the next page of an output: decides on the anchors. Arguments as for drawOnImage(); `scale` is
    /// the number of pixels in a unit of the area.
    [[nodiscard]] PageStamps place(const QRectF& area, StampRun& run, std::int64_t pages,
                                   const QSizeF& scale = {1, 1}) const;
    /// Finds out which colours drawing these stamps takes, and where the marks would be, in pixels; draws
    /// nothing.
    [[nodiscard]] drawing::InkProbe probe(const PageStamps& stamps) const;
    /// Draws these stamps over an image of a part of the page; the image's top left pixel is the page's pixel
    /// `origin`.
    void drawPart(QImage& image, const QPoint& origin, const PageStamps& stamps) const;

    /// Kept in the interface; draws nothing.
    void drawTIFFNumber(QImage&, std::int64_t, std::int64_t, std::int32_t) const {}

  private:
    void drawAll(drawing::Canvas& canvas, const PageStamps& stamps, std::int32_t highlightIndex) const;

    const StampValues& stamps_;
    drawing::TextShaper& shaper_;
};

} // namespace quillfern
