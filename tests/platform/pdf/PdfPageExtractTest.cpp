#include "platform/pdf/PdfPageExtract.h"

#include "platform/system/Failure.h"
#include "support/PdfBuilder.h"

namespace quillfern::pdf {
namespace {

/// A document of 12 pages in a tree of three levels; everything but the content is inherited from its root.
QByteArray deepTree()
{
    PdfBuilder pdf;
    pdf.add("<</Type/Catalog/Pages 2 0 R>>");
    const int root = pdf.reserve();
    pdf.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    int pages = 0;
    const auto addKids = [&](const auto& self, int node, int depth, const QByteArray& entries) -> void {
        const int before = pages;
        QByteArray kids;
        for (int kid = 0; kid < (depth == 1 ? 3 : 2); ++kid) {
            const int number = pdf.reserve();
            const QByteArray parent = "/Parent " + PdfBuilder::ref(node);
            kids += PdfBuilder::ref(number) + ' ';
            if (depth < 2) {
                self(self, number, depth + 1, parent);
            } else {
                const int content = pdf.addStream(showWord("Body" + QByteArray::number(++pages), 20, 30));
                pdf.set(number, "<</Type/Page" + parent + "/Contents " + PdfBuilder::ref(content) + ">>");
            }
        }
        pdf.set(node, "<</Type/Pages/Count " + QByteArray::number(pages - before) + entries + "/Kids[" +
                          kids + "]>>");
    };
    addKids(addKids, root, 0, "/MediaBox[0 0 200 100]/Rotate 90/Resources<</Font<</F1 3 0 R>>>>");
    return pdf.build();
}

TEST(PdfPageExtract, TakesThePageAskedForWithWhatItInherits)
{
    const Scratch scratch;
    const QString path = scratch.write(u"tree.pdf"_s, deepTree());
    for (const int index : {0, 1, 5, 6, 11}) {
        const ExtractedPage page = extractPdfPage(asPath(path), index);
        EXPECT_EQ(page.size, QSizeF(100, 200));
        const QString single = scratch.write(u"single.pdf"_s, page.document);
        EXPECT_TRUE(qpdfAccepts(single));
        const auto pages = pdfWords(single);
        ASSERT_EQ(pages.size(), 1U);
        const auto info = runTool("pdfinfo", {single});
        EXPECT_THAT(info.out.toStdString(), testing::ContainsRegex("Page size: +200 x 100 pts"));
        EXPECT_THAT(info.out.toStdString(), testing::ContainsRegex("Page rot: +90"));
        EXPECT_TRUE(pages[0].contains(u"Body%1"_s.arg(index + 1))) << index;
    }
    EXPECT_THROW(static_cast<void>(extractPdfPage(asPath(path), 12)), Failure);
    EXPECT_THROW(static_cast<void>(extractPdfPage(asPath(path), -1)), Failure);
}

TEST(PdfPageExtract, ShowsTheWholeMediaBoxInPoints)
{
    const Rows<QByteArray, QSizeF> cases = {
        {"/MediaBox[0 0 612 792]", {612, 792}},
        {"/MediaBox[0 0 612 792]/CropBox[100 100 200 200]", {612, 792}},
        {"/MediaBox[-50 20 150 120]/Rotate 270", {100, 200}},
        {"/MediaBox[0 0 100 50]/UserUnit 2.5", {250, 125}},
    };
    const Scratch scratch;
    for (const auto& [entries, size] : cases) {
        const QString path = scratch.write(u"box.pdf"_s, simplePdf({{showWord("Body", 30, 30), entries}}));
        const ExtractedPage page = extractPdfPage(asPath(path), 0);
        EXPECT_EQ(page.size, size) << entries.constData();
        const auto info = runTool("pdfinfo -box", {scratch.write(u"one.pdf"_s, page.document)});
        EXPECT_THAT(info.out.toStdString(), testing::HasSubstr("Pages:           1")) << entries.constData();
    }
}

TEST(PdfPageExtract, AnnotationsBecomeContentAndBringNothingElseAlong)
{
    PdfBuilder pdf;
    pdf.add("<</Type/Catalog/Pages 2 0 R/AcroForm<</Fields[6 0 R]>>>>");
    pdf.add("<</Type/Pages/Count 2/Kids[3 0 R 4 0 R]/MediaBox[0 0 200 100]>>");
    const QByteArray annotation = "<</Type/Annot/Rect[50 50 150 70]";
    pdf.add("<</Type/Page/Parent 2 0 R/Annots[" + annotation +
            "/Subtype/Widget/F 4/Parent 6 0 R/AP<</N 7 0 R>>>>" + annotation +
            "/Subtype/Stamp/F 2/AP<</N 8 0 R>>>>" + annotation + "/Subtype/Link/Dest[4 0 R/Fit]>>]>>");
    pdf.add("<</Type/Page/Parent 2 0 R/Contents 9 0 R>>");
    pdf.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    pdf.add("<</FT/Tx/T(name)/V(Filled)/Bulk 9 0 R/Kids[]>>");
    const QByteArray form = "/Type/XObject/Subtype/Form/BBox[0 0 100 20]/Resources<</Font<</F1 5 0 R>>>>";
    pdf.addStream(showWord("Filled", 2, 4), form);
    pdf.addStream(showWord("Hidden", 2, 4), form);
    pdf.addStream(QByteArray(500'000, 'x'));
    const Scratch scratch;
    const ExtractedPage single = extractPdfPage(asPath(scratch.write(u"form.pdf"_s, pdf.build())), 0);
    const QString path = scratch.write(u"single.pdf"_s, single.document);
    EXPECT_TRUE(qpdfAccepts(path));
    EXPECT_EQ(pdfText(path, 1), u"Filled"_s);
    EXPECT_LT(single.document.size(), 10'000) << "it carries what the page does not show";
}

TEST(PdfPageExtract, ShowsThePageThatAJobStamps)
{
    const Scratch scratch;
    QByteArray lyingCounts = deepTree();
    lyingCounts.replace("/Count 2/Parent", "/Count 1/Parent");
    QByteArray noTrailer = deepTree();
    noTrailer.truncate(noTrailer.indexOf("xref\n"));
    for (const QByteArray& bytes : {lyingCounts, noTrailer}) {
        const QString path = scratch.write(u"damaged.pdf"_s, bytes);
        for (const int index : {0, 3, 11}) {
            const QString single =
                scratch.write(u"single.pdf"_s, extractPdfPage(asPath(path), index).document);
            EXPECT_EQ(pdfText(single, 1), u"Body%1"_s.arg(index + 1));
        }
    }
}

TEST(PdfPageExtract, BrokenTreesEndInAPageOrAWord)
{
    const Scratch scratch;
    // A page tree with a cycle, and one whose kid is no page.
    const QByteArray page = "<</Type/Page/Parent 2 0 R/MediaBox[0 0 200 100]>>";
    for (const QByteArray& tree : {QByteArray("<</Type/Pages/Count 3/Kids[2 0 R]>>"),
                                   QByteArray("<</Type/Pages/Count 1/Kids[null]>>")}) {
        PdfBuilder pdf;
        pdf.add("<</Type/Catalog/Pages 2 0 R>>");
        pdf.add(tree);
        pdf.add(page);
        const QString path = scratch.write(u"broken.pdf"_s, pdf.build());
        EXPECT_THROW(static_cast<void>(extractPdfPage(asPath(path), 0)), Failure) << tree.constData();
    }
    PdfBuilder lying;
    lying.add("<</Type/Catalog/Pages 2 0 R>>");
    lying.add("<</Type/Pages/Count 99/Kids[3 0 R]>>");
    lying.add(page);
    const QString path = scratch.write(u"lying.pdf"_s, lying.build());
    EXPECT_EQ(extractPdfPage(asPath(path), 0).size, QSizeF(200, 100));
    EXPECT_THROW(static_cast<void>(extractPdfPage(asPath(path), 50)), Failure);
    EXPECT_THROW(static_cast<void>(extractPdfPage(asPath(scratch.write(u"no.pdf"_s, "hello")), 0)), Failure);
}

} // namespace
} // namespace quillfern::pdf
