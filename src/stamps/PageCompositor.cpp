#include "stamps/PageCompositor.h"

#include "platform/drawing/RasterCanvas.h"
#include "platform/system/Guarded.h"
#include "stamps/AreaOutline.h"

#include <QPainter>
#include <QPainterPath>

namespace quillfern {

namespace {

void drawStamp(IStampItem& stamp, Canvas& canvas, const QRectF& area, std::int64_t number, std::int64_t pages,
               bool highlight)
{
    const std::int32_t anchor = stamp.getNextMarginAnchor(stamp.isSymmetry(), stamp.marginAnchor());
    canvas.beginArtifact();
    canvas.save();
    stamp.draw(canvas, area, area, anchor, number, pages, highlight);
    canvas.restore();
    canvas.endArtifact();
}

void shadeMargins(QPainter& painter, const QSizeF& size, const QRectF& area)
{
    const double l = area.left();
    const double t = area.top();
    const double r = area.right();
    const double b = area.bottom();
    QPainterPath bands;
    bands.setFillRule(Qt::WindingFill);
    bands.addRect(0, 0, l, size.height());
    bands.addRect(l, 0, r - l, t);
    bands.addRect(r, 0, size.width() - r, size.height());
    bands.addRect(l, b, r - l, size.height() - b);

    painter.save();
    painter.fillPath(bands, QColor::fromRgbF(0, 0, 0, 0.5F));
    painter.restore();
    drawAreaOutline(painter, area);
}

} // namespace

void PageCompositor::drawPDFNumber(PageLayers& page, const QRectF& fillRect, std::int64_t number,
                                   std::int64_t pages) const
{
    guarded("Error in [drawPDFNumber:] : %@", [&] {
        for (const bool under : {true, false}) {
            Canvas& canvas = under ? page.under() : page.over();
            for (const auto& stamp : stamps_)
                if (stamp->isSelected() && stamp->isDrawUnderPDFContent() == under)
                    drawStamp(*stamp, canvas, fillRect, number, pages, false);
        }
    });
}

void PageCompositor::drawOnImage(QImage& image, const QRectF& area, std::int64_t number, std::int64_t pages,
                                 std::int32_t highlightIndex, bool isPreview) const
{
    guarded("Error in (Numbering=>drawOnImage:pageNumber:pages:highlightIndex:isPreview:) : %@", [&] {
        QPainter painter(&image);
        // Painters take no device-pixel ratio below 1 into account: a large page shown small.
        const double ratio = image.devicePixelRatio();
        if (ratio < 1) painter.scale(ratio, ratio);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        if (isPreview) shadeMargins(painter, image.deviceIndependentSize(), area);
        RasterCanvas canvas(painter, shaper_);
        std::int32_t index = 0;
        for (const auto& stamp : stamps_) {
            if (stamp->isSelected()) drawStamp(*stamp, canvas, area, number, pages, index == highlightIndex);
            ++index;
        }
    });
}

Ink PageCompositor::inkOnImage(const QRectF& area, std::int64_t number, std::int64_t pages) const
{
    InkProbe probe(shaper_);
    for (const auto& stamp : stamps_)
        if (stamp->isSelected()) stamp->draw(probe, area, area, stamp->marginAnchor(), number, pages, false);
    return probe.ink();
}

} // namespace quillfern
