#include "platform/drawing/InkProbe.h"

#include "platform/drawing/FontFace.h"

#include <algorithm>

namespace quillfern {

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
    if (!rect.isEmpty()) use(color);
}

void InkProbe::drawText(const ShapedText& text, const TextPaint& paint)
{
    if (paint.strokeWidth > 0) use(paint.stroke);
    if (paint.fill.alpha() == 0) return;
    use(paint.fill);
    for (const ShapedRun& run : text.runs)
        for (const ShapedGlyph& glyph : run.glyphs)
            if (run.face->isPicture(glyph.glyph)) use(Ink::Colour);
}

void InkProbe::drawPicture(const Picture& picture, const QRectF& target, double opacity)
{
    if (opacity > 0 && !target.isEmpty()) use(picture.isGrey() ? Ink::Grey : Ink::Colour);
}

} // namespace quillfern
