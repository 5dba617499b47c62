#include "platform/drawing/TextShaper.h"

#include "platform/drawing/RasterCanvas.h"
#include "support/Cases.h"

#include <QGlyphRun>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>
#include <vector>

namespace quillfern::drawing {
namespace {

const FontSpec sans{u"Liberation Sans"_s, false, false};

struct Glyph
{
    quint32 index;
    double x; ///< in ems
};

std::vector<Glyph> glyphsOf(const ShapedText& text)
{
    std::vector<Glyph> all;
    for (const ShapedRun& run : text.runs)
        for (const ShapedGlyph& glyph : run.glyphs)
            all.push_back({glyph.glyph, glyph.x});
    return all;
}

/// The glyphs of a left-to-right text as Qt lays them out by itself: a TextShaper exchanges figures in every
/// text that has some, also in the first one.
std::vector<Glyph> laidOutByQt(const QString& text, const FontSpec& font)
{
    const FontCatalog catalog;
    const double unitsPerEm = QRawFont::fromFont(catalog.font(font, 1000)).unitsPerEm();
    QTextLayout layout(text, catalog.font(font, static_cast<int>(unitsPerEm)));
    QTextOption option;
    option.setUseDesignMetrics(true);
    layout.setTextOption(option);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    std::vector<Glyph> all;
    for (const QGlyphRun& run : line.glyphRuns())
        for (qsizetype i = 0; i < run.glyphIndexes().size(); ++i)
            all.push_back({run.glyphIndexes()[i],
                           (run.positions()[i].x() - line.naturalTextRect().left()) / unitsPerEm});
    return all;
}

TEST(TextShaperTest, ExchangingFiguresGivesWhatAFullLayoutGives)
{
    for (const FontSpec& font : {sans, FontSpec{u"Liberation Serif"_s, true, true}}) {
        TextShaper running;
        for (int number : {1, 7, 10, 11, 17, 71, 99, 100, 741, 1234})
            for (const char* pattern : {"%1", "Page %1 of 1234", "A%1V", "%1/%1", "(%1)", "T%1,%1"}) {
                const QString text = QString::fromLatin1(pattern).arg(number);
                SCOPED_TRACE(text.toStdString());
                const auto shaped = running.shape(text, font);
                const std::vector<Glyph> glyphs = glyphsOf(*shaped);
                const std::vector<Glyph> expected = laidOutByQt(text, font);
                ASSERT_EQ(glyphs.size(), expected.size());
                for (std::size_t i = 0; i < glyphs.size(); ++i) {
                    EXPECT_EQ(glyphs[i].index, expected[i].index) << "at " << i;
                    EXPECT_NEAR(glyphs[i].x, expected[i].x, 1e-6) << "at " << i;
                }
                QString characters;
                for (const ShapedRun& run : shaped->runs)
                    for (const ShapedGlyph& glyph : run.glyphs)
                        characters += glyph.text;
                EXPECT_EQ(characters.toStdString(), text.toStdString());
            }
        EXPECT_LT(running.layoutCount(), 300) << "the figures are not exchanged at all";
    }
}

TEST(TextShaperTest, RunningNumbersAreNotLaidOutAgain)
{
    TextShaper shaper;
    for (int i = 1; i <= 2000; ++i)
        ASSERT_FALSE(shaper.shape(u"%1 of 2000"_s.arg(i), sans)->runs.empty());
    EXPECT_LT(shaper.layoutCount(), 100);
    const int before = shaper.layoutCount();
    static_cast<void>(shaper.shape(u"mdcclxxvi"_s, sans));
    static_cast<void>(shaper.shape(u"mdcclxxvi"_s, sans));
    EXPECT_EQ(shaper.layoutCount(), before + 1);
}

TEST(TextShaperTest, MeasuresInEms)
{
    TextShaper shaper;
    const auto text = shaper.shape(u"0123456789"_s, sans);
    EXPECT_NEAR(text->width, 5.562, 0.01); // ten figures of 1139 / 2048
    EXPECT_NEAR(text->height, 1.117, 0.05);
    ASSERT_EQ(text->runs.size(), 1U);
    EXPECT_EQ(text->runs[0].glyphs.size(), 10U);
    EXPECT_EQ(text->runs[0].glyphs[9].text, u"9"_s);
}

TEST(TextShaperTest, ClustersCarryTheirCharacters)
{
    TextShaper shaper;
    const std::vector<QString> texts = {u"office"_s, u"e\u0301a"_s, u"\u05e9\u05dc\u05d5\u05dd 12"_s,
                                        u"\u0645\u0631\u062d\u0628\u0627"_s, QString::fromUtf8("a🌿b")};
    for (const QString& text : texts) {
        QString collected;
        const auto shaped = shaper.shape(text, sans);
        for (const ShapedRun& run : shaped->runs)
            for (const ShapedGlyph& glyph : run.glyphs)
                collected += glyph.text;
        EXPECT_EQ(collected.toStdString(), text.toStdString()) << "in the order of the text";
    }
}

TEST(TextShaperTest, AbsurdTextsAreBounded)
{
    TextShaper shaper;
    EXPECT_LT(shaper.shape(QString(200'000, u'W'), sans)->width, 10'000);
    EXPECT_GT(shaper.shape(u"a\tb\x01"_s, sans)->width, 1);
    EXPECT_EQ(shaper.shape(QString(), sans)->width, 0);
}

TEST(FontCatalogTest, GivesOnlyMembersThatExist)
{
    const FontCatalog catalog;
    EXPECT_TRUE(catalog.hasBold(u"Liberation Sans"_s));
    EXPECT_TRUE(catalog.hasItalic(u"Liberation Sans"_s));
    // This family comes in one weight and one slant.
    const QString single = u"Droid Sans Fallback"_s;
    ASSERT_TRUE(catalog.families().contains(single)) << "test.sh installs it";
    EXPECT_FALSE(catalog.hasBold(single));
    const QRawFont plain = QRawFont::fromFont(catalog.font({single, false, false}, 100));
    const QRawFont asked = QRawFont::fromFont(catalog.font({single, true, true}, 100));
    EXPECT_EQ(FontFace::identityOf(plain), FontFace::identityOf(asked)) << "nothing is emboldened or slanted";
    EXPECT_NE(FontFace::identityOf(QRawFont::fromFont(catalog.font(sans, 100))),
              FontFace::identityOf(QRawFont::fromFont(catalog.font({sans.family, true, false}, 100))));
}

TEST(FontCatalogTest, AMissingFamilyIsReplacedByOneThatIsThere)
{
    const FontCatalog catalog;
    for (const char* name : {"Helvetica", "No Such Family At All", ""}) {
        const QString family = catalog.resolveFamily(QString::fromLatin1(name));
        EXPECT_TRUE(catalog.families().contains(family)) << name << " gives " << family.toStdString();
        EXPECT_FALSE(QRawFont::fromFont(catalog.font({QString::fromLatin1(name), false, false}, 50))
                         .fontTable("head")
                         .isEmpty())
            << name;
    }
}

} // namespace
} // namespace quillfern::drawing
