#include "batch/JobCheck.h"

#include "batch/PdfProcessing.h"
#include "platform/system/Cancellation.h"
#include "stamps/ImageStamp.h"
#include "support/PdfBuilder.h"

#include <QDir>
#include <QFile>
#include <QImage>

namespace quillfern {
namespace {

const char* const signedForm = "/AcroForm<</Fields[<</FT/Sig/T(s)/V<</Type/Sig>>>>]>>";

QByteArray archivalPdf()
{
    PdfBuilder pdf = onePage("/MediaBox[0 0 612 792]", {}, "/Metadata 4 0 R");
    pdf.addStream("<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
                  "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description rdf:about='' "
                  "xmlns:pdfaid='http://www.aiim.org/pdfa/ns/id/' pdfaid:part='1'/></rdf:RDF></x:xmpmeta>",
                  "/Type/Metadata/Subtype/XML");
    return pdf.build();
}

class Check : public testing::Test
{
  protected:
    void SetUp() override
    {
        QDir().mkpath(scratch.path(u"out"_s));
        scratch.write(u"in/a.pdf"_s, numberedPdf(3));
        scratch.write(u"in/b.pdf"_s, numberedPdf(1));
        scratch.write(u"other/a.pdf"_s, numberedPdf(1));
        scratch.write(u"in/signed.pdf"_s, onePage("/MediaBox[0 0 612 792]", {}, signedForm).build());
        scratch.write(u"in/certified.pdf"_s,
                      onePage("/MediaBox[0 0 612 792]", {}, "/Perms<</DocMDP<</Type/Sig>>>>").build());
        scratch.write(u"in/archival.pdf"_s, archivalPdf());
        scratch.write(u"in/broken.pdf"_s, "%PDF-1.4 no more");
        toolOutput("qpdf --encrypt secret owner 256 --",
                   {scratch.path(u"in/b.pdf"_s), scratch.path(u"in/locked.pdf"_s)});
        QFile::link(scratch.path(u"in/a.pdf"_s), scratch.path(u"in/alias.pdf"_s));
        QImage scan(2480, 3508, QImage::Format_Mono);
        scan.setDotsPerMeterX(11811);
        scan.setDotsPerMeterY(11811);
        scan.fill(1);
        scan.save(scratch.path(u"in/scan.png"_s));
        settings.outputFolderPath = scratch.path(u"out"_s);
        stamp = textStamp(u"Nr{0}"_s, MarginAnchor::BottomMiddle);
        settings.number->stamps.push_back(stamp);
    }

    Job plan(const char* names)
    {
        std::vector<FileItem> files;
        for (const QString& name : words(names)) {
            files.push_back(*FileItem::initWithURL(asPath(scratch.path(name))));
            files.back().setPdfOpenPassword(QString());
            if (name == u"in/b.pdf"_s) files.back().setIsSelected(isChecked);
        }
        return planJob(files, settings);
    }
    /// "severity id files", one for each finding.
    std::string found(const char* names, CheckRules rules = {})
    {
        QStringList lines;
        for (const JobFinding& finding : JobCheck(plan(names), rules).findings())
            lines.append(
                u"%1 %2 %3"_s
                    .arg(QLatin1String(severityId(finding.severity)), QLatin1String(findingId(finding.kind)))
                    .arg(finding.files.size()));
        return lines.join(u'|').toStdString();
    }
    void option(auto JobOptions::*field, auto value)
    {
        JobOptions options = settings.number->options();
        options.*field = value;
        settings.number->setOptions(options);
    }

