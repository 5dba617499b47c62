#include "platform/drawing/RasterCanvas.h"

#include <QGlyphRun>
#include <cmath>
#include <numbers>

namespace quillfern::drawing {

namespace {

/// Glyphs that exist as pictures only (colour emoji); everything else is filled as outlines, so that a text
/// has the same shape at every size and angle, and the same as in a document.
void drawPictureGlyph(QPainter& painter, const FontFace& face, quint32 glyph, const QPointF& origin,
                      double size, double opacity)
{
    QRawFont font = face.rawFont();
    font.setPixelSize(size);
    QGlyphRun run;
    run.setRawFont(font);
    run.setGlyphIndexes({glyph});
    run.setPositions({QPointF(0, 0)});
    painter.save();
    painter.setOpacity(painter.opacity() * opacity);
    painter.drawGlyphRun(origin, run);
    painter.restore();
}

} // namespace

void RasterCanvas::rotate(double radians)
{
    painter_.rotate(radians * 180.0 / std::numbers::pi);
}

void RasterCanvas::fillRect(const QRectF& rect, const QColor& color)
{
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.fillRect(rect, color);
}

void RasterCanvas::drawText(const ShapedText& text, const TextPaint& paint)
{
    const double size = paint.fontSize;
    QPainterPath outlines;
    outlines.setFillRule(Qt::WindingFill);
    for (const ShapedRun& run : text.runs) {
        for (const ShapedGlyph& glyph : run.glyphs) {
            const QPointF origin(glyph.x * size, glyph.y * size);
            if (run.face->isPicture(glyph.glyph)) {
                drawPictureGlyph(painter_, *run.face, glyph.glyph, origin, size, paint.fill.alphaF());
                continue;
            }
            const QTransform place(size, 0, 0, size, origin.x(), origin.y());
            outlines.addPath(place.map(run.face->outline(glyph.glyph)));
        }
    }
    painter_.save();
    painter_.setRenderHint(QPainter::Antialiasing);
    if (paint.fill.alpha() > 0) {
        painter_.fillPath(outlines, paint.fill);
        for (const QRectF& line : textDecorations(text, paint))
            painter_.fillRect(line, paint.fill);
    }
    if (paint.strokeWidth > 0 && paint.stroke.alpha() > 0)
        painter_.strokePath(outlines,
                            QPen(paint.stroke, paint.strokeWidth, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    painter_.restore();
}

void RasterCanvas::drawPicture(const Picture& picture, const QRectF& target, double opacity)
{
    painter_.save();
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setRenderHint(QPainter::SmoothPixmapTransform);
    painter_.setOpacity(painter_.opacity() * opacity);
    const QTransform& space = painter_.deviceTransform();
    const QSizeF pixels(std::hypot(space.m11(), space.m12()) * target.width(),
                        std::hypot(space.m21(), space.m22()) * target.height());
    painter_.drawImage(target, picture.imageFor(pixels));
    painter_.restore();
}

} // namespace quillfern::drawing
