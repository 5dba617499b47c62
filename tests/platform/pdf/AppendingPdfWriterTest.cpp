#include "platform/drawing/TextShaper.h"
#include "platform/pdf/PdfDocument.h"
#include "platform/pdf/PdfWriter.h"
#include "platform/store/AtomicFile.h"
#include "support/PdfBuilder.h"

#include <functional>

namespace quillfern::pdf {
namespace {

constexpr int pageCount = 3;

struct Marks
{
    QString word = u"Stamp"_s;
    double opacity = 1;
    bool blanksFirstPage = false;
    bool dropsLastPage = false; ///< after all were stamped
};

/// Puts a word on every page of a document.
void stampAll(const QString& source, const QString& target, const Marks& marks = {})
{
    drawing::TextShaper shaper;
    const auto document = PdfDocument::open(asPath(source));
    document->setCreator(u"Quillfern"_s);
    for (int i = 0; i < document->pageCount(); ++i) {
        if (marks.blanksFirstPage && i == 0) {
            document->blankPage(i);
            continue;
        }
        const auto page = document->stampPage(i, shaper);
        page->over().translate(50, 50);
        drawing::TextPaint paint;
        paint.fontSize = 12;
        paint.fill.setAlphaF(static_cast<float>(marks.opacity));
        page->over().drawText(*shaper.shape(marks.word, drawing::FontSpec()), paint);
        page->finish();
    }
    if (marks.dropsLastPage) document->keepFirstPages(document->pageCount() - 1);
    store::AtomicFile file(asPath(target));
    document->save(AppendingPdfWriter(), file);
    file.commit();
}

void expectWords(const QString& path, const QStringList& stamps)
{
    EXPECT_TRUE(qpdfAccepts(path));
    const std::vector<PdfTextPage> pages = pdfWords(path);
    ASSERT_EQ(pages.size(), std::size_t{pageCount});
    for (int i = 0; i < pageCount; ++i) {
        const QByteArray byMupdf = runTool("mutool draw -F txt", {path, QString::number(i + 1)}).out;
        QStringList expected = stamps;
        expected << u"Body%1"_s.arg(i + 1);
        for (const QString& word : expected) {
            EXPECT_TRUE(pages[static_cast<std::size_t>(i)].contains(word)) << i << word.toStdString();
            EXPECT_TRUE(byMupdf.contains(word.toUtf8())) << i << word.toStdString();
        }
    }
}

/// A document whose last cross-reference table leads to a stream as well, for readers of both kinds.
QByteArray hybrid(QByteArray bytes)
{
    const QByteArray start = bytes.mid(bytes.lastIndexOf("startxref") + 10).split('\n').first();
    const QByteArray entries = bytes.mid(bytes.lastIndexOf("/Root")).split('>').first();
    const QByteArray stream = QByteArray::number(bytes.size());
    const QByteArray row = QByteArray("\x01", 1) +
                           QByteArray::fromHex(QByteArray::number(bytes.size(), 16).rightJustified(8, '0')) +
                           QByteArray("\0", 1);
    bytes += "90 0 obj\n<</Type/XRef/W[1 4 1]/Index[90 1]/Size 91/Length 6" + entries + ">>\nstream\n" + row +
             "\nendstream\nendobj\n";
    const QByteArray table = QByteArray::number(bytes.size());
    return bytes + "xref\n0 0\ntrailer <</Size 91" + entries + "/Prev " + start + "/XRefStm " + stream +
           ">>\nstartxref\n" + table + "\n%%EOF\n";
}

class Appending : public testing::Test
{
  protected:
    QString throughQpdf(const QStringList& options)
    {
        const QString plain = scratch.write(u"plain.pdf"_s, numberedPdf(pageCount));
        const QString made = scratch.path(u"source.pdf"_s);
        EXPECT_EQ(runTool(u"qpdf"_s, QStringList(options) << plain << made).exitCode, 0);
        return made;
    }
    QString written(const QByteArray& bytes) { return scratch.write(u"source.pdf"_s, bytes); }

