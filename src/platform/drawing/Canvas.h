#pragma once

#include "platform/drawing/Picture.h"
#include "platform/drawing/ShapedText.h"

#include <QColor>
#include <QRectF>
#include <vector>

namespace quillfern::drawing {

class TextShaper;

/// How a text is painted. All lengths are in the canvas's units, as the font size is.
struct TextPaint
{
    double fontSize = 12;
    QColor fill = Qt::black;   ///< alpha 0 leaves the inside unpainted
    QColor stroke = Qt::black; ///< of the outline, drawn when strokeWidth is above 0
    double strokeWidth = 0;
    int underlines = 0; ///< 0 none, 1 single, 2 double
    bool strikeThrough = false;
};

/// The surface that a stamp draws itself on: points, origin at the top left of the page as its reader sees
/// it, y down. Bound to one thread. The only state is a transformation; save() and restore() must pair up.
class Canvas
{
  public:
    virtual ~Canvas() = default;

    /// The shaper whose texts this canvas draws; lives at least as long as the canvas.
    [[nodiscard]] virtual TextShaper& shaper() = 0;

    virtual void save() = 0;
    virtual void restore() = 0;
    virtual void translate(double dx, double dy) = 0;
    /// Turns what follows about the origin; positive turns the x axis towards the y axis (clockwise as seen).
    virtual void rotate(double radians) = 0;

    virtual void fillRect(const QRectF& rect, const QColor& color) = 0;
    /// Draws the text with the top left of its box at the origin.
    virtual void drawText(const ShapedText& text, const TextPaint& paint) = 0;
    /// Draws the whole picture scaled into `target`; opacity 0 to 1 multiplies the picture's own.
    virtual void drawPicture(const Picture& picture, const QRectF& target, double opacity) = 0;

    /// Enclose marks that are no part of the page's own content (a running header or number) and label them
    /// so where the output format has such labels. The pairs do not nest.
    virtual void beginArtifact() {}
    virtual void endArtifact() {}
};

/// A page with a layer beneath and a layer above its own content, both in the space of Canvas.
class PageLayers
{
  public:
    virtual ~PageLayers() = default;
    [[nodiscard]] virtual Canvas& under() = 0;
    [[nodiscard]] virtual Canvas& over() = 0;
};

/// The rectangles, in the text's own space scaled by `paint.fontSize`, of a text's underlines and
/// strike-through line.
[[nodiscard]] std::vector<QRectF> textDecorations(const ShapedText& text, const TextPaint& paint);

} // namespace quillfern::drawing
