#pragma once

#include "platform/drawing/Canvas.h"
#include "platform/drawing/Picture.h"
#include "platform/drawing/ShapedText.h"

#include <QColor>
#include <QRectF>
#include <QTransform>
#include <vector>

namespace quillfern::drawing {

class TextShaper;

/// Which kind of pixels a page must have to hold a drawing, in ascending order.
enum class Ink {
    None,          ///< nothing is drawn
    BlackAndWhite, ///< opaque black or white only
    Grey,
    Colour,
};

/// A canvas that draws nothing but records which kind of colours a drawing uses and which area it covers.
class InkProbe final : public Canvas
{
  public:
    /// `space` takes what is drawn to the pixels that bounds() counts.
    explicit InkProbe(TextShaper& shaper, const QTransform& space = {}) : shaper_(shaper), space_(space) {}

    [[nodiscard]] Ink ink() const { return ink_; }
    /// A rectangle around every mark, soft edges included; empty when there is none. Glyphs that are pictures
    /// count for ink() but not here.
    [[nodiscard]] QRectF bounds() const;

    [[nodiscard]] TextShaper& shaper() override { return shaper_; }
    void save() override { saved_.push_back(space_); }
    void restore() override;
    void translate(double dx, double dy) override { space_.translate(dx, dy); }
    void rotate(double radians) override { space_.rotateRadians(radians); }
    void fillRect(const QRectF& rect, const QColor& color) override;
    void drawText(const ShapedText& text, const TextPaint& paint) override;
    void drawPicture(const Picture& picture, const QRectF& target, double opacity) override;

  private:
    void use(Ink ink);
    void use(const QColor& color);
    void mark(const QRectF& rect) { marks_ |= space_.mapRect(rect); }

    TextShaper& shaper_;
    QTransform space_;
    std::vector<QTransform> saved_;
    QRectF marks_;
    Ink ink_ = Ink::None;
};

} // namespace quillfern::drawing
