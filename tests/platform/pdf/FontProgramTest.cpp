#include "platform/pdf/FontProgram.h"

#include "platform/drawing/TextShaper.h"
#include "platform/pdf/CffCharset.h"
#include "platform/pdf/FontBuilder.h"
#include "support/Cases.h"
#include "support/ImageBytes.h"

namespace quillfern::pdf {
namespace {

const std::vector<std::uint16_t> cids = {0, 40, 41, 7, 900};

OpenTypePlan boxes(bool cidKeyed)
{
    CffPlan cff;
    cff.cidKeyed = cidKeyed;
    cff.charset = QByteArray(1, '\0');
    OpenTypePlan plan;
    for (std::size_t glyph = 0; glyph < cids.size(); ++glyph) {
        cff.glyphs.append({static_cast<int>(300 + 100 * glyph), 700});
        plan.advances.append(cff.glyphs.back().advance);
        plan.characters[static_cast<char16_t>(u'A' + glyph)] = static_cast<int>(glyph);
        if (glyph > 0) cff.charset += bigEndian16(cids[glyph]);
    }
    plan.cff = cffTable(cff);
    return plan;
}

std::shared_ptr<const drawing::FontFace> face(const OpenTypePlan& plan)
{
    const QRawFont font(openTypeFont(plan), 16);
    EXPECT_TRUE(font.isValid());
    return std::make_shared<const drawing::FontFace>(font);
}

std::shared_ptr<const drawing::FontFace> installedFace(const char* family)
{
    drawing::TextShaper shaper;
    return shaper.shape(u"a"_s, {QString::fromLatin1(family), false, false})->runs.front().face;
}

TEST(FontProgramTest, EmbedsWhatMayBeAndCanBeEmbedded)
{
    const Rows<const char*, int, std::map<QByteArray, QByteArray>, bool> cases = {
        {"installable", 0, {}, true},
        {"restricted", 2, {}, false},
        {"preview and print", 4, {}, true},
        {"editable", 8, {}, true},
        {"preview and print, no subsets", 0x104, {}, false},
        {"bitmaps only", 0x208, {}, false},
        {"no licence bits at all", 0, {{"OS/2", {}}}, true},
        {"variable", 0, {{"fvar", "x"}}, false},
        {"layers of colours", 0, {{"COLR", "x"}}, false},
        {"drawings", 0, {{"SVG ", "x"}}, false},
        {"pictures", 0, {{"CBDT", "x"}}, false},
    };
    for (const auto& [what, fsType, tables, embeddable] : cases) {
        OpenTypePlan plan = boxes(true);
        plan.fsType = fsType;
        plan.tables = tables;
        EXPECT_EQ(FontProgram(face(plan)).embeddable(), embeddable) << what;
    }
    CffPlan unlisted;
    unlisted.glyphs.resize(5);
    OpenTypePlan plan = boxes(true);
    plan.cff = cffTable(unlisted);
    const QRawFont font(openTypeFont(plan), 16);
    if (font.isValid()) { // the engine may refuse it first
        EXPECT_FALSE(FontProgram(std::make_shared<const drawing::FontFace>(font)).embeddable())
            << "a CID-keyed font whose charset is one of names";
    }
}

TEST(FontProgramTest, NamesTheFontWithoutWhatAPdfNameWouldEscape)
{
    for (const auto& [given, expected] : {std::pair<QByteArray, QByteArray>{"Box-Regular2", "Box-Regular2"},
                                          {"B (o)/x #[é]", "Box"},
                                          {"", "QuillBoxes"},
                                          {"()", "Font"}}) {
        OpenTypePlan plan = boxes(true);
        plan.postScriptName = given;
        EXPECT_EQ(FontProgram(face(plan)).postScriptName(), expected) << given.toStdString();
    }
}

TEST(FontProgramTest, ASubsetKeepsItsGlyphsWhereTheyAre)
{
    const FontProgram program(face(boxes(true)));
    const auto subset = program.subset({0, 3});
    ASSERT_TRUE(subset);
    EXPECT_TRUE(subset->glyphs.contains(0) && subset->glyphs.contains(3));
    EXPECT_FALSE(subset->glyphs.contains(1) || subset->glyphs.contains(4));
    const auto charset = cidsByGlyph(subset->program);
    ASSERT_TRUE(charset);
    ASSERT_GT(charset->size(), 3U);
    EXPECT_EQ((*charset)[3], cids[3]);

    // Parts of composed glyphs belong to it.
    const auto sans = installedFace("Liberation Sans");
    const auto glyphOf = [&](const QString& c) { return sans->rawFont().glyphIndexesForString(c).front(); };
    const FontProgram trueType(sans);
    EXPECT_FALSE(trueType.isCff());
    const std::uint32_t composed = glyphOf(u"\u00E9"_s);
    const auto parts = trueType.subset({composed});
    ASSERT_TRUE(parts);
    EXPECT_TRUE(parts->glyphs.contains(composed));
    EXPECT_TRUE(parts->glyphs.contains(glyphOf(u"e"_s)));
    EXPECT_LT(parts->glyphs.size(), 10U);
    EXPECT_LT(parts->program.size(), 60'000);
}

} // namespace
} // namespace quillfern::pdf
