#pragma once

#include "platform/drawing/InkProbe.h"
#include "stamps/IStampItem.h"

#include <QImage>
#include <QRectF>
#include <memory>
#include <vector>

namespace quillfern {

using StampList = std::vector<std::shared_ptr<IStampItem>>;

/// Puts the stamps of a job on one page. It is handed the stamp list and the number of the page; it changes
/// nothing but the stamps' facing-page state, so two pages must not be composited with one list at once.
class PageCompositor
{
  public:
    PageCompositor(const StampList& stamps, TextShaper& shaper) : stamps_(stamps), shaper_(shaper) {}

    /// Draws every enabled stamp on a PDF page, those marked so beneath its content and the others above it,
    /// in list order. `fillRect` is the area inside the margins, `number` the running number, `pages` the
    /// total.
    void drawPDFNumber(PageLayers& page, const QRectF& fillRect, std::int64_t number,
                       std::int64_t pages) const;

    /// Draws every enabled stamp over an image, in list order. `area` is the area inside the margins in the
    /// space of the image, whose size in that space is its size in device-independent pixels.
    /// `highlightIndex` counts all stamps, enabled or not; a value that matches none highlights none. A
    /// preview also shades the margins and outlines the area.
    void drawOnImage(QImage& image, const QRectF& area, std::int64_t number, std::int64_t pages,
                     std::int32_t highlightIndex, bool isPreview) const;

    /// What the enabled stamps need of the pixels of an image they are drawn on. Changes nothing, also not
    /// the stamps' facing-page state; arguments as for drawOnImage().
    [[nodiscard]] Ink inkOnImage(const QRectF& area, std::int64_t number, std::int64_t pages) const;

    /// Kept in the interface; draws nothing.
    void drawTIFFNumber(QImage&, std::int64_t, std::int64_t, std::int32_t) const {}

  private:
    const StampList& stamps_;
    TextShaper& shaper_;
};

} // namespace quillfern
