#include "platform/drawing/Canvas.h"

namespace quillfern::drawing {

std::vector<QRectF> textDecorations(const ShapedText& text, const TextPaint& paint)
{
    std::vector<QRectF> lines;
    const double size = paint.fontSize;
    const double thickness = text.lineThickness;
    const auto add = [&](const ShapedLine& line, double centre) {
        lines.emplace_back(line.x * size, (centre - thickness / 2) * size, line.width * size,
                           thickness * size);
    };
    for (const ShapedLine& line : text.lines) {
        if (paint.underlines >= 1) add(line, line.baseline + text.underlineOffset);
        if (paint.underlines >= 2) add(line, line.baseline + text.underlineOffset + 2 * thickness);
        if (paint.strikeThrough) add(line, line.baseline - text.strikeOffset);
    }
    return lines;
}

} // namespace quillfern::drawing
