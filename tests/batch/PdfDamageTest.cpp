// A damaged document comes out with every page that other readers show, or it does not come out at all.

#include "batch/PdfProcessing.h"
#include "platform/pdf/PdfPageCount.h"
#include "support/PdfBuilder.h"

namespace quillfern {
namespace {

/// Fits into 64 bits; with nines instead it does not.
const QByteArray longNumber(19, '1');
const QByteArray tooLongNumber(19, '9');

/// Two pages, "Body1" and "Body2"; the second page and its content have the entries.
QByteArray twoPages(const QByteArray& pageEntries, const QByteArray& streamEntries = {})
{
    PdfBuilder pdf;
    pdf.add("<</Type/Catalog/Pages 2 0 R>>");
    pdf.add(
        "<</Type/Pages/Count 2/Kids[3 0 R 4 0 R]/MediaBox[0 0 300 400]/Resources<</Font<</F1 5 0 R>>>>>>");
    pdf.add("<</Type/Page/Parent 2 0 R/Contents 6 0 R>>");
    pdf.add("<</Type/Page/Parent 2 0 R/Contents 7 0 R" + pageEntries + ">>");
    pdf.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    pdf.addStream(showWord("Body1", 50, 60));
    pdf.addStream(showWord("Body2", 50, 60), streamEntries);
    return pdf.build();
}

class Damage : public PdfProcessing
{
  protected:
    void SetUp() override { addStamp(); }

    /// The document as qpdf writes it with these options.
    QByteArray rewritten(const QByteArray& pdf, QStringList options) const
    {
        const QString source = scratch.write(u"sound.pdf"_s, pdf);
        const QString target = scratch.path(u"rewritten.pdf"_s);
        runTool(u"qpdf"_s, options << source << target);
        return readFile(target);
    }

