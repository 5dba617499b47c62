// Everything in a document besides the content of its pages has to survive stamping, and a failed job must
// not damage files.

#include "batch/PdfProcessing.h"
#include "platform/pdf/PdfPageCount.h"
#include "support/PdfBuilder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <unistd.h>

namespace quillfern {
namespace {

QString sample(const QString& name)
{
    return qEnvironmentVariable("QUILLFERN_SOURCE_DIR") + u"/samples/"_s + name;
}

/// One section of qpdf's JSON description of a document.
QJsonValue described(const QString& pdf, const QString& section)
{
    const QByteArray json = toolOutput("qpdf --json=1", {u"--json-key="_s + section, pdf});
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
            if (item.key() != "object"_L1) result.insert(item.key(), withoutObjectNumbers(*item));
        return result;
    }
    const QString text = value.toString();
    return text.endsWith(" R"_L1) ? QJsonValue(u"ref"_s) : value;
}

class CarryOver : public PdfProcessing
{
  protected:
    QString stampSample(const QString& name)
    {
        number.stamps.clear();
        addStamp(u"Stamp {0}"_s, MarginAnchor::BottomMiddle);
        return process(readFile(sample(name)));
    }
};

TEST_F(CarryOver, KeepsOutlinesLabelsFormsAndAttachments)
{
    const Rows<const char*, QStringList> cases = {
        {"contract.pdf", {u"outlines"_s}},
        {"form.pdf", {u"acroform"_s}},
        {"report.pdf", {u"pagelabels"_s, u"attachments"_s, u"outlines"_s}},
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
            EXPECT_EQ(toolOutput("pdfinfo", {QString::fromLatin1(what), output}),
                      toolOutput("pdfinfo", {QString::fromLatin1(what), source}))
                << name << ' ' << what;
    }
}

TEST_F(CarryOver, NamesItselfAsCreatorAndKeepsTheRest)
{
    const auto info = [](const QString& pdf) {
        QMap<QByteArray, QByteArray> entries;
        for (const QByteArray& line : toolOutput("pdfinfo", {pdf}).split('\n'))
            entries.insert(line.left(line.indexOf(':')), line.mid(line.indexOf(':') + 1).trimmed());
        return entries;
    };
    const auto before = info(sample(u"contract.pdf"_s));
    const QString output = stampSample(u"contract.pdf"_s);
    const auto after = info(output);
    EXPECT_EQ(after.value("Creator"), QByteArray("Quillfern"));
    for (const QByteArray& key : {QByteArray("Title"), QByteArray("Author"), QByteArray("Pages"),
                                  QByteArray("Tagged"), QByteArray("Page size"), QByteArray("CreationDate")})
        EXPECT_EQ(after.value(key), before.value(key)) << key.toStdString();
    EXPECT_FALSE(before.value("Title").isEmpty());
    const QByteArray xmp = toolOutput("pdfinfo -meta", {output});
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
    PdfBuilder pdf = onePage("/MediaBox[0 0 300 300]", "", "/Metadata 4 0 R");
    pdf.addStream(xmp, "/Type/Metadata/Subtype/XML");
    addStamp(u"Archive"_s, MarginAnchor::TopLeft);
    auto& stamp = static_cast<TextStamp&>(*number.stamps[0]);
    stamp.font.fontColor = QColor(200, 10, 10);
    const auto meta = [](const QString& path) { return toolOutput("pdfinfo -meta", {path}); };
    QString output = process(pdf.build());
    EXPECT_TRUE(meta(output).contains("pdfaid:part>1<"));
    EXPECT_TRUE(meta(output).contains("CreatorTool>Quillfern<"));
    const QByteArray plain = plainObjects(output);
    EXPECT_TRUE(plain.contains("/CalRGB")) << "no plain RGB without an output intent";
    EXPECT_TRUE(plain.contains("/CIDSet"));
    stamp.textOpacity = 40;
    output = process(pdf.build());
    EXPECT_FALSE(meta(output).contains("pdfaid:part"));
    EXPECT_TRUE(meta(output).contains("CreatorTool>Quillfern<"));
}

TEST_F(CarryOver, TheMarksAreArtifactsAndTheTagsStay)
{
    PdfBuilder pdf = onePage("/MediaBox[0 0 300 300]/StructParents 0/Contents 4 0 R"
                             "/Resources<</Font<</F1 7 0 R>>>>",
                             "", "/MarkInfo<</Marked true>>/StructTreeRoot 5 0 R");
    pdf.addStream("/P <</MCID 0>> BDC " + showWord("Tagged", 50, 100) + " EMC");
    pdf.add("<</Type/StructTreeRoot/K 6 0 R/ParentTree<</Nums[0[6 0 R]]>>>>");
    pdf.add("<</Type/StructElem/S/P/P 5 0 R/Pg 3 0 R/K 0>>");
    pdf.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    addStamp();
    const QString output = process(pdf.build());
    const QByteArray structure = toolOutput("pdfinfo -struct-text", {output});
    EXPECT_TRUE(structure.contains("Tagged"));
    EXPECT_FALSE(structure.contains("Stamp")) << "no part of what is read aloud";
    EXPECT_TRUE(pdfText(output, 1).contains(u"Stamp"_s));
    const QByteArray plain = plainObjects(output);
    EXPECT_TRUE(plain.contains("/Artifact<</Type/Pagination>>BDC"));
}

TEST_F(CarryOver, BlankedPagesKeepTheirBoxAndLoseTheirFieldsAndLinks)
{
    number.setPageRange(PageRange::EvenPages);
    const QString output = stampSample(u"form.pdf"_s);
    EXPECT_TRUE(qpdfAccepts(output));
    const auto pages = pdfWords(output);
    const auto original = pdfWords(sample(u"form.pdf"_s));
    ASSERT_EQ(pages.size(), original.size());
    EXPECT_TRUE(pages[0].words.empty());
    EXPECT_EQ(pages[0].width, original[0].width);
    EXPECT_GT(pages[1].words.size(), original[1].words.size());
    const auto fieldsOn = [](const QString& path, int page) {
        int count = 0;
        for (const QJsonValue field : described(path, u"acroform"_s).toObject()[u"fields"_s].toArray())
            if (field.toObject()[u"pageposfrom1"_s].toInt() == page) ++count;
        return count;
    };
    EXPECT_GT(fieldsOn(sample(u"form.pdf"_s), 1), 0);
    EXPECT_EQ(fieldsOn(output, 1), 0);
    EXPECT_EQ(fieldsOn(output, 2), fieldsOn(sample(u"form.pdf"_s), 2));
}

TEST_F(CarryOver, ASignatureIsMentionedAndGoesWithItsPage)
{
    addStamp();
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

    // certified, flagged: afterwards
    const Rows<QByteArray, PageRange, bool, bool> cases = {{both, PageRange::AllPages, true, true},
                                                           {both, PageRange::OddPages, true, true},
                                                           {both, PageRange::EvenPages, false, true},
                                                           {first, PageRange::EvenPages, false, false}};
    for (const auto& [document, stamped, certified, flagged] : cases) {
        number.setPageRange(stamped);
        const QString source = scratch.write(u"signed.pdf"_s, document);
        const FileOutcome outcome = stamp(source, scratch.path(u"stamped.pdf"_s));
        ASSERT_TRUE(outcome.remark);
        EXPECT_EQ(outcome.remark->logged, u"The document's digital signature no longer holds."_s);
        const QByteArray plain = plainObjects(scratch.path(u"stamped.pdf"_s));
        EXPECT_EQ(plain.contains("/DocMDP"), certified);
        EXPECT_EQ(plain.contains("/SigFlags"), flagged);
        EXPECT_TRUE(outcome.breaksSignature && outcome.isWarning() && !outcome.isFault());
        refusesSigned = true;
        EXPECT_EQ(stamp(source, scratch.path(u"stamped.pdf"_s)).status, FileStatus::Failed);
        refusesSigned = false;
    }
    EXPECT_FALSE(stamp(scratch.write(u"plain.pdf"_s, numberedPdf(1)), scratch.path(u"stamped.pdf"_s)).remark);
}

TEST_F(CarryOver, StreamsAndObjectStreamsStayAsTheyAre)
{
    const QString plain = stampSample(u"scan.pdf"_s);
    const auto images = [](const QString& path) {
        return toolOutput("pdfimages -list", {path}).count("jpeg");
    };
    EXPECT_EQ(images(plain), images(sample(u"scan.pdf"_s))) << "a picture is not coded again";
    EXPECT_NEAR(static_cast<double>(QFileInfo(plain).size()),
                static_cast<double>(QFileInfo(sample(u"scan.pdf"_s)).size()), 12'000);
    const QString packed = stampSample(u"report.pdf"_s);
    EXPECT_TRUE(readFile(packed).contains("/ObjStm"));
    EXPECT_LT(QFileInfo(packed).size(), QFileInfo(sample(u"report.pdf"_s)).size() + 15'000);
    for (int page = 1; page <= 12; ++page)
        EXPECT_TRUE(pdfText(packed, page).contains(u"Stamp %1"_s.arg(page)));
}

TEST_F(CarryOver, InPlaceIsToldByTheFileAndNotByItsPath)
{
    ASSERT_TRUE(QDir().mkpath(scratch.path(u"in"_s)));
    ASSERT_TRUE(QFile::link(scratch.path(u"in"_s), scratch.path(u"linked"_s)));
    const Rows<const char*, bool, const char*> cases = {{"the same path", true, "in"},
                                                        {"without a backup", false, "in"},
                                                        {"a linked folder", true, "linked"},
                                                        {"a way round", true, "in/../linked/."}};
    addStamp();
    const QByteArray pdf = numberedPdf(2);
    for (const auto& [what, hasBackup, folder] : cases) {
        const QString source = scratch.write(u"in/doc.pdf"_s, pdf);
        const QString backup = scratch.write(u"in/doc.pdf.bak"_s, "an older backup");
        number.setIsBackupFile(hasBackup);
        const QString target = scratch.path(QString::fromLatin1(folder)) + u"/doc.pdf"_s;
        EXPECT_EQ(stamp(source, target).status, FileStatus::Created) << what;
        EXPECT_TRUE(pdfText(source, 2).contains(u"Stamp"_s)) << what;
        EXPECT_TRUE(pdfText(source, 2).contains(u"Body2"_s)) << what;
        EXPECT_EQ(readFile(backup), hasBackup ? pdf : QByteArray("an older backup")) << what;
        EXPECT_EQ(QDir(scratch.path(u"in"_s)).entryList(QDir::Files | QDir::Hidden).size(), 2)
            << what << ": nothing else is left behind";
    }
}

TEST_F(CarryOver, AFailureLeavesTheSourceAndNoHalfFile)
{
    addStamp();
    number.setIsBackupFile(true);
    const QByteArray pdf = numberedPdf(2);
    const QString source = scratch.write(u"in/doc.pdf"_s, pdf);
    // A folder that is not empty has the backup's name: no backup can be made, so the file is not processed
    // in place.
    scratch.write(u"in/doc.pdf.bak/kept.txt"_s, "kept");
    EXPECT_EQ(stamp(source, source).status, FileStatus::Failed);
    EXPECT_EQ(readFile(source), pdf);
    EXPECT_EQ(stamp(scratch.path(u"gone.pdf"_s), source).status, FileStatus::Failed);
    EXPECT_EQ(readFile(source), pdf);
    const FileOutcome outcome = stamp(source, scratch.path(u"no/such/folder/doc.pdf"_s));
    EXPECT_EQ(outcome.status, FileStatus::Failed);
    EXPECT_TRUE(outcome.remark);
}

TEST_F(CarryOver, APageWhoseParentIsMissingKeepsWhatItInherits)
{
    addStamp();
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
        EXPECT_TRUE(page.contains(u"Body"_s) && page.contains(u"Stamp"_s)) << deep;
        EXPECT_EQ(page.width, 300) << deep;
    }
}

TEST_F(CarryOver, DataThatClaimToBeEndlessAreRefused)
{
    // Blanks, compressed twice: a few kilobytes that become a gigabyte.
    QByteArray many = qCompress(QByteArray(1 << 20, ' ').repeated(1000), 9).mid(4);
    const QByteArray twice = qCompress(many, 9).mid(4);
    PdfBuilder pdf = onePage("/MediaBox[0 0 9 9]/Contents 4 0 R");
    pdf.addStream(twice, "/Filter[/FlateDecode/FlateDecode]");
    addStamp();
    const QString output = process(pdf.build(), false);
    EXPECT_FALSE(QFileInfo::exists(output));
}

TEST_F(CarryOver, AFullDiskFailsCleanly)
{
    // Filling a small file system would need the superuser's rights; a limit of the file size makes the same
    // write fail.
    addStamp();
    const QString source = scratch.write(u"in/doc.pdf"_s, numberedPdf(400));
    const QString runner = qEnvironmentVariable("QUILLFERN_BIN_DIR") + u"/quillfern-run"_s;
    QDir().mkpath(scratch.path(u"out"_s));
    const ToolResult result =
        runTool("sh -c", {u"ulimit -f 40; XDG_DATA_HOME=\"$3\" exec \"$0\" --output "
                          "\"$1\" --text '{0}' \"$2\""_s,
                          runner, scratch.path(u"out"_s), source, scratch.path(u"data"_s)});
    EXPECT_EQ(result.exitCode, 1) << result.out.toStdString() << result.err.toStdString();
    EXPECT_TRUE(result.out.contains("Failed")) << result.out.toStdString();
    EXPECT_TRUE(result.out.contains("cannot be written")) << result.out.toStdString();
    EXPECT_TRUE(QDir(scratch.path(u"out"_s)).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

} // namespace
} // namespace quillfern