    const Scratch scratch;
    Settings settings;
    std::shared_ptr<TextStamp> stamp;
    bool isChecked = true;
};

TEST_F(Check, FindsWhatPeopleShouldKnow)
{
    using Given = std::function<void()>;
    const Given nothing = [] {};
    const Rows<Given, const char*, const char*> cases = {
        {nothing, "in/a.pdf in/b.pdf", ""},
        {[&] { stamp->setIsSelected(false); }, "in/a.pdf", "ask no-stamp 0"},
        {[&] { stamp->number.numberFormat = QString(); }, "in/a.pdf", "ask empty-stamp 0"},
        {[&] { settings.number->stamps.push_back(std::make_shared<ImageStamp>()); }, "in/a.pdf",
         "ask empty-stamp 0"},
        {[&] { stamp->font.fontName = u"No Such Font"_s; }, "in/a.pdf", "note font-not-installed 0"},
        {[&] { settings.outputFolderPath = scratch.path(u"in"_s); }, "in/a.pdf in/b.pdf other/a.pdf",
         "ask originals-overwritten 2|ask same-name 2|ask overwrites-listed-file 1"},
        {[&] {
             settings.outputFolderPath = scratch.path(u"in"_s);
             settings.number->setIsBackupFile(true);
         },
         "in/a.pdf", "note originals-backed-up 1"},
        {[&] { scratch.write(u"out/a.pdf"_s, "earlier"); }, "in/a.pdf in/b.pdf", "ask copies-replaced 1"},
        {[&] {
             scratch.write(u"out/a.pdf"_s, "earlier");
             option(&JobOptions::existing, ExistingCopies::Number);
         },
         "in/a.pdf other/a.pdf", ""},
        {nothing, "in/a.pdf other/a.pdf", "ask same-name 2"},
        {[&] { option(&JobOptions::keepFolders, true); }, "in/a.pdf other/a.pdf", ""},
        {nothing, "in/a.pdf in/alias.pdf", "ask listed-twice 2"},
        {[&] { isChecked = false; }, "in/a.pdf in/b.pdf", "ask unchecked-stamped 1"},
        {[&] { settings.number->setPageRange(PageRange::OddPages); }, "in/a.pdf in/b.pdf",
         "ask pages-blanked 1"},
        {[&] {
             settings.number->setPageRange(PageRange::OddPages);
             option(&JobOptions::keepOtherPages, true);
         },
         "in/a.pdf", ""},
        {nothing, "in/locked.pdf in/broken.pdf", "ask needs-password 1|ask no-readable-pages 1"},
        {[&] {
             option(&JobOptions::usePasswords, true);
             option(&JobOptions::password, u"secret"_s);
         },
         "in/locked.pdf", ""},
        {nothing, "in/signed.pdf in/certified.pdf", "ask signed 1|ask certified 1"},
        {nothing, "in/archival.pdf", ""},
        {[&] { stamp->textOpacity = 50; }, "in/archival.pdf in/a.pdf", "ask archival-claim 1"},
        {nothing, "in/scan.png", "ask stamp-too-small 1"},
        {[&] { option(&JobOptions::realSize, true); }, "in/scan.png", ""},
        {[&] { stamp->font.fontSize = 700; }, "in/a.pdf in/scan.png", "ask stamp-too-large 1"},
        {[&] { settings.number->setMarginBottom(900); }, "in/a.pdf", "ask stamp-off-page 1"},
        {[&] { settings.outputFolderPath = scratch.path(u"new"_s); }, "in/a.pdf",
         "ask output-folder-missing 0"},
        {[&] { settings.outputFolderPath = scratch.path(u"in/a.pdf"_s); }, "in/b.pdf",
         "stop no-output-folder 0"},
        {[&] { settings.outputFolderPath = scratch.path(u"new/new"_s); }, "in/b.pdf",
         "stop no-output-folder 0"},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const auto& [given, files, findings] = cases[i];
        if (i > 0) {
            QDir(scratch.path(u"out"_s)).removeRecursively();
            QDir(scratch.path(u"in"_s)).removeRecursively();
            settings = Settings();
            isChecked = true;
            SetUp();
        }
        given();
        const QStringList before = QDir(scratch.path(u"out"_s)).entryList();
        EXPECT_EQ(found(files), findings) << i << ": " << files;
        EXPECT_EQ(QDir(scratch.path(u"out"_s)).entryList(), before) << i;
    }
}

TEST_F(Check, RulesDecideWhatStopsAJob)
{
    stamp->number.numberFormat = QString();
    settings.outputFolderPath = scratch.path(u"new"_s);
    EXPECT_EQ(found("in/a.pdf", {true, true}), "stop empty-stamp 0|note output-folder-missing 0");
}

TEST_F(Check, TellsWhenTheDiskIsTooSmall)
{
    QFile huge(scratch.path(u"in/huge.bmp"_s));
    QImage(2, 2, QImage::Format_RGB32).save(huge.fileName());
    ASSERT_TRUE(huge.resize(qint64{8} << 40)) << "without taking the room";
    stamp->font.fontSize = 1;
    EXPECT_NE(found("in/huge.bmp").find("ask little-room 0"), std::string::npos);
}

TEST_F(Check, CanBeStopped)
{
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW(static_cast<void>(JobCheck(plan("in/a.pdf")).findings(stop.get_token())), Cancelled);
}

} // namespace
} // namespace quillfern
