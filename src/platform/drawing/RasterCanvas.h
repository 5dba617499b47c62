#pragma once

#include "platform/drawing/Canvas.h"
#include "platform/drawing/Picture.h"
#include "platform/drawing/ShapedText.h"

#include <QColor>
#include <QPainter>
#include <QRectF>

namespace quillfern::drawing {

class TextShaper;

/// Draws with a painter, one unit of the canvas to one unit of the painter. The painter is begun and ended by
/// the caller and must outlive the canvas; its state is restored with every restore().
class RasterCanvas final : public Canvas
{
  public:
    RasterCanvas(QPainter& painter, TextShaper& shaper) : painter_(painter), shaper_(shaper) {}

    [[nodiscard]] TextShaper& shaper() override { return shaper_; }
    void save() override { painter_.save(); }
    void restore() override { painter_.restore(); }
    void translate(double dx, double dy) override { painter_.translate(dx, dy); }
    void rotate(double radians) override;
    void fillRect(const QRectF& rect, const QColor& color) override;
    void drawText(const ShapedText& text, const TextPaint& paint) override;
    void drawPicture(const Picture& picture, const QRectF& target, double opacity) override;

  private:
    QPainter& painter_;
    TextShaper& shaper_;
};

} // namespace quillfern::drawing
