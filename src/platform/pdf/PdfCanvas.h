#pragma once

#include "platform/drawing/Canvas.h"
#include "platform/drawing/Picture.h"
#include "platform/drawing/ShapedText.h"
#include "platform/pdf/PdfResources.h"

#include <QColor>
#include <QPainterPath>
#include <QRectF>
#include <QTransform>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <vector>

namespace quillfern::drawing {
class TextShaper;
}

namespace quillfern::pdf {

/// Writes content operators. Transformations are folded into each mark, and the graphics state is saved once
/// for every artifact, so that a page number costs few bytes. Bound to one thread.
class PdfCanvas final : public drawing::Canvas
{
  public:
    /// `toUserSpace` leads from the canvas's space to the page's; the resources outlive the canvas.
    PdfCanvas(PdfResources& resources, PdfPageResources& page, drawing::TextShaper& shaper,
              const QTransform& toUserSpace);

    [[nodiscard]] drawing::TextShaper& shaper() override { return shaper_; }
    void save() override { stack_.push_back(transform_); }
    void restore() override;
    void translate(double dx, double dy) override { transform_.translate(dx, dy); }
    void rotate(double radians) override { transform_.rotateRadians(radians); }
    void fillRect(const QRectF& rect, const QColor& color) override;
    void drawText(const drawing::ShapedText& text, const drawing::TextPaint& paint) override;
    void drawPicture(const drawing::Picture& picture, const QRectF& target, double opacity) override;
    void beginArtifact() override;
    void endArtifact() override;

    /// What was drawn so far: balanced content, which leaves the graphics state as it found it.
    [[nodiscard]] const std::string& content() const { return content_; }

  private:
    void number(double value, int decimals = 3);
    void numbers(std::initializer_list<double> values, int decimals = 3);
    void point(const QTransform& transform, double x, double y);
    void fillColour(const QColor& colour);
    void strokeColour(const QColor& colour);
    void colour(const QColor& colour, bool stroke);
    void opacities(double fill, double stroke);
    void rectangle(const QRectF& rect);
    void glyphsAsText(const drawing::ShapedRun& run, PdfResources::Font& font,
                      const drawing::TextPaint& paint);
    void glyphsAsOutlines(const drawing::ShapedRun& run, const drawing::TextPaint& paint);
    void glyphAsPicture(const drawing::ShapedRun& run, const drawing::ShapedGlyph& glyph,
                        const drawing::TextPaint& paint);
    void outline(const QPainterPath& path, const QTransform& transform);

    PdfResources& resources_;
    PdfPageResources& page_;
    drawing::TextShaper& shaper_;
    QTransform transform_;
    std::vector<QTransform> stack_;
    std::string content_;
    std::size_t artifactStart_ = 0;
    std::size_t artifactBody_ = 0;
    // What the graphics state of the open artifact holds already.
    std::string fillNow_;
    std::string strokeNow_;
    std::string opacityNow_;
};

} // namespace quillfern::pdf
