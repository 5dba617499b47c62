#include "stamps/PageCompositor.h"

#include "platform/drawing/RasterCanvas.h"
#include "platform/system/Guarded.h"
#include "stamps/AreaOutline.h"

#include <QPainter>
#include <QPainterPath>
#include <QTransform>

namespace quillfern {

namespace {

void drawStamp(const IStampItem& stamp, drawing::Canvas& canvas, const QRectF& area, MarginAnchor anchor,
               std::int64_t number, std::int64_t pages, bool highlight)
{
    canvas.beginArtifact();
    canvas.save();
    stamp.draw(canvas, area, anchor, number, pages, highlight);
    canvas.restore();
    canvas.endArtifact();
}

void prepare(QPainter& painter)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
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

void PageCompositor::requireFont() const
{
    for (const auto& stamp : stamps_)
        if (stamp->isSelected()) stamp->requireFont(shaper_);
}

void PageCompositor::drawPDFNumber(drawing::PageLayers& page, const QRectF& fillRect, StampRun& run,
                                   std::int64_t pages) const
{
    guarded("Error in [drawPDFNumber:] : %@", [&] {
        const PageStamps placed = place(fillRect, run, pages);
        for (const bool under : {true, false}) {
            drawing::Canvas& canvas = under ? page.under() : page.over();
            for (std::size_t i = 0; i < stamps_.size(); ++i)
                if (stamps_[i]->isSelected() && stamps_[i]->isDrawUnderPDFContent() == under)
                    drawStamp(*stamps_[i], canvas, fillRect, placed.anchors[i], placed.number, pages, false);
        }
    });
}

void PageCompositor::drawOnImage(QImage& image, const QRectF& area, StampRun& run, std::int64_t pages,
                                 std::int32_t highlightIndex, bool isPreview) const
{
    guarded("Error in (Numbering=>drawOnImage:pageNumber:pages:highlightIndex:isPreview:) : %@", [&] {
        QPainter painter(&image);
        // A large page that is shown small has a device-pixel ratio below 1, which painters ignore.
        const double ratio = image.devicePixelRatio();
        if (ratio < 1) painter.scale(ratio, ratio);
        prepare(painter);
        if (isPreview) shadeMargins(painter, image.deviceIndependentSize(), area);
        drawing::RasterCanvas canvas(painter, shaper_);
        drawAll(canvas, place(area, run, pages), highlightIndex);
    });
}

PageStamps PageCompositor::place(const QRectF& area, StampRun& run, std::int64_t pages,
                                 const QSizeF& scale) const
{
    PageStamps stamps{area, scale, run.numberCounter, pages, std::vector<MarginAnchor>(stamps_.size())};
    for (std::size_t i = 0; i < stamps_.size(); ++i) {
        const IStampItem& stamp = *stamps_[i];
        if (stamp.isSelected())
            stamps.anchors[i] = run.getNextMarginAnchor(i, stamp.isSymmetry(), stamp.marginAnchor());
    }
    return stamps;
}

drawing::InkProbe PageCompositor::probe(const PageStamps& stamps) const
{
    drawing::InkProbe probe(shaper_, QTransform::fromScale(stamps.scale.width(), stamps.scale.height()));
    drawAll(probe, stamps, -1);
    return probe;
}

void PageCompositor::drawPart(QImage& image, const QPoint& origin, const PageStamps& stamps) const
{
    QPainter painter(&image);
    painter.translate(-origin);
    painter.scale(stamps.scale.width(), stamps.scale.height());
    prepare(painter);
    drawing::RasterCanvas canvas(painter, shaper_);
    drawAll(canvas, stamps, -1);
}

void PageCompositor::drawAll(drawing::Canvas& canvas, const PageStamps& stamps,
                             std::int32_t highlightIndex) const
{
    for (std::size_t i = 0; i < stamps_.size(); ++i)
        if (stamps_[i]->isSelected())
            drawStamp(*stamps_[i], canvas, stamps.area, stamps.anchors[i], stamps.number, stamps.pages,
                      static_cast<std::int32_t>(i) == highlightIndex);
}

} // namespace quillfern
