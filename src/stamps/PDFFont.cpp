#include "stamps/PDFFont.h"

#include "platform/system/Guarded.h"
#include "stamps/ColorRecord.h"

namespace quillfern {

PDFFont PDFFont::initWithFont(const QString& name, std::int32_t fontID, double fontSize, bool isStandard)
{
    PDFFont font;
    font.fontName = name;
    font.fontID = fontID;
    font.fontSize = fontSize;
    font.isStandard = isStandard;
    return font;
}

std::optional<store::Record> PDFFont::getData() const
{
    return guarded<std::optional<store::Record>>("Error in (PDFFont=>getData) : %@", std::nullopt, [this] {
        std::optional<QByteArray> color;
        if (fontColor) color = colorToBytes(*fontColor);
        return std::optional(store::RecordBuilder()
                                 .add(QStringLiteral("fontColor"), color)
                                 .add(QStringLiteral("isStandard"), isStandard)
                                 .add(QStringLiteral("fontSize"), fontSize)
                                 .add(QStringLiteral("fontID"), fontID)
                                 .add(QStringLiteral("fontName"), fontName)
                                 .take());
    });
}

void PDFFont::setData(const store::Record* data)
{
    guarded("Error in (PDFFont=>setData:) : %@", [&] {
        if (!data) return;
        fontName = data->text(QStringLiteral("fontName"));
        fontID = data->integer32(QStringLiteral("fontID"));
        fontSize = data->real(QStringLiteral("fontSize"));
        isStandard = data->boolean(QStringLiteral("isStandard"));
        fontColor = colorFromBytes(data->bytes(QStringLiteral("fontColor")));
    });
}

} // namespace quillfern