    void expectBothPages(const char* what, const QByteArray& damaged)
    {
        const QString output = process(damaged);
        ASSERT_TRUE(QFileInfo::exists(output)) << what;
        EXPECT_TRUE(qpdfAccepts(output)) << what;
        EXPECT_EQ(pdf::pdfPageCount(asPath(scratch.path(u"in/doc.pdf"_s))), 2) << what;
        const auto pages = pdfWords(output);
        ASSERT_EQ(pages.size(), 2U) << what;
        for (int page : {1, 2}) {
            EXPECT_TRUE(pages.at(page - 1).contains(u"Body%1"_s.arg(page))) << what << page;
            EXPECT_TRUE(pages.at(page - 1).contains(u"Stamp"_s)) << what << page;
        }
        QFile::remove(output);
    }
};

TEST_F(Damage, NoPageIsLostWithAnObjectThatTheLibraryCannotRead)
{
    const QByteArray withLongNumber = twoPages("/PieceInfo<</X " + longNumber + ">>");
    const auto tooLong = [](QByteArray pdf) { return pdf.replace(longNumber, tooLongNumber); };
    const QByteArray packed =
        rewritten(withLongNumber, {u"--object-streams=generate"_s, u"--stream-data=uncompress"_s});
    const QByteArray locked =
        rewritten(withLongNumber, {u"--encrypt"_s, QString(), u"o"_s, u"256"_s, u"--"_s});
    ASSERT_TRUE(packed.contains(longNumber) && locked.contains(longNumber));
    // What of an object stream can be decoded holds the pages; a wrong checksum spoils the whole for qpdf.
    QByteArray wrongChecksum = rewritten(twoPages({}), {u"--object-streams=generate"_s});
    const qsizetype endOfPacked = wrongChecksum.indexOf("\nendstream", wrongChecksum.indexOf("/ObjStm"));
    ASSERT_GT(endOfPacked, 0);
    for (qsizetype i = endOfPacked - 5; i < endOfPacked; ++i)
        wrongChecksum[i] = static_cast<char>(~wrongChecksum[i]);
    const QByteArray sound = twoPages({});
    const qsizetype lastStream = sound.indexOf("endstream", sound.indexOf("Body2"));
    const QByteArray nested = QByteArray(600, '[') + QByteArray(600, ']');
    const Rows<const char*, QByteArray> cases = {
        {"a number beyond all range", tooLong(withLongNumber)},
        {"such a number in a stream's dictionary", twoPages({}, "/X " + tooLongNumber)},
        {"such a number in an object stream", tooLong(packed)},
        {"such a number in an encrypted file", tooLong(locked)},
        {"such a number behind a foreign beginning", "some mail header\n\n" + tooLong(withLongNumber)},
        {"such a number, and no references", tooLong(withLongNumber).replace("startxref", "nothing")},
        {"arrays nested too deeply", twoPages("/X" + nested)},
        {"dictionaries nested too deeply",
         twoPages("/X" + QByteArray("<</X").repeated(600) + " 0" + QByteArray(">>").repeated(600))},
        {"words that are none", twoPages("/X[a b c d e f g h i]")},
        {"braces", twoPages("/X{{{{{{{{}}}}}}}}")},
        {"a dictionary without an end", twoPages("/X<</Y 1")},
        {"an object stream with a wrong checksum", wrongChecksum},
        {"object streams, and no references", QByteArray(packed).replace("startxref", "nothing")},
        {"lengths that are wrong", QByteArray(sound).replace("/Length ", "/Length 9")},
        {"an end within the last stream", sound.left(lastStream)},
        {"an end behind the last object", sound.left(sound.indexOf("endobj", lastStream) + 6)},
    };
    for (const auto& [what, damaged] : cases)
        expectBothPages(what, damaged);
}

TEST_F(Damage, EntriesThatReferToDamagedObjectsStay)
{
    for (const int others : {0, 6000}) { // a small file is read whole, of a large one the pages first
        PdfBuilder pdf = onePage("/Annots 4 0 R", "/MediaBox[0 0 300 400]", "/Outlines 6 0 R");
        pdf.add("[ 5 0 R");
        pdf.add("<</Type/Annot/Subtype/Text/Rect[0 0 9 9]/Contents(A note)>>");
        pdf.add("<</Type/Outlines/Count 0");
        pdf.add("<</Title(My title)/Author(Me)");
        for (int i = 0; i < others; ++i)
            pdf.add("[]");
        const QString output = process(pdf.build("/Info 7 0 R"));
        EXPECT_TRUE(qpdfAccepts(output));
        const QByteArray plain = plainObjects(output);
        for (const char* word : {"/Outlines", "(My title)", "(Me)", "/Annots", "(A note)"})
            EXPECT_TRUE(plain.contains(word)) << word << ' ' << others;
    }
}

TEST_F(Damage, AReferenceToNothingDoesNotBecomeOneToAStamp)
{
    PdfBuilder pdf = onePage("/PieceInfo<</A[5 0 R 6 0 R 7 0 R 8 0 R]>>", "/MediaBox[0 0 300 400]");
    const QString output = process(pdf.build());
    const QByteArray plain = plainObjects(output);
    EXPECT_EQ(plain.count("\nnull\nendobj"), 4) << plain.constData();
}

TEST_F(Damage, EncryptedContentIsNotTakenForPlainContent)
{
    for (const char* streams : {"--object-streams=disable", "--object-streams=generate"}) {
        QByteArray locked = rewritten(twoPages({}), {QString::fromLatin1(streams), u"--encrypt"_s, QString(),
                                                     u"o"_s, u"256"_s, u"--"_s});
        locked.replace("startxref", "nothing").replace("trailer", "nothing");
        EXPECT_FALSE(QFileInfo::exists(process(locked))) << streams;
    }
}

TEST_F(Damage, PagesAreFoundHoweverBadTheirTree)
{
    const QByteArray sound = twoPages({});
    // The fifth line of the table is the second page's.
    const QByteArray pageReference =
        QByteArray::number(sound.indexOf("4 0 obj")).rightJustified(10, '0') + " 00000 n";
    EXPECT_TRUE(sound.contains(pageReference));
    const auto with = [&](const QByteArray& before, const QByteArray& after) {
        EXPECT_TRUE(sound.contains(before));
        return QByteArray(sound).replace(before, after + QByteArray(before.size() - after.size(), ' '));
    };
    PdfBuilder deep; // qpdf walks a tree by recursion
    deep.add("<</Type/Catalog/Pages 2 0 R>>");
    constexpr int levels = 30'000;
    for (int level = 0; level < levels; ++level)
        deep.add("<</Type/Pages/Count 2/Kids[" + PdfBuilder::ref(level + 3) + "]>>");
    const QByteArray font = "/Resources<</Font<</F1 " + PdfBuilder::ref(levels + 7) + ">>>>";
    const QByteArray box = "/MediaBox[0 0 300 400]";
    deep.add("<</Type/Pages/Count 2/Kids[" + PdfBuilder::ref(levels + 3) + " " + PdfBuilder::ref(levels + 4) +
             "]" + font + box + ">>");
    deep.add("<</Type/Page/Contents " + PdfBuilder::ref(levels + 5) + ">>");
    deep.add("<</Type/Page/Contents " + PdfBuilder::ref(levels + 6) + ">>");
    deep.addStream(showWord("Body1", 50, 60));
    deep.addStream(showWord("Body2", 50, 60));
    deep.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");

    const Rows<const char*, QByteArray> cases = {
        {"a tree that leads into itself", QByteArray(sound).replace("[3 0 R 4 0 R]", "[3 0 R 2 0 R 4 0 R]")},
        {"no types",
         QByteArray(sound).replace("/Type/Page", "/Kind/Page").replace("/Type/Catalog", "/Kind/Catalog")},
        {"wrong parents", with("/Type/Page/Parent 2 0 R", "/Type/Page/Parent 5 0 R")},
        {"a catalogue that names a page", with("/Catalog/Pages 2 0 R", "/Catalog/Pages 3 0 R")},
        {"a catalogue without pages", with("/Catalog/Pages 2 0 R", "/Catalog")},
        {"a trailer that names no catalogue", with("/Root 1 0 R", "/Root 6 0 R")},
        {"no catalogue at all", with("/Type/Catalog/Pages 2 0 R", "/Nothing 0")},
        {"a page that is not among the references",
         QByteArray(sound).replace(pageReference, "0000000000 65535 f")},
        {"an identifier that is none", QByteArray(sound).replace("/Root 1 0 R", "/Root 1 0 R/ID[<41>null]")},
        {"no trailer", sound.left(sound.indexOf("xref\n"))},
        {"a tree as deep as no other", deep.build()},
    };
    for (const auto& [what, damaged] : cases)
        expectBothPages(what, damaged);
}

TEST_F(Damage, PagesThatAreNotThereAreMentioned)
{
    const QByteArray sound = twoPages({});
    for (const char* kids : {"[3 0 R 4 0 R 99 0 R]", "[3 0 R null 4 0 R]", "[3 0 R (page) 4 0 R]"}) {
        const QString source =
            scratch.write(u"in/doc.pdf"_s, QByteArray(sound).replace("[3 0 R 4 0 R]", kids));
        QDir().mkpath(scratch.path(u"out"_s));
        const QString target = scratch.path(u"out/doc.pdf"_s);
        const FileOutcome outcome = stamp(source, target);
        EXPECT_EQ(outcome.status, FileStatus::Created) << kids;
        EXPECT_EQ(outcome.pages, 2) << kids;
        ASSERT_TRUE(outcome.remark) << kids;
        EXPECT_TRUE(outcome.remark->logged.contains(u"pages missing in it: 1."_s)) << kids;
        EXPECT_TRUE(outcome.isIncomplete) << kids;
        // Without a backup nothing would be left of what another program may still find in the file.
        const QByteArray before = readFile(source);
        EXPECT_EQ(stamp(source, source).status, FileStatus::Failed) << kids;
        EXPECT_TRUE(readFile(source) == before) << kids;
        number.setIsBackupFile(true);
        EXPECT_EQ(stamp(source, source).status, FileStatus::Created) << kids;
        number.setIsBackupFile(false);
        EXPECT_TRUE(pdfText(target, 2).contains(u"Body2"_s)) << kids;
    }
}

TEST_F(Damage, APageNamedSeveralTimesIsSeveralPages)
{
    number.stamps = {textStamp(u"Page{0}"_s, MarginAnchor::TopLeft)};
    const auto repeated = [](int times) {
        return QByteArray(twoPages({}))
            .replace("[3 0 R 4 0 R]", "[" + QByteArray("3 0 R ").repeated(times) + "4 0 R]");
    };
    const QString output = process(repeated(3));
    for (int page = 1; page <= 3; ++page) {
        EXPECT_TRUE(pdfText(output, page).contains(u"Page%1"_s.arg(page)));
        EXPECT_TRUE(pdfText(output, page).contains(u"Body1"_s));
    }
    // Each would need memory of its own; a file of a few bytes could ask for any amount.
    const FileOutcome outcome =
        stamp(scratch.write(u"in/doc.pdf"_s, repeated(100'000)), scratch.path(u"out/many.pdf"_s));
    EXPECT_TRUE(outcome.remark && outcome.remark->logged.contains(u"again and again"_s));
    EXPECT_FALSE(QFileInfo::exists(scratch.path(u"out/many.pdf"_s)));
    // Branches that lead to the same branches, and to no page.
    PdfBuilder pdf;
    pdf.add("<</Type/Catalog/Pages 2 0 R>>");
    for (int level = 0; level < 60; ++level)
        pdf.add("<</Type/Pages/Kids[" + (PdfBuilder::ref(level + 3) + ' ').repeated(2) + "]>>");
    pdf.add("<</Type/Pages/Kids[]>>");
    EXPECT_EQ(pdf::pdfPageCount(asPath(scratch.write(u"bush.pdf"_s, pdf.build()))), 0);
}

TEST_F(Damage, AMediaBoxThatIsNoneIsTheOneThatViewersShow)
{
    const auto size = [](const QString& path) {
        for (const QByteArray& line : toolOutput("pdfinfo", {path}).split('\n'))
            if (line.startsWith("Page size:")) return line.split('(').front().trimmed().toStdString();
        return std::string();
    };
    for (const char* box : {"/MediaBox[0 0 99999999999999999999 1]", "/MediaBox[0 0 612]",
                            "/MediaBox(0 0 9 9)", "/MediaBox null", "/MediaBox[0 0 /W /H]",
                            "/MediaBox[500 600 0 0]", "/MediaBox 7", "/MediaBox<</X 1>>"}) {
        for (const char* above : {"", "/MediaBox[0 0 300 400]"}) {
            const QString output = process(onePage(box, above).build());
            EXPECT_EQ(size(output), size(scratch.path(u"in/doc.pdf"_s))) << box << " below " << above;
        }
    }
}

TEST_F(Damage, DamagedContentKeepsItsPlaceInTheStructure)
{
    PdfBuilder pdf;
    pdf.add("<</Type/Catalog/Pages 2 0 R/StructTreeRoot 3 0 R/MarkInfo<</Marked true>>>>");
    pdf.add("<</Type/Pages/Count 1/Kids[4 0 R]/MediaBox[0 0 300 400]>>");
    pdf.add("<</Type/StructTreeRoot/K 5 0 R/ParentTree<</Nums[7[6 0 R 6 0 R 8 0 R]]>>>>");
    pdf.add("<</Type/Page/Parent 2 0 R/StructParents 7/Contents 10 0 R/Resources<</Font<</F1 9 0 R>>>>>>");
    pdf.add("<</Type/StructElem/S/Document/P 3 0 R/K[6 0 R 8 0 R]>>");
    pdf.add("<</Type/StructElem/S/P/P 5 0 R/Pg 4 0 R/K[0 1]>>");
    pdf.reserve();
    pdf.add("<</Type/StructElem/S/P/P 5 0 R/K<</Type/MCR/Pg 4 0 R/MCID 2>>>>");
    pdf.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    const auto marked = [](int id, const QByteArray& word) {
        return "/P <</MCID " + QByteArray::number(id) + ">> BDC " + showWord(word, 50, 300 - 20.0 * id) +
               "EMC\n";
    };
    const QByteArray content = marked(0, "First") + marked(1, "Second") + marked(2, "Third");
    const int stream = pdf.addStream(content);
    const auto structure = [](const QString& path) { return toolOutput("pdfinfo -struct-text", {path}); };
    const QByteArray sound = structure(process(pdf.build()));
    EXPECT_TRUE(sound.contains("First") && sound.contains("Third")) << sound.toStdString();
    const QByteArray damaged = content + "nosuchword";
    pdf.set(stream,
            "<</Length " + QByteArray::number(damaged.size()) + ">>\nstream\n" + damaged + "\nendstream");
    const QString output = process(pdf.build());
    EXPECT_EQ(structure(output).toStdString(), sound.toStdString());
    EXPECT_TRUE(qpdfAccepts(output));
    const QByteArray plain = plainObjects(output);
    EXPECT_EQ(plain.count("/StructParents"), 1);
    EXPECT_EQ(plain.count("/Stm "), 3);
}

TEST_F(Damage, ContentThatCannotBeDecodedDoesNotHideTheStamp)
{
    QByteArray words;
    for (int i = 0; i < 200; ++i)
        words += showWord("Word" + QByteArray::number(i * 7919), 50, 400 - 1.5 * i);
    const QByteArray deflated = qCompress(words, 9).mid(4);
    QByteArray wrong = deflated;
    for (qsizetype i = wrong.size() / 2; i < wrong.size(); ++i)
        wrong[i] = '\xFF';
    const Rows<const char*, QByteArray, QByteArray, bool> cases = {
        {"cut off", deflated.left(deflated.size() / 2), "/Filter/FlateDecode", true},
        {"wrong from the middle on", wrong, "/Filter/FlateDecode", true},
        {"a filter that nobody knows", words, "/Filter/NoSuchDecode", false},
        {"two filters, the second damaged", "xyz" + deflated.toHex() + ">",
         "/Filter[/ASCIIHexDecode/FlateDecode]", false},
    };
    for (const auto& [what, data, entries, readable] : cases) {
        PdfBuilder pdf = onePage("/Contents 4 0 R/Resources<</Font<</F1 5 0 R>>>>", "/MediaBox[0 0 300 500]");
        pdf.addStream(data, entries);
        pdf.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
        const QString text = pdfText(process(pdf.build()), 1);
        EXPECT_TRUE(text.contains(u"Stamp"_s)) << what;
        EXPECT_EQ(text.contains(u"Word7919"_s), readable) << what;
    }
}

TEST_F(Damage, WhatIsNoDocumentIsLeftAlone)
{
    const QByteArray sound = numberedPdf(3);
    for (const QByteArray& hopeless :
         {QByteArray("no PDF at all"), QByteArray(), sound.left(200), QByteArray(5000, '\0')}) {
        scratch.write(u"out/doc.pdf"_s, "what an earlier run left");
        const QString output = process(hopeless);
        EXPECT_FALSE(QFileInfo::exists(output));
        EXPECT_EQ(readFile(scratch.path(u"in/doc.pdf"_s)), hopeless);
    }
}

TEST_F(Damage, PageTreesThatLieAreCountedRight)
{
    QByteArray wrong = numberedPdf(5);
    wrong.replace("/Count 5", "/Count 9");
    EXPECT_EQ(pdf::pdfPageCount(asPath(scratch.write(u"count.pdf"_s, wrong))), 5);
    const QByteArray plain = plainObjects(process(wrong));
    EXPECT_TRUE(plain.contains("/Count 5") && !plain.contains("/Count 9")) << "the lie is not passed on";
    wrong.replace("/Count 9", "/Count -3");
    EXPECT_EQ(pdf::pdfPageCount(asPath(scratch.write(u"count.pdf"_s, wrong))), 5);
}

} // namespace
} // namespace quillfern
