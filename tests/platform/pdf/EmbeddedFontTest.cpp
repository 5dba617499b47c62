// Text set in every kind of font program, read back by another program than the one that wrote it.

#include "platform/pdf/EmbeddedFont.h"

#include "platform/drawing/TextShaper.h"
#include "platform/pdf/FontBuilder.h"
#include "platform/pdf/PdfDocument.h"
#include "platform/pdf/PdfWriter.h"
#include "platform/store/AtomicFile.h"
#include "support/ImageBytes.h"
#include "support/PdfBuilder.h"

#include <QFontDatabase>

namespace quillfern::pdf {
namespace {

constexpr double fontSize = 50;

/// A font with boxes of different heights for A to E, either CID-keyed with CIDs that are not its glyph
/// numbers, or with glyph names. It is one of the application's fonts for as long as the object lives.
class BoxFont
{
  public:
    explicit BoxFont(bool cidKeyed)
        : spec{cidKeyed ? u"Quill Keyed Boxes"_s : u"Quill Named Boxes"_s, false, false}
    {
        CffPlan cff;
        cff.cidKeyed = cidKeyed;
        cff.charset = "\1" + bigEndian16(cidKeyed ? 1000 : 34) + '\4';
        OpenTypePlan plan;
        plan.family = spec.family.toLatin1();
        plan.postScriptName = QByteArray(plan.family).replace(" ", "");
        for (int glyph = 0; glyph <= 5; ++glyph) {
            cff.glyphs.append({300 + 100 * glyph, heightOf(glyph)});
            plan.advances.append(300 + 100 * glyph);
            if (glyph > 0) plan.characters[static_cast<char16_t>(u'A' + glyph - 1)] = glyph;
        }
        plan.cff = cffTable(cff);
        id_ = QFontDatabase::addApplicationFontFromData(openTypeFont(plan));
        EXPECT_GE(id_, 0);
    }
    ~BoxFont() { QFontDatabase::removeApplicationFont(id_); }
    BoxFont(const BoxFont&) = delete;
    BoxFont& operator=(const BoxFont&) = delete;

    static int heightOf(int glyph) { return glyph == 0 ? 50 : 100 + 120 * glyph; }

    drawing::FontSpec spec;

  private:
    int id_ = -1;
};

/// A page of 600 by 200 points that shows `text` from 50, 50 on; returns the path and the text's own width.
std::pair<QString, double> stamped(const Scratch& scratch, const QString& text, const drawing::FontSpec& font)
{
    const QString source = scratch.write(u"in.pdf"_s, simplePdf({{{}, "/MediaBox[0 0 600 200]"}}));
    const QString target = scratch.path(u"out.pdf"_s);
    drawing::TextShaper shaper;
    const auto shaped = shaper.shape(text, font);
    EXPECT_EQ(shaped->runs.size(), 1U) << "drawn in the font that was asked for";
    const auto document = PdfDocument::open(asPath(source));
    const auto page = document->stampPage(0, shaper);
    page->over().translate(50, 50);
    drawing::TextPaint paint;
    paint.fontSize = fontSize;
    page->over().drawText(*shaped, paint);
    page->finish();
    store::AtomicFile file(asPath(target));
    document->save(RewritingPdfWriter(), file);
    file.commit();
    EXPECT_TRUE(qpdfAccepts(target));
    return {target, shaped->width * fontSize};
}

QByteArray fontsOf(const QString& pdf)
{
    return runTool("pdffonts", {pdf}).out.simplified();
}

TEST(EmbeddedFontTest, TextInEveryKindOfFontIsFoundAndAsWideAsItWas)
{
    const Scratch scratch;
    const BoxFont keyed(true);
    const BoxFont named(false);
    const Rows<drawing::FontSpec, QString, const char*> cases = {
        {{u"Liberation Sans"_s, false, false}, u"Wi\u00E9l2024"_s, "CID TrueType"},
        {{u"Cantarell"_s, false, false}, u"Wi\u00E9l2024"_s, "CID Type 0C"},
        {{u"Cantarell"_s, true, false}, u"Wi\u00E9l2024"_s, "CID Type 0C"},
        {keyed.spec, u"ADBEC"_s, "CID Type 0C"},
        {named.spec, u"ADBEC"_s, "CID Type 0C"},
    };
    for (const auto& [font, text, kind] : cases) {
        SCOPED_TRACE(font.family.toStdString());
        const auto [path, width] = stamped(scratch, text, font);
        EXPECT_GT(width, 50);
        // name, kind, encoding; embedded, a subset, with a map to text
        EXPECT_TRUE(fontsOf(path).contains(QByteArray(kind) + " Identity-H yes yes yes"))
            << fontsOf(path).toStdString();
        const auto pages = pdfWords(path);
        ASSERT_EQ(pages.size(), 1U);
        const QRectF box = pages[0].boxOf(text);
        EXPECT_NEAR(box.left(), 50, 0.1);
        EXPECT_NEAR(box.width(), width, 0.1);
    }
}

/// The columns of a picture that hold ink, each with the height of the ink in it.
std::vector<int> inkHeights(const QImage& image)
{
    std::vector<int> heights;
    for (int x = 0; x < image.width(); ++x) {
        int height = 0;
        for (int y = 0; y < image.height(); ++y)
            height += qGray(image.pixel(x, y)) < 128 ? 1 : 0;
        heights.push_back(height);
    }
    return heights;
}

TEST(EmbeddedFontTest, EveryCodeShowsItsOwnGlyph)
{
    const Scratch scratch;
    for (const bool cidKeyed : {true, false}) {
        const BoxFont font(cidKeyed);
        const auto [path, width] = stamped(scratch, u"CAEB"_s, font.spec);
        const QString picture = scratch.path(u"page"_s);
        runTool("pdftoppm -r 144 -png -singlefile", {path, picture});
        const auto heights = inkHeights(QImage(picture + u".png"_s));
        ASSERT_EQ(heights.size(), 1200U);
        double pen = 50;
        for (const int glyph : {3, 1, 5, 2}) {
            const double advance = (300 + 100 * glyph) / 1000.0 * fontSize;
            const auto middle = static_cast<std::size_t>((pen + advance / 2) * 2);
            EXPECT_NEAR(heights[middle], BoxFont::heightOf(glyph) / 1000.0 * fontSize * 2, 2)
                << "glyph " << glyph << (cidKeyed ? " of a CID-keyed font" : "");
            pen += advance;
        }
        EXPECT_NEAR(pen - 50, width, 0.01);
    }
}

TEST(EmbeddedFontTest, AGlyphStandsForOneTextInTheWholeDocument)
{
    QPDF document;
    document.emptyPDF();
    drawing::TextShaper shaper;
    const auto face = shaper.shape(u"a"_s, {u"Liberation Sans"_s, false, false})->runs.front().face;
    NewObjects objects(document, false);
    SharedCodings codings;
    EmbeddedFont font(objects, codings, face);
    EXPECT_TRUE(font.use(5, QString()));
    EXPECT_TRUE(font.use(5, u"a"_s)) << "a glyph that stood for nothing can still be named";
    EXPECT_TRUE(font.use(5, u"a"_s));
    EXPECT_FALSE(font.use(5, u"b"_s));
    EXPECT_FALSE(font.use(5, QString()));
    EXPECT_TRUE(font.use(6, u"b"_s));
}

} // namespace
} // namespace quillfern::pdf
