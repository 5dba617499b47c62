#include "stamps/TextStamp.h"

#include "platform/drawing/TextShaper.h"
#include "platform/system/Guarded.h"
#include "stamps/ColorRecord.h"
#include "stamps/Placement.h"

#include <algorithm>
#include <cmath>

namespace quillfern {

namespace {

QColor withOpacity(const std::optional<QColor>& color, std::int64_t percent)
{
    QColor result = color.value_or(Qt::black);
    result.setAlphaF(
        static_cast<float>(static_cast<double>(std::clamp<std::int64_t>(percent, 0, 100)) * 0.01));
    return result;
}

/// Whole degrees; a stored angle can be any number.
int wholeDegrees(double degrees)
{
    return std::isfinite(degrees) ? static_cast<int>(std::clamp(degrees, -1e9, 1e9)) : 0;
}

} // namespace

bool TextStamp::isVisible() const
{
    if (!number.numberFormat || number.numberFormat->isEmpty() || !(font.fontSize > 0)) return false;
    return textOpacity > 0 || (outlineOpacity > 0 && outlineWidth > 0);
}

drawing::TextPaint TextStamp::paint() const
{
    drawing::TextPaint paint;
    paint.fontSize = font.fontSize;
    paint.fill = withOpacity(font.fontColor, textOpacity);
    paint.stroke = withOpacity(outlineColor, outlineOpacity);
    paint.strokeWidth = static_cast<double>(std::max<std::int64_t>(outlineWidth, 0)) * 0.01 * font.fontSize;
    if (isUnderline) {
        paint.underlines = underlineStyle == UnderlineStyle::Single   ? 1
                           : underlineStyle == UnderlineStyle::Double ? 2
                                                                      : 0;
        paint.strikeThrough = underlineStyle == UnderlineStyle::Strikethrough;
    }
    return paint;
}

std::unique_ptr<IStampItem> TextStamp::clone() const
{
    return std::make_unique<TextStamp>(*this);
}

std::unique_ptr<IStampItem> TextStamp::filledIn(const FillIns& fillIns) const
{
    if (!isFillIn) return nullptr;
    auto copy = std::make_unique<TextStamp>(*this);
    copy->fillIns_ = fillIns;
    copy->fillIns_.insert(QStringLiteral("label"), label().value_or(QString()));
    return copy;
}

void TextStamp::draw(drawing::Canvas& canvas, const QRectF& rect, MarginAnchor marginAnchor,
                     std::int64_t pageNumber, std::int64_t totalPages, bool isHighLightStamp) const
{
    guarded("Error in [Draw:rect:marginAnchor:pageNumber:totalPages:isHighLightStamp:] : %@", [&] {
        if (!isVisible()) return;
        const QString text = numberText(number, pageNumber, totalPages, fillIns_);
        if (text.isEmpty()) return;
        const auto shaped =
            canvas.shaper().shape(text, {font.fontName.value_or(QString()), isBold, isItalic});
        const QSizeF size(shaped->width * font.fontSize, shaped->height * font.fontSize);
        const QPointF corner = guarded(
            "Error in [getTransformedPoint:textSize:angle:rect:marginAnchor:pointIndex] : %@", QPointF(0, 0),
            [&] { return getTransformedPoint(size, wholeDegrees(textRotation), rect, marginAnchor, 0); });

        canvas.save();
        canvas.translate(rect.x() + corner.x(), rect.y() + corner.y());
        canvas.rotate(-(std::isfinite(textRotation) ? textRotation : 0) * radiansPerDegree);
        canvas.drawText(*shaped, paint());
        if (isHighLightStamp) canvas.fillRect(QRectF(QPointF(0, 0), size), QColor::fromRgbF(1, 0, 0, 0.5F));
        canvas.restore();
    });
}

void TextStamp::requireFont(drawing::TextShaper& shaper) const
{
    if (isVisible())
        (void)shaper.shape(QStringLiteral("0"), {font.fontName.value_or(QString()), isBold, isItalic});
}

QString TextStamp::description() const
{
    return QStringLiteral("%1 [%2]").arg(numberTypeName(number.numberType),
                                         number.numberFormat.value_or(QString()));
}

std::optional<store::Record> TextStamp::getData() const
{
    return guarded<std::optional<store::Record>>("Error in (TextStamp=>getData) : %@", std::nullopt, [this] {
        std::optional<QByteArray> outline;
        if (outlineColor) outline = colorToBytes(*outlineColor);
        store::RecordBuilder builder;
        builder.add(QStringLiteral("textRotation"), wholeDegrees(textRotation))
            .add(QStringLiteral("outlineOpacity"), store::low32(outlineOpacity))
            .add(QStringLiteral("textOpacity"), store::low32(textOpacity))
            .add(QStringLiteral("numberType"), qToUnderlying(number.numberType))
            .add(QStringLiteral("paddingLength"), store::low32(number.paddingLength))
            .add(QStringLiteral("paddingCharacter"), number.paddingCharacter)
            .add(QStringLiteral("numberFormat"), number.numberFormat)
            .add(QStringLiteral("underlineStyle"), qToUnderlying(underlineStyle))
            .add(QStringLiteral("isEmbedFont"), isEmbedFont)
            .add(QStringLiteral("isUnderline"), isUnderline)
            .add(QStringLiteral("isItalic"), isItalic)
            .add(QStringLiteral("isBold"), isBold)
            .add(QStringLiteral("outlineColor"), outline)
            .add(QStringLiteral("outlineWidth"), store::low32(outlineWidth))
            .add(QStringLiteral("font"), font.getData());
        addShared(builder);
        if (isFillIn) builder.add(QStringLiteral("isFillIn"), true); // otherwise the record is as ever
        return std::optional(builder.take());
    });
}

void TextStamp::fillAbsentValues()
{
    StampBase::fillAbsentValues();
    for (std::optional<QString>* text : {&font.fontName, &number.numberFormat, &number.paddingCharacter})
        if (!*text) *text = QString();
    for (std::optional<QColor>* color : {&font.fontColor, &outlineColor})
        if (!*color) *color = QColor(Qt::black); // an absent colour is drawn in black
}

void TextStamp::setData(const store::Record* data)
{
    guarded("Error in (TextStamp=>setData:) : %@", [&] {
        if (!data) return;
        readShared(*data);
        font.setData(data->record(QStringLiteral("font")));
        outlineWidth = data->integer32(QStringLiteral("outlineWidth"));
        outlineColor = colorFromBytes(data->bytes(QStringLiteral("outlineColor")));
        isBold = data->boolean(QStringLiteral("isBold"));
        isItalic = data->boolean(QStringLiteral("isItalic"));
        isUnderline = data->boolean(QStringLiteral("isUnderline"));
        isEmbedFont = data->boolean(QStringLiteral("isEmbedFont"));
        underlineStyle = UnderlineStyle{data->integer32(QStringLiteral("underlineStyle"))};
        number.numberFormat = data->text(QStringLiteral("numberFormat"));
        number.paddingCharacter = data->text(QStringLiteral("paddingCharacter"));
        number.paddingLength = data->integer32(QStringLiteral("paddingLength"));
        number.numberType = NumberType{data->integer32(QStringLiteral("numberType"))};
        textOpacity = data->integer32(QStringLiteral("textOpacity"));
        outlineOpacity = data->integer32(QStringLiteral("outlineOpacity"));
        textRotation = data->integer32(QStringLiteral("textRotation"));
        isFillIn = data->boolean(QStringLiteral("isFillIn"));
    });
}

} // namespace quillfern