    Scratch scratch;
    const QString target = scratch.path(u"out.pdf"_s);
};

TEST_F(Appending, KeepsTheBytesOfTheSourceWhereTheFormatAllowsThat)
{
    const QStringList objectStreams{u"--object-streams=generate"_s};
    const Rows<const char*, std::function<QString()>> sources = {
        {"table", [&] { return written(numberedPdf(pageCount)); }},
        {"no line end", [&] { return written(numberedPdf(pageCount).trimmed()); }},
        {"hybrid", [&] { return written(hybrid(numberedPdf(pageCount))); }},
        {"object streams", [&] { return throughQpdf(objectStreams); }},
        {"linearized", [&] { return throughQpdf({u"--linearize"_s}); }},
        {"linearized, object streams",
         [&] { return throughQpdf(QStringList(objectStreams) << u"--linearize"_s); }},
    };
    for (const auto& [what, make] : sources) {
        SCOPED_TRACE(what);
        const QString source = make();
        stampAll(source, target);
        const QByteArray before = readFile(source);
        const QByteArray after = readFile(target);
        EXPECT_TRUE(after.startsWith(before));
        EXPECT_EQ(after.mid(before.size()).contains("/ObjStm"), before.contains("/ObjStm"));
        expectWords(target, {u"Stamp"_s});
        stampAll(source, target);
        EXPECT_TRUE(readFile(target) == after) << "the same changes give the same bytes";
    }
}

TEST_F(Appending, WritesAnewWhatCannotBeContinued)
{
    QByteArray damaged = numberedPdf(pageCount);
    damaged.replace("startxref\n", "startxref\n9");
    const Rows<const char*, std::function<QString()>, Marks> sources = {
        {"bytes before the header", [&] { return written("mail\r\n" + numberedPdf(pageCount)); }, {}},
        {"no cross-reference", [&] { return written(damaged); }, {}},
        {"encrypted",
         [&] {
             return throughQpdf({u"--encrypt"_s, {}, u"owner"_s, u"256"_s, u"--"_s});
         },
         {}},
        {"a page to be blanked", [&] { return written(numberedPdf(pageCount)); }, {{}, 1, true}},
    };
    for (const auto& [what, make, marks] : sources) {
        SCOPED_TRACE(what);
        const QString source = make();
        stampAll(source, target, marks);
        EXPECT_FALSE(readFile(target).contains(readFile(source)));
        EXPECT_TRUE(qpdfAccepts(target));
        if (marks.blanksFirstPage)
            EXPECT_FALSE(readFile(target).contains("Body1")) << "the content is gone from the file";
        else
            expectWords(target, {u"Stamp"_s});
    }
}

TEST_F(Appending, WritesAnewWhatHasToBeOnceThePagesAreStamped)
{
    PdfBuilder tagged;
    tagged.add("<</Type/Catalog/Pages 2 0 R/StructTreeRoot<</Type/StructTreeRoot/K 5 0 R/ParentTree<<"
               "/Nums[0[5 0 R]]>>>>>>");
    tagged.add(
        "<</Type/Pages/Count 2/Kids[3 0 R 4 0 R]/MediaBox[0 0 612 792]/Resources<</Font<</F1 8 0 R>>>>>>");
    tagged.add("<</Type/Page/Parent 2 0 R/Contents 6 0 R>>");
    tagged.add("<</Type/Page/Parent 2 0 R/Contents 7 0 R/StructParents 0>>");
    tagged.add("<</Type/StructElem/S/P/P 9 0 R/Pg 4 0 R/K 0>>");
    tagged.addStream(showWord("Body1", 72, 400));
    tagged.addStream("/P<</MCID 0>>BDC " + showWord("Body2", 72, 400) + "EMC BT (open");
    tagged.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    tagged.add("<<>>");
    const QByteArray damaged = tagged.build();
    for (const auto& [bytes, marks] : {std::pair(numberedPdf(pageCount), Marks{{}, 1, false, true}),
                                       std::pair(damaged, Marks{u"Stamp"_s})}) {
        const QString source = written(bytes);
        stampAll(source, target, marks);
        const QByteArray once = readFile(target);
        EXPECT_FALSE(once.contains(bytes));
        EXPECT_TRUE(qpdfAccepts(target));
        const auto pages = pdfWords(target);
        ASSERT_EQ(pages.size(), 2U);
        for (std::size_t i = 0; i < pages.size(); ++i)
            EXPECT_TRUE(pages[i].contains(u"Body%1"_s.arg(i + 1))) << i;
        EXPECT_EQ(pages[1].contains(u"Stamp"_s), !marks.dropsLastPage);
        stampAll(source, target, marks);
        EXPECT_TRUE(readFile(target) == once) << "the same changes give the same bytes";
    }
}

TEST_F(Appending, PacksLargePagesWhereEveryReaderFindsThem)
{
    PdfBuilder builder;
    builder.add("<</Type/Catalog/Pages 2 0 R>>");
    builder.add("<</Type/Pages/Count 3/Kids[3 0 R 4 0 R 5 0 R]/MediaBox[0 0 612 792]>>");
    for (int page = 1; page <= pageCount; ++page)
        builder.reserve();
    const int font = builder.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    for (int page = 1; page <= pageCount; ++page) {
        QByteArray pieces;
        for (int i = 0; i < 60; ++i)
            pieces += PdfBuilder::ref(builder.addStream(
                          i == 0 ? showWord("Body" + QByteArray::number(page), 72, 400) : "% nothing")) +
                      ' ';
        builder.set(2 + page, "<</Type/Page/Parent 2 0 R/Resources<</Font<</F1 " + PdfBuilder::ref(font) +
                                  ">>>>/Contents[" + pieces + "]>>");
    }
    // Poppler rebuilds the cross-reference of a document that refers to nothing, without object streams.
    for (const auto& [version, entries, packs] : {std::tuple("%PDF-1.4", "", false),
                                                  {"%PDF-1.5", "", true},
                                                  {"%PDF-1.5", "/Outlines 999 0 R", false},
                                                  {"%PDF-1.5", "/Outlines 3 1 R", false}}) {
        builder.set(1, QByteArray("<</Type/Catalog/Pages 2 0 R") + entries + ">>");
        const QString source = written(builder.build().replace(0, 8, version));
        stampAll(source, target);
        EXPECT_EQ(readFile(target).contains("/XRefStm"), packs);
        expectWords(target, {u"Stamp"_s});
        const QString twice = scratch.path(u"twice.pdf"_s);
        stampAll(target, twice, {u"Again"_s});
        EXPECT_TRUE(readFile(twice).startsWith(readFile(target)));
        expectWords(twice, {u"Stamp"_s, u"Again"_s});
    }
}

TEST_F(Appending, GoesOnTenTimes)
{
    for (const bool streams : {false, true}) {
        QString source =
            streams ? throughQpdf({u"--object-streams=generate"_s}) : written(numberedPdf(pageCount));
        QStringList words;
        for (int round = 0; round < 10; ++round) {
            words << u"Round%1"_s.arg(round);
            const QString next = scratch.path(u"%1-%2.pdf"_s.arg(streams).arg(round));
            stampAll(source, next, {words.last()});
            EXPECT_TRUE(readFile(next).startsWith(readFile(source)));
            source = next;
        }
        expectWords(source, words);
    }
}

TEST_F(Appending, RaisesTheVersionOnlyForWhatNeedsIt)
{
    QByteArray old = numberedPdf(pageCount);
    old.replace(0, 8, "%PDF-1.3");
    const QString source = written(old);
    stampAll(source, target);
    EXPECT_FALSE(readFile(target).contains("/Version"));
    stampAll(source, target, {u"Stamp"_s, 0.5});
    EXPECT_TRUE(readFile(target).contains("/Version /1.4"));
    expectWords(target, {u"Stamp"_s});
}

/// A document with a signature over all its bytes, made with a key of the test's own.
QByteArray signedPdf(const Scratch& scratch)
{
    constexpr int room = 8192;
    const QByteArray gap = '<' + QByteArray(room, '0') + '>';
    const QByteArray range = "/ByteRange[0 1111111111 2222222222 3333333333]";
    PdfBuilder builder;
    builder.add("<</Type/Catalog/Pages 2 0 R/AcroForm<</SigFlags 3/Fields[4 0 R]>>>>");
    builder.add("<</Type/Pages/Count 1/Kids[3 0 R]>>");
    builder.add("<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]/Annots[4 0 R]>>");
    builder.add("<</Type/Annot/Subtype/Widget/FT/Sig/T(Signature)/Rect[0 0 0 0]/P 3 0 R/V 5 0 R>>");
    builder.add("<</Type/Sig/Filter/Adobe.PPKLite/SubFilter/adbe.pkcs7.detached" + range + "/Contents" + gap +
                ">>");
    QByteArray bytes = builder.build();
    const qsizetype first = bytes.indexOf(gap);
    const qsizetype second = first + gap.size();
    QByteArray stated = QByteArray("/ByteRange[0 ") + QByteArray::number(first) + ' ' +
                        QByteArray::number(second) + ' ' + QByteArray::number(bytes.size() - second) + ']';
    bytes.replace(bytes.indexOf(range), range.size(), stated.leftJustified(range.size()));
    const QString covered = scratch.write(u"covered"_s, bytes.first(first) + bytes.sliced(second));
    const QString key = scratch.path(u"key.pem"_s);
    const QString certificate = scratch.path(u"certificate.pem"_s);
    runTool("openssl req -x509 -newkey rsa:2048 -nodes -subj /CN=Test -days 9 -keyout",
            {key, u"-out"_s, certificate});
    const ToolResult made = runTool("openssl cms -sign -binary -md sha256 -outform DER -in",
                                    {covered, u"-signer"_s, certificate, u"-inkey"_s, key});
    EXPECT_EQ(made.exitCode, 0) << made.err.toStdString();
    const QByteArray hex = made.out.toHex();
    return bytes.replace(first + 1, hex.size(), hex);
}

TEST_F(Appending, LeavesTheSignedRevisionOfASignedDocumentValid)
{
    const QString source = written(signedPdf(scratch));
    const auto verdict = [](const QString& path) { return runTool("pdfsig -nocert", {path}).out; };
    ASSERT_TRUE(verdict(source).contains("Signature is Valid")) << verdict(source).toStdString();
    stampAll(source, target);
    EXPECT_TRUE(verdict(target).contains("Signature is Valid")) << verdict(target).toStdString();
    EXPECT_TRUE(pdfWords(target).at(0).contains(u"Stamp"_s));
}

} // namespace
} // namespace quillfern::pdf
