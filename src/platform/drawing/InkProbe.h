#pragma once

#include "platform/drawing/Canvas.h"

namespace quillfern {

/// What drawing needs of a page's pixels, from little to much.
enum class Ink {
    None,          ///< nothing is drawn
    BlackAndWhite, ///< opaque black or white only
    Grey,
    Colour,
};

/// A canvas that draws nothing and finds out what colours the drawing would take.
class InkProbe final : public Canvas
{
  public:
    explicit InkProbe(TextShaper& shaper) : shaper_(shaper) {}

    [[nodiscard]] Ink ink() const { return ink_; }

    [[nodiscard]] TextShaper& shaper() override { return shaper_; }
    void save() override {}
    void restore() override {}
    void translate(double, double) override {}
    void rotate(double) override {}
    void fillRect(const QRectF& rect, const QColor& color) override;
    void drawText(const ShapedText& text, const TextPaint& paint) override;
    void drawPicture(const Picture& picture, const QRectF& target, double opacity) override;

  private:
    void use(Ink ink);
    void use(const QColor& color);

    TextShaper& shaper_;
    Ink ink_ = Ink::None;
};

} // namespace quillfern
