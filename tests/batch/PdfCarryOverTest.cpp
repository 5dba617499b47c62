// Everything in a document besides the content of its pages has to survive stamping, and a failed job must
// not damage files.

#include "batch/PdfProcessing.h"
#include "platform/pdf/PdfPageCount.h"
#include "support/PdfBuilder.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>
#include <unistd.h>

namespace quillfern {
namespace {

QString sample(const QString& name)
{
    return qEnvironmentVariable("QUILLFERN_SOURCE_DIR") + QStringLiteral("/samples/") + name;
}

/// One section of qpdf's JSON description of a document.
QJsonValue described(const QString& pdf, const QString& section)
{
    const QByteArray json = toolOutput(
        QStringLiteral("qpdf"), {QStringLiteral("--json=1"), QStringLiteral("--json-key=") + section, pdf});
    return QJsonDocument::fromJson(json).object().value(section);
}

/// Object numbers change whenever a document is written; the objects themselves must not.
QJsonValue withoutObjectNumbers(const QJsonValue& value)
{
    if (value.isArray()) {
        QJsonArray result;
        for (const QJsonValue item : value.toArray())
            result.append(withoutObjectNumbers(item));
        return result;
    }
    if (value.isObject()) {
        QJsonObject result;
        const QJsonObject object = value.toObject();
        for (auto item = object.begin(); item != object.end(); ++item)
            if (item.key() != QLatin1String("object")) result.insert(item.key(), withoutObjectNumbers(*item));
        return result;
    }
    const QString text = value.toString();
    return text.endsWith(QLatin1String(" R")) ? QJsonValue(QStringLiteral("ref")) : value;
}

class CarryOver : public PdfProcessing
{
  protected:
    QString stampSample(const QString& name)
    {
        number.stamps.clear();
        addStamp(QStringLiteral("Stamp {0}"), MarginAnchor::BottomMiddle);
        return process(readFile(sample(name)));
    }
};

TEST_F(CarryOver, KeepsOutlinesLabelsFormsAndAttachments)
{
    const std::vector<std::pair<const char*, QStringList>> cases = {
        {"contract.pdf", {QStringLiteral("outlines")}},
        {"form.pdf", {QStringLiteral("acroform")}},
        {"report.pdf",
         {QStringLiteral("pagelabels"), QStringLiteral("attachments"), QStringLiteral("outlines")}},
    };
    for (const auto& [name, sections] : cases) {
        const QString output = stampSample(QString::fromLatin1(name));
        EXPECT_TRUE(qpdfAccepts(output)) << name;
        for (const QString& section : sections) {
            const QJsonValue before =
                withoutObjectNumbers(described(sample(QString::fromLatin1(name)), section));
            const QJsonValue after = withoutObjectNumbers(described(output, section));
            const bool empty = before.isArray() ? before.toArray().isEmpty() : before.toObject().isEmpty();
            EXPECT_FALSE(empty) << name << " has no " << section.toStdString();
            EXPECT_TRUE(before == after) << name << ": " << section.toStdString();
        }
    }
}

TEST_F(CarryOver, KeepsLinksAndDestinations)
{
    for (const char* name : {"form.pdf", "report.pdf", "contract.pdf"}) {
        const QString source = sample(QString::fromLatin1(name));
        const QString output = stampSample(QString::fromLatin1(name));
        for (const char* what : {"-url", "-dests"})
            EXPECT_EQ(toolOutput(QStringLiteral("pdfinfo"), {QString::fromLatin1(what), output}),
                      toolOutput(QStringLiteral("pdfinfo"), {QString::fromLatin1(what), source}))
                << name << ' ' << what;
    }
}

TEST_F(CarryOver, NamesItselfAsCreatorAndKeepsTheRest)
{
    const auto info = [](const QString& pdf) {
        QMap<QByteArray, QByteArray> entries;
        for (const QByteArray& line : toolOutput(QStringLiteral("pdfinfo"), {pdf}).split('\n'))
            entries.insert(line.left(line.indexOf(':')), line.mid(line.indexOf(':') + 1).trimmed());
        return entries;
    };
    const auto before = info(sample(QStringLiteral("contract.pdf")));
    const QString output = stampSample(QStringLiteral("contract.pdf"));
    const auto after = info(output);
    EXPECT_EQ(after.value("Creator"), QByteArray("Quillfern"));
    for (const QByteArray& key : {QByteArray("Title"), QByteArray("Author"), QByteArray("Pages"),
                                  QByteArray("Tagged"), QByteArray("Page size"), QByteArray("CreationDate")})
        EXPECT_EQ(after.value(key), before.value(key)) << key.toStdString();
    EXPECT_FALSE(before.value("Title").isEmpty());
    const QByteArray xmp = toolOutput(QStringLiteral("pdfinfo"), {QStringLiteral("-meta"), output});
    EXPECT_TRUE(xmp.contains("CreatorTool>Quillfern<") || xmp.contains("CreatorTool=\"Quillfern\""))
        << xmp.toStdString();
}

TEST_F(CarryOver, AnArchivalClaimIsKeptUntilAStampNeedsTransparency)
{
    const QByteArray xmp =
        "<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta xmlns:x='adobe:ns:meta/'>"
        "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description rdf:about='' "
        "xmlns:pdfaid='http://www.aiim.org/pdfa/ns/id/'><pdfaid:part>1</pdfaid:part>"
        "<pdfaid:conformance>B</pdfaid:conformance></rdf:Description></rdf:RDF></x:xmpmeta>";
    PdfBuilder pdf;
    pdf.add("<</Type/Catalog/Pages 2 0 R/Metadata 4 0 R>>");
    pdf.add("<</Type/Pages/Count 1/Kids[3 0 R]>>");
    pdf.add("<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 300]>>");
    pdf.addStream(xmp, "/Type/Metadata/Subtype/XML");
    addStamp(QStringLiteral("Archive"), MarginAnchor::TopLeft);
    auto& stamp = static_cast<TextStamp&>(*number.stamps[0]);
    stamp.font.fontColor = QColor(200, 10, 10);
    const auto meta = [](const QString& path) {
        return toolOutput(QStringLiteral("pdfinfo"), {QStringLiteral("-meta"), path});
    };
    QString output = process(pdf.build());
    EXPECT_TRUE(meta(output).contains("pdfaid:part>1<"));
    EXPECT_TRUE(meta(output).contains("CreatorTool>Quillfern<"));
    const QByteArray plain =
        toolOutput(QStringLiteral("qpdf"), {QStringLiteral("--qdf"), output, QStringLiteral("-")});
    EXPECT_TRUE(plain.contains("/CalRGB")) << "no plain RGB without an output intent";
    EXPECT_TRUE(plain.contains("/CIDSet"));
    stamp.textOpacity = 40;
    output = process(pdf.build());
    EXPECT_FALSE(meta(output).contains("pdfaid:part"));
    EXPECT_TRUE(meta(output).contains("CreatorTool>Quillfern<"));
}

TEST_F(CarryOver, TheMarksAreArtifactsAndTheTagsStay)
{
    PdfBuilder pdf;
    pdf.add("<</Type/Catalog/Pages 2 0 R/MarkInfo<</Marked true>>/StructTreeRoot 5 0 R>>");
    pdf.add("<</Type/Pages/Count 1/Kids[3 0 R]>>");
    pdf.add("<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 300]/StructParents 0/Contents 4 0 R"
            "/Resources<</Font<</F1 7 0 R>>>>>>");
    pdf.addStream("/P <</MCID 0>> BDC " + showWord("Tagged", 50, 100) + " EMC");
    pdf.add("<</Type/StructTreeRoot/K 6 0 R/ParentTree<</Nums[0[6 0 R]]>>>>");
    pdf.add("<</Type/StructElem/S/P/P 5 0 R/Pg 3 0 R/K 0>>");
    pdf.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    addStamp(QStringLiteral("Stamp"), MarginAnchor::TopLeft);
    const QString output = process(pdf.build());
    const QByteArray structure =
        toolOutput(QStringLiteral("pdfinfo"), {QStringLiteral("-struct-text"), output});
    EXPECT_TRUE(structure.contains("Tagged"));
    EXPECT_FALSE(structure.contains("Stamp")) << "no part of what is read aloud";
    EXPECT_TRUE(pdfText(output, 1).contains(QStringLiteral("Stamp")));
    const QByteArray plain =
        toolOutput(QStringLiteral("qpdf"), {QStringLiteral("--qdf"), output, QStringLiteral("-")});
    EXPECT_TRUE(plain.contains("/Artifact<</Type/Pagination>>BDC"));
}

TEST_F(CarryOver, BlankedPagesKeepTheirBoxAndLoseTheirFieldsAndLinks)
{
    number.setPageRange(PageRange::EvenPages);
    const QString output = stampSample(QStringLiteral("form.pdf"));
    EXPECT_TRUE(qpdfAccepts(output));
    const auto pages = pdfWords(output);
    const auto original = pdfWords(sample(QStringLiteral("form.pdf")));
    ASSERT_EQ(pages.size(), original.size());
    EXPECT_TRUE(pages[0].words.empty());
    EXPECT_EQ(pages[0].width, original[0].width);
    EXPECT_GT(pages[1].words.size(), original[1].words.size());
    const auto fieldsOn = [](const QString& path, int page) {
        int count = 0;
        for (const QJsonValue field :
             described(path, QStringLiteral("acroform")).toObject()[QStringLiteral("fields")].toArray())
            if (field.toObject()[QStringLiteral("pageposfrom1")].toInt() == page) ++count;
        return count;
    };
    EXPECT_GT(fieldsOn(sample(QStringLiteral("form.pdf")), 1), 0);
    EXPECT_EQ(fieldsOn(output, 1), 0);
    EXPECT_EQ(fieldsOn(output, 2), fieldsOn(sample(QStringLiteral("form.pdf")), 2));
}

TEST_F(CarryOver, BlankedAndStampedPagesAreOfOneSize)
{
    number.setPageRange(PageRange::OddPages);
    addStamp(QStringLiteral("Stamp"), MarginAnchor::TopLeft);
    const TestPage page = {showWord("Body", 72, 300), "/MediaBox[0 0 500 400]/CropBox[50 50 450 350]"};
    const auto pages = pdfWords(process(simplePdf({page, page})));
    ASSERT_EQ(pages.size(), 2U);
    EXPECT_TRUE(pages[1].words.empty());
    for (const PdfTextPage& shown : pages)
        EXPECT_EQ(QSizeF(shown.width, shown.height), QSizeF(500, 400));
}

TEST_F(CarryOver, ASignatureIsMentionedAndGoesWithItsPage)
{
    addStamp(QStringLiteral("Stamp"), MarginAnchor::TopLeft);
    PdfBuilder pdf;
    pdf.add(
        "<</Type/Catalog/Pages 2 0 R/Perms<</DocMDP 7 0 R>>/AcroForm<</SigFlags 3/Fields[5 0 R 6 0 R]>>>>");
    pdf.add("<</Type/Pages/Count 2/Kids[3 0 R 4 0 R]/MediaBox[0 0 300 400]>>");
    pdf.add("<</Type/Page/Parent 2 0 R/Annots[5 0 R]>>");
    pdf.add("<</Type/Page/Parent 2 0 R/Annots[6 0 R]>>");
    const QByteArray widget = "<</Type/Annot/Subtype/Widget/FT/Sig/Rect[9 9 99 99]/T";
    pdf.add(widget + "(one)/V 7 0 R>>");
    const int second = pdf.add(widget + "(two)/V 8 0 R>>");
    const QByteArray signature = "<</Type/Sig/Filter/Adobe.PPKLite/ByteRange[0 9 9 9]/Contents<00>>>";
    pdf.add(signature);
    pdf.add(signature);
    const QByteArray both = pdf.build();
    pdf.set(second, widget + "(two)>>"); // not signed
    const QByteArray first = pdf.build();

    struct Case
    {
        QByteArray document;
        PageRange stamped;
        bool certified, flagged; // afterwards
    };
    const std::vector<Case> cases = {{both, PageRange::AllPages, true, true},
                                     {both, PageRange::OddPages, true, true},
                                     {both, PageRange::EvenPages, false, true},
                                     {first, PageRange::EvenPages, false, false}};
    for (const Case& c : cases) {
        number.setPageRange(c.stamped);
        const QString source = scratch.write(QStringLiteral("signed.pdf"), c.document);
        const FileOutcome outcome = stamp(source, scratch.path(QStringLiteral("stamped.pdf")));
        ASSERT_TRUE(outcome.remark);
        EXPECT_EQ(outcome.remark->logged,
                  QStringLiteral("The document's digital signature no longer holds."));
        const QByteArray plain = toolOutput(
            QStringLiteral("qpdf"),
            {QStringLiteral("--qdf"), scratch.path(QStringLiteral("stamped.pdf")), QStringLiteral("-")});
        EXPECT_EQ(plain.contains("/DocMDP"), c.certified);
        EXPECT_EQ(plain.contains("/SigFlags"), c.flagged);
        EXPECT_TRUE(outcome.breaksSignature && outcome.isWarning() && !outcome.isFault());
        refusesSigned = true;
        EXPECT_EQ(stamp(source, scratch.path(QStringLiteral("stamped.pdf"))).status, FileStatus::Failed);
        refusesSigned = false;
    }
    EXPECT_FALSE(stamp(scratch.write(QStringLiteral("plain.pdf"), numberedPdf(1)),
                       scratch.path(QStringLiteral("stamped.pdf")))
                     .remark);
}

TEST_F(CarryOver, StreamsAndObjectStreamsStayAsTheyAre)
{
    const QString plain = stampSample(QStringLiteral("scan.pdf"));
    const auto images = [](const QString& path) {
        return toolOutput(QStringLiteral("pdfimages"), {QStringLiteral("-list"), path}).count("jpeg");
    };
    EXPECT_EQ(images(plain), images(sample(QStringLiteral("scan.pdf")))) << "a picture is not coded again";
    EXPECT_NEAR(static_cast<double>(QFileInfo(plain).size()),
                static_cast<double>(QFileInfo(sample(QStringLiteral("scan.pdf"))).size()), 12'000);
    const QString packed = stampSample(QStringLiteral("report.pdf"));
    EXPECT_TRUE(readFile(packed).contains("/ObjStm"));
    EXPECT_LT(QFileInfo(packed).size(), QFileInfo(sample(QStringLiteral("report.pdf"))).size() + 15'000);
    for (int page = 1; page <= 12; ++page)
        EXPECT_TRUE(pdfText(packed, page).contains(QStringLiteral("Stamp %1").arg(page)));
}

TEST_F(CarryOver, RestrictionsStayAndPasswordsAreNotPassed)
{
    const QString source = scratch.write(QStringLiteral("plain.pdf"), numberedPdf(2));
    const QString locked = scratch.path(QStringLiteral("locked.pdf"));
    addStamp(QStringLiteral("Stamp"), MarginAnchor::TopLeft);
    for (const char* bits : {"128", "256"}) {
        runTool(QStringLiteral("qpdf"),
                {QStringLiteral("--allow-weak-crypto"), QStringLiteral("--encrypt"), QString(),
                 QStringLiteral("owner"), QString::fromLatin1(bits), QStringLiteral("--print=none"),
                 QStringLiteral("--modify=none"), QStringLiteral("--"), source, locked});
        const QString output = process(readFile(locked));
        const ToolResult shown =
            runTool(QStringLiteral("qpdf"), {QStringLiteral("--show-encryption"), output});
        EXPECT_TRUE(shown.out.contains("print low resolution: not allowed"))
            << bits << shown.out.toStdString();
        EXPECT_TRUE(pdfText(output, 2).contains(QStringLiteral("Stamp"))) << bits;
        EXPECT_TRUE(qpdfAccepts(output));
    }
    runTool(QStringLiteral("qpdf"),
            {QStringLiteral("--encrypt"), QStringLiteral("user"), QStringLiteral("owner"),
             QStringLiteral("256"), QStringLiteral("--"), source, locked});
    EXPECT_EQ(pdf::pdfPageCount(asPath(locked)), 0);
    EXPECT_TRUE(pdf::pdfOpensWith(asPath(locked), QStringLiteral("user")));
    EXPECT_FALSE(pdf::pdfOpensWith(asPath(locked), QStringLiteral("wrong")));
    const QString output = process(readFile(locked)); // reports success, as for any file that does not open
    EXPECT_FALSE(QFileInfo::exists(output));
}

TEST_F(CarryOver, DamagedFilesAreRepairedOrLeftAlone)
{
    addStamp(QStringLiteral("Stamp"), MarginAnchor::TopLeft);
    const QByteArray sound = numberedPdf(3);
    QByteArray badXref = sound;
    badXref.replace("0000000015 00000 n", "0000000999 00000 n");
    const QByteArray noXref = sound.left(sound.indexOf("xref\n")) + "trailer<</Root 1 0 R>>";
    QByteArray badLength = sound;
    badLength.replace("/Length ", "/Length 9");
    for (const QByteArray& damaged : {badXref, noXref, badLength, "some mail header\n\n" + sound}) {
        const QString output = process(damaged);
        for (int page = 1; page <= 3; ++page) {
            EXPECT_TRUE(pdfText(output, page).contains(QStringLiteral("Body%1").arg(page)));
            EXPECT_TRUE(pdfText(output, page).contains(QStringLiteral("Stamp")));
        }
    }
    for (const QByteArray& hopeless :
         {QByteArray("no PDF at all"), QByteArray(), sound.left(200), QByteArray(5000, '\0')}) {
        scratch.write(QStringLiteral("out/doc.pdf"), "what an earlier run left");
        const QString output = process(hopeless);
        EXPECT_FALSE(QFileInfo::exists(output));
        EXPECT_EQ(readFile(scratch.path(QStringLiteral("in/doc.pdf"))), hopeless);
    }
}

TEST_F(CarryOver, PageTreesThatLieAreCountedRight)
{
    QByteArray wrong = numberedPdf(5);
    wrong.replace("/Count 5", "/Count 9");
    EXPECT_EQ(pdf::pdfPageCount(asPath(scratch.write(QStringLiteral("count.pdf"), wrong))), 5);
    const QByteArray plain =
        toolOutput(QStringLiteral("qpdf"), {QStringLiteral("--qdf"), process(wrong), QStringLiteral("-")});
    EXPECT_TRUE(plain.contains("/Count 5") && !plain.contains("/Count 9")) << "the lie is not passed on";
    wrong.replace("/Count 9", "/Count -3");
    EXPECT_EQ(pdf::pdfPageCount(asPath(scratch.write(QStringLiteral("count.pdf"), wrong))), 5);
    PdfBuilder loop;
    loop.add("<</Type/Catalog/Pages 2 0 R>>");
    loop.add("<</Type/Pages/Count 2/Kids[3 0 R 2 0 R]/MediaBox[0 0 9 9]>>");
    loop.add("<</Type/Page/Parent 2 0 R>>");
    EXPECT_LE(pdf::pdfPageCount(asPath(scratch.write(QStringLiteral("loop.pdf"), loop.build()))), 2);
}

struct InPlaceCase
{
    const char* what;
    bool backup;
    const char* folder; // the output folder, relative to the scratch folder
};

TEST_F(CarryOver, InPlaceIsToldByTheFileAndNotByItsPath)
{
    ASSERT_TRUE(QDir().mkpath(scratch.path(QStringLiteral("in"))));
    ASSERT_TRUE(QFile::link(scratch.path(QStringLiteral("in")), scratch.path(QStringLiteral("linked"))));
    const std::vector<InPlaceCase> cases = {{"the same path", true, "in"},
                                            {"without a backup", false, "in"},
                                            {"a linked folder", true, "linked"},
                                            {"a way round", true, "in/../linked/."}};
    addStamp(QStringLiteral("Stamp"), MarginAnchor::TopLeft);
    const QByteArray pdf = numberedPdf(2);
    for (const InPlaceCase& c : cases) {
        const QString source = scratch.write(QStringLiteral("in/doc.pdf"), pdf);
        const QString backup = scratch.write(QStringLiteral("in/doc.pdf.bak"), "an older backup");
        number.setIsBackupFile(c.backup);
        const QString target = scratch.path(QString::fromLatin1(c.folder)) + QStringLiteral("/doc.pdf");
        EXPECT_EQ(stamp(source, target).status, FileStatus::Created) << c.what;
        EXPECT_TRUE(pdfText(source, 2).contains(QStringLiteral("Stamp"))) << c.what;
        EXPECT_TRUE(pdfText(source, 2).contains(QStringLiteral("Body2"))) << c.what;
        EXPECT_EQ(readFile(backup), c.backup ? pdf : QByteArray("an older backup")) << c.what;
        EXPECT_EQ(QDir(scratch.path(QStringLiteral("in"))).entryList(QDir::Files | QDir::Hidden).size(), 2)
            << c.what << ": nothing else is left behind";
    }
}

TEST_F(CarryOver, AFailureLeavesTheSourceAndNoHalfFile)
{
    addStamp(QStringLiteral("Stamp"), MarginAnchor::TopLeft);
    number.setIsBackupFile(true);
    const QByteArray pdf = numberedPdf(2);
    const QString source = scratch.write(QStringLiteral("in/doc.pdf"), pdf);
    // A folder that is not empty has the backup's name: no backup can be made, so the file is not processed
    // in place.
    scratch.write(QStringLiteral("in/doc.pdf.bak/kept.txt"), "kept");
    EXPECT_EQ(stamp(source, source).status, FileStatus::Failed);
    EXPECT_EQ(readFile(source), pdf);
    EXPECT_EQ(stamp(scratch.path(QStringLiteral("gone.pdf")), source).status, FileStatus::Failed);
    EXPECT_EQ(readFile(source), pdf);
    const FileOutcome outcome = stamp(source, scratch.path(QStringLiteral("no/such/folder/doc.pdf")));
    EXPECT_EQ(outcome.status, FileStatus::Failed);
    EXPECT_TRUE(outcome.remark);
}

TEST_F(CarryOver, APageWhoseParentIsMissingKeepsWhatItInherits)
{
    addStamp(QStringLiteral("Stamp"), MarginAnchor::TopLeft);
    for (const bool deep : {false, true}) {
        PdfBuilder pdf;
        pdf.add("<</Type/Catalog/Pages 2 0 R>>");
        const int tree = pdf.reserve();
        const int font = pdf.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
        const int content = pdf.addStream(showWord("Body", 50, 60));
        const QByteArray inherited =
            "/MediaBox[0 0 300 400]/Resources<</Font<</F1 " + PdfBuilder::ref(font) + ">>>>";
        int below =
            pdf.add(QByteArray("<</Type/Page/Contents ") + PdfBuilder::ref(content) + ">>"); // no parent
        for (int depth = 0; deep && depth < 60; ++depth)
            below = pdf.add("<</Type/Pages/Count 1/Kids[" + PdfBuilder::ref(below) + "]>>");
        pdf.set(tree, "<</Type/Pages/Count 1/Kids[" + PdfBuilder::ref(below) + "]" + inherited + ">>");
        const auto page = pdfWords(process(pdf.build())).at(0);
        EXPECT_TRUE(page.contains(QStringLiteral("Body")) && page.contains(QStringLiteral("Stamp"))) << deep;
        EXPECT_EQ(page.width, 300) << deep;
    }
}

TEST_F(CarryOver, ABackupIsAsPrivateAsItsSource)
{
    const QString source = scratch.write(QStringLiteral("in/doc.pdf"), numberedPdf(1));
    QFile::setPermissions(source, QFile::ReadOwner | QFile::WriteOwner);
    number.setIsBackupFile(true);
    EXPECT_EQ(stamp(source, source).status, FileStatus::Created);
    for (const QString& path : {source, source + QStringLiteral(".bak")})
        EXPECT_FALSE(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther)) << path.toStdString();
}

TEST_F(CarryOver, DataThatClaimToBeEndlessAreRefused)
{
    // Blanks, compressed twice: a few kilobytes that become a gigabyte.
    QByteArray many = qCompress(QByteArray(1 << 20, ' ').repeated(1000), 9).mid(4);
    const QByteArray twice = qCompress(many, 9).mid(4);
    PdfBuilder pdf;
    pdf.add("<</Type/Catalog/Pages 2 0 R>>");
    pdf.add("<</Type/Pages/Count 1/Kids[3 0 R]>>");
    pdf.add("<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Contents 4 0 R>>");
    pdf.addStream(twice, "/Filter[/FlateDecode/FlateDecode]");
    addStamp(QStringLiteral("Stamp"), MarginAnchor::TopLeft);
    const QString output = process(pdf.build(), false);
    EXPECT_FALSE(QFileInfo::exists(output));
}

TEST_F(CarryOver, AFullDiskFailsCleanly)
{
    // Filling a small file system would need the superuser's rights; a limit of the file size makes the same
    // write fail.
    addStamp(QStringLiteral("Stamp"), MarginAnchor::TopLeft);
    const QString source = scratch.write(QStringLiteral("in/doc.pdf"), numberedPdf(400));
    const QString runner = qEnvironmentVariable("QUILLFERN_BIN_DIR") + QStringLiteral("/quillfern-run");
    QDir().mkpath(scratch.path(QStringLiteral("out")));
    const ToolResult result =
        runTool(QStringLiteral("sh"),
                {QStringLiteral("-c"),
                 QStringLiteral("ulimit -f 40; XDG_DATA_HOME=\"$3\" exec \"$0\" --output "
                                "\"$1\" --text '{0}' \"$2\""),
                 runner, scratch.path(QStringLiteral("out")), source, scratch.path(QStringLiteral("data"))});
    EXPECT_EQ(result.exitCode, 1) << result.out.toStdString() << result.err.toStdString();
    EXPECT_TRUE(result.out.contains("Failed")) << result.out.toStdString();
    EXPECT_TRUE(result.out.contains("cannot be written")) << result.out.toStdString();
    EXPECT_TRUE(QDir(scratch.path(QStringLiteral("out"))).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

} // namespace
} // namespace quillfern
