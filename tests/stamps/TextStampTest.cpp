#include "stamps/TextStamp.h"

#include "platform/drawing/RasterCanvas.h"
#include "platform/drawing/TextShaper.h"
#include "stamps/PageCompositor.h"
#include "support/Cases.h"
#include "support/Records.h"

#include <QPainter>

namespace quillfern {
namespace {

TEST(TextStampRecord, HasItsKeysInOrderAndGoesRound)
{
    TextStamp stamp;
    stamp.textRotation = -45.7;
    stamp.textOpacity = (std::int64_t{1} << 33) + 5;
    stamp.outlineColor = QColor(1, 2, 3, 4);
    stamp.font.fontSize = 10.5;
    stamp.setLabel(u"a label"_s);
    stamp.setMarginAnchor(MarginAnchor::BottomRight);
    const auto record = stamp.getData();
    ASSERT_TRUE(record);
    EXPECT_EQ(keysOf(*record),
              words("textRotation outlineOpacity textOpacity numberType paddingLength paddingCharacter "
                    "numberFormat underlineStyle isEmbedFont isUnderline isItalic isBold outlineColor "
                    "outlineWidth font isSymmetry isDrawUnderPDFContent marginAnchor label isSelected"));
    EXPECT_EQ(keysOf(*record->record(u"font"_s)), words("fontColor isStandard fontSize fontID fontName"));
    EXPECT_EQ(*record->bytes(u"outlineColor"_s), QByteArray("#04010203"));
    TextStamp copy;
    copy.setData(&*record);
    EXPECT_EQ(copy.textRotation, -45);
    EXPECT_EQ(copy.textOpacity, 5);
    EXPECT_EQ(copy.outlineColor, stamp.outlineColor);
    EXPECT_EQ(copy.font, stamp.font);
    EXPECT_EQ(*copy.getData(), *record);
}

TEST(TextStampRecord, EndsBeforeTheFirstAbsentValue)
{
    TextStamp stamp;
    stamp.number.paddingCharacter.reset();
    EXPECT_EQ(stamp.getData()->entries().size(), 5U);
    stamp.number.paddingCharacter = QString();
    EXPECT_EQ(stamp.getData()->entries().size(), 20U) << "empty is not absent";
    stamp.outlineColor.reset();
    EXPECT_EQ(stamp.getData()->entries().size(), 12U);
    PDFFont font;
    font.fontColor.reset();
    EXPECT_TRUE(font.getData()->empty());
    font = PDFFont();
    font.fontName.reset();
    EXPECT_EQ(font.getData()->entries().size(), 4U);
}

TEST(TextStampRecord, MissingKeysGiveNothingRatherThanDefaults)
{
    TextStamp stamp;
    stamp.setData(nullptr);
    EXPECT_TRUE(stamp.isSelected()) << "without a record nothing changes";
    const store::Record empty;
    stamp.setData(&empty);
    EXPECT_FALSE(stamp.isSelected());
    EXPECT_FALSE(stamp.label() || stamp.number.numberFormat || stamp.outlineColor);
    EXPECT_EQ(stamp.textOpacity, 0);
    EXPECT_EQ(stamp.number.paddingLength, 0);
    EXPECT_EQ(stamp.font.fontSize, 12) << "the font is not touched without its own record";
    store::Record strange;
    strange.set(u"outlineColor"_s, QByteArray("whatever"));
    stamp.setData(&strange);
    EXPECT_EQ(stamp.outlineColor, QColor(Qt::black));
}

/// Pixels of an image that are not white, and their bounding box.
struct Ink
{
    QRect box;
    int count = 0;
};

Ink inkOf(const QImage& image)
{
    Ink ink;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb p = image.pixel(x, y);
            if (qRed(p) > 250 && qGreen(p) > 250 && qBlue(p) > 250) continue;
            ink.box |= QRect(x, y, 1, 1);
            ++ink.count;
        }
    return ink;
}

class Drawing : public testing::Test
{
  protected:
    QImage drawn()
    {
        QImage image(400, 300, QImage::Format_RGB32);
        image.fill(Qt::white);
        const StampValues values = valuesOf(stamps);
        PageCompositor(values, shaper).drawOnImage(image, area, run, 10, -1, false);
        return image;
    }
    TextStamp& add(const QString& text, MarginAnchor anchor)
    {
        auto stamp = std::make_shared<TextStamp>();
        stamp->number.numberFormat = text;
        stamp->font.fontName = u"Liberation Sans"_s;
        stamp->font.fontSize = 24;
        stamp->setMarginAnchor(anchor);
        stamps.push_back(stamp);
        return *stamp;
    }

    StampList stamps;
    StampRun run{3};
    drawing::TextShaper shaper;
    QRectF area{40, 30, 320, 240};
};

TEST_F(Drawing, OpacityOutlineAndLines)
{
    TextStamp& stamp = add(u"Hxg"_s, MarginAnchor::MiddleMiddle);
    const int plain = inkOf(drawn()).count;
    stamp.textOpacity = 0;
    EXPECT_EQ(inkOf(drawn()).count, 0);
    stamp.outlineWidth = 4;
    const int outline = inkOf(drawn()).count;
    EXPECT_GT(outline, 50);
    stamp.outlineOpacity = 0;
    EXPECT_EQ(inkOf(drawn()).count, 0);
    stamp.textOpacity = 100;
    stamp.outlineWidth = 0;
    stamp.isUnderline = true;
    const auto withLine = [&](UnderlineStyle style) {
        stamp.underlineStyle = style;
        return inkOf(drawn()).count;
    };
    EXPECT_GT(withLine(UnderlineStyle::Single), plain);
    EXPECT_GT(withLine(UnderlineStyle::Double), withLine(UnderlineStyle::Single));
    EXPECT_GT(withLine(UnderlineStyle::Strikethrough), plain);
    EXPECT_EQ(withLine(UnderlineStyle{3}), plain);
    stamp.number.numberFormat = QString();
    EXPECT_EQ(inkOf(drawn()).count, 0);
}

TEST_F(Drawing, RotationTurnsCounterClockwise)
{
    TextStamp& stamp = add(u"|||||||||||||"_s, MarginAnchor::MiddleMiddle);
    stamp.textRotation = 30;
    const QImage image = drawn();
    const Ink ink = inkOf(image);
    // Rising to the right: the left end lies lower.
    const Ink left = inkOf(image.copy(ink.box.left(), 0, ink.box.width() / 4, 300));
    const Ink right = inkOf(image.copy(ink.box.right() - ink.box.width() / 4, 0, ink.box.width() / 4, 300));
    EXPECT_GT(left.box.center().y(), right.box.center().y() + 10);
}

} // namespace
} // namespace quillfern
