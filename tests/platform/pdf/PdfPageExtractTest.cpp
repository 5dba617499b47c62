#include "platform/pdf/PdfPageExtract.h"

#include "platform/system/Failure.h"
#include "support/PdfBuilder.h"
#include "support/Tools.h"

#include <QFileInfo>

namespace quillfern::pdf {
namespace {

/// A document of 12 pages in a tree of three levels; everything but the content is inherited from its root.
QByteArray deepTree()
{
    PdfBuilder pdf;
    const int catalogue = pdf.add("");
    const int root = pdf.reserve();
    pdf.set(catalogue, "<</Type/Catalog/Pages " + PdfBuilder::ref(root) + ">>");
    const int font = pdf.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    int page = 0;
    QByteArray branches;
    for (int branch = 0; branch < 2; ++branch) {
        const int node = pdf.reserve();
        QByteArray twigs;
        for (int twig = 0; twig < 3; ++twig) {
            const int inner = pdf.reserve();
            QByteArray leaves;
            for (int leaf = 0; leaf < 2; ++leaf) {
                const int content = pdf.addStream(showWord("Body" + QByteArray::number(++page), 20, 30));
                leaves += PdfBuilder::ref(pdf.add("<</Type/Page/Parent " + PdfBuilder::ref(inner) +
                                                  "/Contents " + PdfBuilder::ref(content) + ">>")) +
                          " ";
            }
            pdf.set(inner,
                    "<</Type/Pages/Count 2/Parent " + PdfBuilder::ref(node) + "/Kids[" + leaves + "]>>");
            twigs += PdfBuilder::ref(inner) + " ";
        }
        pdf.set(node, "<</Type/Pages/Count 6/Parent " + PdfBuilder::ref(root) + "/Kids[" + twigs + "]>>");
        branches += PdfBuilder::ref(node) + " ";
    }
    pdf.set(root, "<</Type/Pages/Count 12/Kids[" + branches +
                      "]/MediaBox[0 0 200 100]/Rotate 90/Resources<</Font<</F1 " + PdfBuilder::ref(font) +
                      ">>>>>>");
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
    const int catalogue = pdf.add("");
    const int pages = pdf.reserve();
    const int page = pdf.reserve();
    const int other = pdf.reserve();
    const int font = pdf.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    const QByteArray form =
        "/Type/XObject/Subtype/Form/BBox[0 0 100 20]/Resources<</Font<</F1 " + PdfBuilder::ref(font) + ">>>>";
    const int field = pdf.reserve();
    const int stamp = pdf.addStream(showWord("Filled", 2, 4), form);
    const int hidden = pdf.addStream(showWord("Hidden", 2, 4), form);
    const int bulk = pdf.addStream(QByteArray(500'000, 'x'));
    pdf.set(catalogue, "<</Type/Catalog/Pages " + PdfBuilder::ref(pages) + "/AcroForm<</Fields[" +
                           PdfBuilder::ref(field) + "]>>>>");
    pdf.set(pages,
            "<</Type/Pages/Count 2/Kids[" + PdfBuilder::ref(page) + " " + PdfBuilder::ref(other) + "]>>");
    pdf.set(field, "<</FT/Tx/T(name)/V(Filled)/Bulk " + PdfBuilder::ref(bulk) + "/Kids[]>>");
    const QByteArray rect = "/Type/Annot/Rect[50 50 150 70]";
    pdf.set(page, "<</Type/Page/Parent " + PdfBuilder::ref(pages) + "/MediaBox[0 0 200 100]/Annots[<<" +
                      rect + "/Subtype/Widget/F 4/Parent " + PdfBuilder::ref(field) + "/AP<</N " +
                      PdfBuilder::ref(stamp) + ">>>><<" + rect + "/Subtype/Stamp/F 2/AP<</N " +
                      PdfBuilder::ref(hidden) + ">>>>" + "<<" + rect + "/Subtype/Link/Dest[" +
                      PdfBuilder::ref(other) + "/Fit]>>]>>");
    pdf.set(other, "<</Type/Page/Parent " + PdfBuilder::ref(pages) + "/MediaBox[0 0 200 100]/Contents " +
                       PdfBuilder::ref(bulk) + ">>");
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
        const QString path = scratch.write(QStringLiteral("damaged.pdf"), bytes);
        for (const int index : {0, 3, 11}) {
            const QString single =
                scratch.write(QStringLiteral("single.pdf"), extractPdfPage(asPath(path), index).document);
            EXPECT_EQ(pdfText(single, 1), QStringLiteral("Body%1").arg(index + 1));
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
