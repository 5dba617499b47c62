#include "platform/drawing/InkProbe.h"

#include "platform/drawing/FontFace.h"

#include <algorithm>

namespace quillfern::drawing {

void InkProbe::use(Ink ink)
{
    ink_ = std::max(ink_, ink);
}

void InkProbe::use(const QColor& color)
{
    if (color.alpha() == 0) return;
    const QRgb rgb = color.rgb();
    if (qRed(rgb) != qGreen(rgb) || qGreen(rgb) != qBlue(rgb))
        use(Ink::Colour);
    else
        use(color.alpha() == 255 && (qRed(rgb) == 0 || qRed(rgb) == 255) ? Ink::BlackAndWhite : Ink::Grey);
}

void InkProbe::fillRect(const QRectF& rect, const QColor& color)
{
    if (rect.isEmpty()) return;
    use(color);
    mark(rect);
}

void InkProbe::drawText(const ShapedText& text, const TextPaint& paint)
{
    const bool isFilled = paint.fill.alpha() > 0;
    if (paint.strokeWidth > 0) use(paint.stroke);
    if (isFilled) use(paint.fill);
    QRectF outlines;
    for (const ShapedRun& run : text.runs) {
        for (const ShapedGlyph& glyph : run.glyphs) {
            if (isFilled && run.face->isPicture(glyph.glyph)) use(Ink::Colour);
            outlines |= run.face->outline(glyph.glyph).controlPointRect().translated(glyph.x, glyph.y);
        }
    }
    const double size = paint.fontSize;
    const double rim = paint.strokeWidth / 2;
    mark(QRectF(outlines.topLeft() * size, outlines.size() * size).adjusted(-rim, -rim, rim, rim));
    if (isFilled)
        for (const QRectF& line : textDecorations(text, paint))
            mark(line);
}

void InkProbe::drawPicture(const Picture& picture, const QRectF& target, double opacity)
{
    if (opacity <= 0 || target.isEmpty()) return;
    use(picture.isGrey() ? Ink::Grey : Ink::Colour);
    mark(target);
}

void InkProbe::restore()
{
    space_ = saved_.back();
    saved_.pop_back();
}

QRectF InkProbe::bounds() const
{
    constexpr double softEdge = 2; // one for the soft edge itself and one for rounding
    return marks_.isNull() ? QRectF() : marks_.adjusted(-softEdge, -softEdge, softEdge, softEdge);
}

} // namespace quillfern::drawing
