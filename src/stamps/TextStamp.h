#pragma once

#include "platform/drawing/Canvas.h"
#include "platform/store/Record.h"
#include "stamps/IStampItem.h"
#include "stamps/NumberText.h"
#include "stamps/PDFFont.h"
#include "stamps/StampBase.h"

#include <QColor>
#include <QRectF>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>

namespace quillfern {

/// The line under or through a stamp's text. The values are stored in profiles; any other value draws no
/// line.
enum class UnderlineStyle : std::int32_t {
    Single = 0,
    Double = 1,
    Strikethrough = 2,
};

/// A stamp that prints a line of text, usually a running number, on every page.
class TextStamp final : public StampBase
{
  public:
    PDFFont font;
    bool isBold = false;
    bool isItalic = false;
    bool isUnderline = false; ///< apply underlineStyle
    bool isEmbedFont = false; ///< kept and saved; fonts are always embedded
    UnderlineStyle underlineStyle = UnderlineStyle::Single;
    NumberFormat number;
    bool isFillIn = false; ///< {file}, {folder}, {date}, {time} and {label} in the template are filled in
    std::int64_t textOpacity = 100;    ///< percent of the fill
    double textRotation = 0;           ///< degrees, counter-clockwise on the page
    std::int64_t outlineOpacity = 100; ///< percent
    std::int64_t outlineWidth = 0;     ///< percent of the font size; 0 draws none
    std::optional<QColor> outlineColor = QColor(Qt::black);

    void setData(const store::Record* data) override;
    [[nodiscard]] std::optional<store::Record> getData() const override;
    void fillAbsentValues() override;
    [[nodiscard]] std::unique_ptr<IStampItem> clone() const override;
    /// {label} is the stamp's own.
    [[nodiscard]] std::unique_ptr<IStampItem> filledIn(const FillIns& fillIns) const override;
    void draw(drawing::Canvas& canvas, const QRectF& rect, MarginAnchor marginAnchor, std::int64_t pageNumber,
              std::int64_t totalPages, bool isHighLightStamp) const override;
    void requireFont(drawing::TextShaper& shaper) const override;
    [[nodiscard]] QString description() const override;

  private:
    [[nodiscard]] bool isVisible() const;
    [[nodiscard]] drawing::TextPaint paint() const;

    FillIns fillIns_; ///< of the document that this copy is for; never saved
};

} // namespace quillfern
