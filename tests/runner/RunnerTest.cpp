// Runs the program itself, as people and scripts call it.

#include "runner/ProgressLine.h"
#include "runner/RunnerOptions.h"

#include "config/Margins.h"
#include "stamps/TextStamp.h"
#include "support/PdfBuilder.h"
#include "support/Tools.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QThread>
#include <csignal>
#include <gtest/gtest.h>

namespace quillfern {
namespace {

class RunnerProgram : public testing::Test
{
  protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(scratch.path(QStringLiteral("out"))));
        qputenv("XDG_DATA_HOME", scratch.path(QStringLiteral("data")).toUtf8());
    }
    ToolResult run(const QStringList& arguments)
    {
        return runTool(qEnvironmentVariable("QUILLFERN_BIN_DIR") + QStringLiteral("/quillfern-run"),
                       arguments);
    }
    /// The words of a command line, with the scratch folder for each DIR.
    QStringList line(const char* text) const
    {
        return words(text).replaceInStrings(QStringLiteral("DIR"), scratch.path());
    }
    QString out(const QString& name = {}) const { return scratch.path(QStringLiteral("out/") + name); }

    Scratch scratch;
};

TEST_F(RunnerProgram, StampsAFolderAndTellsWhatItDid)
{
    scratch.write(QStringLiteral("in/b2.pdf"), numberedPdf(2));
    scratch.write(QStringLiteral("in/b10.pdf"), numberedPdf(3));
    scratch.write(QStringLiteral("in/deep/c.pdf"), numberedPdf(1));
    scratch.write(QStringLiteral("in/note.txt"), "x");
    const ToolResult result =
        run(line("--output DIR/out --continuous --subfolders --text Nr{0}/{1} --padding 3 DIR/in"));
    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    EXPECT_TRUE(result.err.isEmpty()) << result.err.toStdString();
    EXPECT_TRUE(pdfText(out(QStringLiteral("b10.pdf")), 3).contains(QStringLiteral("Nr005/006")));
    EXPECT_TRUE(pdfText(out(QStringLiteral("c.pdf")), 1).contains(QStringLiteral("Nr006/006")));
    const QList<QByteArray> lines = result.out.trimmed().split('\n');
    EXPECT_TRUE(lines[0].startsWith("Completed") && lines[0].contains("2 pages") &&
                lines[0].contains(out(QStringLiteral("b2.pdf")).toUtf8()));
    EXPECT_TRUE(result.out.contains("All files processed successfully."));
    const QByteArray log = lines.back().mid(5);
    EXPECT_EQ(readFile(QString::fromUtf8(log)).count("Status=\"Completed\""), 3)
        << lines.back().toStdString();
}

TEST_F(RunnerProgram, KeepsTheEarlierRevisionOfAPdfUnlessToldToRewrite)
{
    const QString source = scratch.write(QStringLiteral("in/a.pdf"), numberedPdf(2));
    for (const bool rewrites : {false, true}) {
        QStringList arguments{QStringLiteral("--output"), out(), QStringLiteral("--text"),
                              QStringLiteral("Nr{0}"), source};
        if (rewrites) arguments << QStringLiteral("--rewrite");
        EXPECT_EQ(run(arguments).exitCode, 0);
        EXPECT_EQ(readFile(out(QStringLiteral("a.pdf"))).startsWith(readFile(source)), !rewrites);
        EXPECT_TRUE(pdfText(out(QStringLiteral("a.pdf")), 2).contains(QStringLiteral("Nr2")));
    }
}

TEST_F(RunnerProgram, SaysWhenNotAllWasCreated)
{
    scratch.write(QStringLiteral("good.pdf"), numberedPdf(1));
    scratch.write(QStringLiteral("bad.pdf"), "bad");
    const QStringList arguments = line("--output DIR/out --text {0} DIR/good.pdf DIR/bad.pdf");
    ToolResult result = run(arguments);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.contains("No Pages") &&
                result.out.contains("Total 1 files processed successfully."));
    result = run(QStringList{QStringLiteral("--quiet")} + arguments);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.isEmpty());
    EXPECT_TRUE(result.err.contains("bad.pdf") && !result.err.contains("good.pdf"));
}

TEST_F(RunnerProgram, WarnsWhenOneCopyReplacesAnother)
{
    const QStringList arguments = {QStringLiteral("--quiet"),
                                   QStringLiteral("--output"),
                                   out(),
                                   QStringLiteral("--text"),
                                   QStringLiteral("{0}"),
                                   scratch.write(QStringLiteral("one/doc.pdf"), numberedPdf(1)),
                                   scratch.write(QStringLiteral("two/doc.pdf"), numberedPdf(2))};
    const ToolResult result = run(arguments);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(
        result.err.contains("Warning: 1 file replaced the copy of another file of its name: doc.pdf\n"))
        << result.err.constData();
    EXPECT_EQ(pdfWords(out(QStringLiteral("doc.pdf"))).size(), 2U);
}

TEST_F(RunnerProgram, RefusesWrongUseWithAWordAndWritesNothing)
{
    scratch.write(QStringLiteral("good.pdf"), numberedPdf(1));
    scratch.write(QStringLiteral("note.txt"), "x");
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"", "no files or folders"},
        {"--text {0} DIR/good.pdf", "no output folder"},
        {"--output DIR/out DIR/good.pdf", "no stamp"},
        {"--output DIR/out --text {0}", "no files or folders"},
        {"--output DIR/out/gone/gone --text {0} DIR/good.pdf", "Output folder missing!"},
        {"--output DIR/out --text {0} DIR/gone.pdf", "no file or folder"},
        {"--output DIR/out --text {0} DIR/note.txt", "not a PDF"},
        {"--output DIR/out --text {0} DIR/out", "hold no files"},
        {"--output DIR/out --text {0} --list DIR/gone.txt", "cannot be read"},
        {"--output DIR/out --text {0} --list DIR/note.txt", "names no PDF"},
        {"--output DIR/out --bold --text {0} DIR/good.pdf", "begin one with --text"},
        {"--output DIR/out --text {0} --anchor Nowhere DIR/good.pdf", "--anchor takes one of TopLeft"},
        {"--output DIR/out --text {0} --font-size big DIR/good.pdf", "--font-size takes a number"},
        {"--output DIR/out --text {0} --font-size nan DIR/good.pdf", "--font-size takes a number"},
        {"--output DIR/out --text {0} --opacity 101 DIR/good.pdf", "from 0 to 100"},
        {"--output DIR/out --text {0} --color red DIR/good.pdf", "#RRGGBB"},
        {"--output DIR/out --text {0} --start-page 0 DIR/good.pdf", "--start-page takes a whole number"},
        {"--output DIR/out --text {0} --margins 1,2,3 DIR/good.pdf", "four lengths"},
        {"--output DIR/out --text {0} --margins 1,2,3,4furlong DIR/good.pdf", "pt, mm or in"},
        {"--output DIR/out --text {0} --pages prime DIR/good.pdf", "one of all, odd, even"},
        {"--output DIR/out --text {0} --frobnicate DIR/good.pdf", "frobnicate"},
        {"--outp DIR/out --text {0} DIR/good.pdf", "outp"},
        {"--output=DIR/out --text={0} --cont DIR/good.pdf", "cont"},
        {"--output DIR/out --text {0} --step=2 --step 2 DIR/good.pdf", "--step is given twice"},
        {"--output DIR/out --text {0} --bold --bold DIR/good.pdf", "--bold is given twice for one stamp"},
        {"--output DIR/out --text {0} --backup --no-backup DIR/good.pdf", "exclude each other"},
        {"--output DIR/out --text {0} --list - --list - DIR/good.pdf", "can be read once"},
        {"--output DIR/out --text {0} --list -", "the list standard input names no PDF"},
        {"--output DIR/out --text {0} --quiet=yes DIR/good.pdf", "quiet"},
        {"--output DIR/new --text {0} DIR/gone.pdf", "no file or folder"},
    };
    for (const auto& [arguments, reason] : cases) {
        const ToolResult result = run(line(arguments));
        EXPECT_EQ(result.exitCode, 2) << reason;
        EXPECT_TRUE(result.err.contains(reason)) << reason << " but said " << result.err.toStdString();
        EXPECT_TRUE(result.out.isEmpty()) << reason;
    }
    EXPECT_TRUE(QDir(out()).isEmpty());
    EXPECT_FALSE(QFile::exists(scratch.path(QStringLiteral("data"))));
    EXPECT_FALSE(QFile::exists(scratch.path(QStringLiteral("new"))));
}

TEST_F(RunnerProgram, TellsProgramsWhatItDidOneObjectALine)
{
    scratch.write(QStringLiteral("one/a.pdf"), numberedPdf(2));
    scratch.write(QStringLiteral("two/a.pdf"), numberedPdf(1));
    scratch.write(QStringLiteral("bad\n.pdf"), "bad");
    struct Case
    {
        const char* arguments;
        const char* lines; ///< the kinds and what tells them apart
        int exitCode;
    };
    const std::vector<Case> cases = {
        {"--output DIR/out --text {page}{0} --start-number 7 --continuous DIR/one DIR/bad\n.pdf DIR/two",
         "finding:unknown-word file:1:created file:2:no-pages file:3:created result:1", 1},
        {"--quiet --output DIR/new --text {0} DIR/one DIR/bad\n.pdf", "file:2:no-pages result:1", 1},
        {"--export DIR/table.txt DIR/one", "list:1 result:0", 0},
        {"--output DIR/out --text {0} --bogus", "result:2", 2},
        {"--check --output DIR/none --text {0} DIR/one DIR/two",
         "finding:same-name finding:output-folder-missing result:1", 1},
        {"--check --output DIR/none --text {0} DIR/one", "finding:output-folder-missing result:0", 0},
        {"--check --output DIR/none/none --text {0} DIR/one", "finding:no-output-folder result:1", 1},
        {"--check --export DIR/none/x --output DIR/out --text {0} DIR/one", "result:2", 2},
        {"--strict --output DIR/none --text {0} DIR/one DIR/two",
         "finding:same-name finding:output-folder-missing result:1", 1},
        {"--output DIR/none --text= DIR/one", "finding:empty-stamp result:1", 1},
        {"--strict --output DIR/strict --text {0} DIR/one",
         "finding:output-folder-missing file:1:created result:0", 0},
    };
    for (const Case& c : cases) {
        const ToolResult result = run(line(c.arguments) + words("--json"));
        EXPECT_EQ(result.exitCode, c.exitCode) << c.arguments;
        QStringList found;
        for (const QByteArray& text : result.out.trimmed().split('\n')) {
            const QJsonObject object = QJsonDocument::fromJson(text).object();
            const auto value = [&](const char* name) {
                return object.value(QLatin1String(name)).toVariant().toString();
            };
            QString what = value("kind");
            for (const char* const name : {"id", "index", "files", "status", "exitStatus"})
                if (!value(name).isEmpty() && !(what.startsWith(u"result") && name[0] != 'e'))
                    what += u':' + value(name);
            found.append(what);
            if (value("index") == u"3") {
                EXPECT_EQ(object.value(QStringLiteral("numbers")).toObject(),
                          (QJsonObject{{QStringLiteral("first"), 9}, {QStringLiteral("last"), 9}}));
                EXPECT_TRUE(object.value(QStringLiteral("replacesCopy")).toBool());
                EXPECT_EQ(value("source"), scratch.path(QStringLiteral("two/a.pdf")));
            }
            if (value("index") == u"2") {
                EXPECT_TRUE(value("source").endsWith(QStringLiteral("bad\n.pdf")));
            }
        }
        EXPECT_EQ(found.join(u' ').toStdString(), c.lines) << result.err.constData();
    }
    EXPECT_TRUE(qpdfAccepts(scratch.path(QStringLiteral("new/a.pdf")))) << "the folder was made";
    EXPECT_FALSE(QDir(scratch.path(QStringLiteral("none"))).exists());
}

TEST_F(RunnerProgram, TellsItsOptionsAndVersionsWhateverElseIsAsked)
{
    for (const char* const arguments : {"-h", "--text {0} --help --margins nonsense"})
        EXPECT_TRUE(run(words(arguments)).out.contains("\n  -V, --version")) << arguments;
    const ToolResult versions = run(words("-V"));
    EXPECT_EQ(versions.exitCode, 0);
    for (const char* const library :
         {"\nQt 6.", "\nqpdf 1", "\nlibtiff 4.", "\nlibjpeg-turbo ", "\nLittle CMS 2."})
        EXPECT_TRUE(versions.out.contains(library)) << library << " is not in " << versions.out.constData();
}

TEST_F(RunnerProgram, StopsCleanlyWhenInterrupted)
{
    QStringList arguments = line("--output DIR/out --text {0}");
    const QByteArray large = numberedPdf(800);
    for (int i = 0; i < 40; ++i)
        arguments.append(scratch.write(QStringLiteral("in/f%1.pdf").arg(i), large));
    QProcess process;
    process.start(qEnvironmentVariable("QUILLFERN_BIN_DIR") + QStringLiteral("/quillfern-run"), arguments);
    ASSERT_TRUE(process.waitForReadyRead(60'000)); // the first file is done
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    ASSERT_TRUE(process.waitForFinished(60'000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 1);
    const QByteArray output = process.readAllStandardOutput();
    EXPECT_TRUE(output.contains("Process cancelled!"));
    const int done = static_cast<int>(output.count("Completed"));
    EXPECT_LT(done, 40);
    const QStringList files = QDir(out()).entryList(QDir::Files | QDir::Hidden);
    EXPECT_EQ(files.size(), done) << "no half file";
    for (const QString& file : files)
        EXPECT_TRUE(qpdfAccepts(out(file)));
    EXPECT_TRUE(readFile(QString::fromUtf8(output.trimmed().split('\n').back().mid(5))).contains("<Log"));
}

TEST_F(RunnerProgram, AKilledRunLeavesSourcesAndNoHalfFile)
{
    QStringList arguments = line("--output DIR/in --text {0}");
    const QByteArray large = numberedPdf(800);
    for (int i = 0; i < 40; ++i)
        arguments.append(scratch.write(QStringLiteral("in/f%1.pdf").arg(i), large));
    QProcess process;
    process.start(qEnvironmentVariable("QUILLFERN_BIN_DIR") + QStringLiteral("/quillfern-run"), arguments);
    ASSERT_TRUE(process.waitForReadyRead(60'000));
    QThread::msleep(35);
    process.kill();
    process.waitForFinished();
    const QStringList files = QDir(scratch.path(QStringLiteral("in"))).entryList(QDir::Files | QDir::Hidden);
    EXPECT_EQ(files.size(), 40);
    for (const QString& file : files)
        EXPECT_TRUE(qpdfAccepts(scratch.path(QStringLiteral("in/") + file))) << file.toStdString();
}

TEST(RunnerOptionsTest, OptionsDescribeTheStampLastBegun)
{
    Settings settings;
    const QStringList arguments =
        QStringList{QStringLiteral("quillfern-run"), QStringLiteral("--text=A {0}")} +
        words("--bold --rotation -45 a.pdf --text B --anchor topright --color #0a0B0c --output o "
              "--number-type roman-small --under --margins 1,2.5,3mm,4in --step -2");
    const RunnerOptions options = parseRunnerOptions(arguments, settings);
    EXPECT_EQ(options.inputs, QStringList{QStringLiteral("a.pdf")});
    ASSERT_EQ(settings.number->stamps.size(), 2U);
    const auto& first = static_cast<const TextStamp&>(*settings.number->stamps[0]);
    const auto& second = static_cast<const TextStamp&>(*settings.number->stamps[1]);
    EXPECT_EQ(first.number.numberFormat, QStringLiteral("A {0}"));
    EXPECT_TRUE(first.isBold && !second.isBold && !first.isDrawUnderPDFContent() &&
                second.isDrawUnderPDFContent());
    EXPECT_EQ(first.textRotation, -45);
    EXPECT_EQ(first.marginAnchor(), MarginAnchor::BottomMiddle);
    EXPECT_EQ(second.marginAnchor(), MarginAnchor::TopRight);
    EXPECT_EQ(second.font.fontColor, QColor(10, 11, 12));
    EXPECT_EQ(second.number.numberType, NumberType::RomanNumbersSmall);
    EXPECT_EQ(settings.number->numberSteps(), -2);
    // With different units all lengths are stored in points; lengths without a unit have the unit of the last
    // one.
    EXPECT_EQ(settings.number->marginUnit(), MarginUnit::Points);
    EXPECT_DOUBLE_EQ(settings.number->marginTop(), 180);
    EXPECT_DOUBLE_EQ(settings.number->marginRight(), 3 * 72 / 25.4);
}

TEST(RunnerOptionsTest, MarginsAreOneLengthOrFourInOneUnit)
{
    struct Case
    {
        const char* text;
        MarginUnit unit;
        std::array<double, 4> lengths; ///< left, top, right, bottom
    };
    constexpr MarginUnit points = MarginUnit::Points;
    const std::vector<Case> cases = {
        {"10mm", MarginUnit::Millimetres, {10, 10, 10, 10}},
        {"36", points, {36, 36, 36, 36}},
        {"1,2,3,.5in", MarginUnit::Inches, {1, 2, 3, .5}},
        {"1in,2in,3in,4in", MarginUnit::Inches, {1, 2, 3, 4}},
        {"1in,36pt,25.4mm,9", points, {72, 36, 72, 9}},
        {"36pt,1,1,1in", points, {36, 72, 72, 72}},
    };
    for (const Case& c : cases) {
        Settings settings;
        static_cast<void>(parseRunnerOptions(words("run --text A --save-profile p --margins") +
                                                 QStringList{QString::fromLatin1(c.text)},
                                             settings));
        const JobConfiguration& job = settings.number->fields();
        EXPECT_EQ(job.marginUnit, c.unit) << c.text;
        const std::array<double, 4> lengths = {job.marginLeft, job.marginTop, job.marginRight,
                                               job.marginBottom};
        for (std::size_t i = 0; i < lengths.size(); ++i)
            EXPECT_DOUBLE_EQ(lengths[i], c.lengths[i]) << c.text << " at " << i;
    }
}

TEST(RunnerOptionsTest, WordsInBracesThatNothingFillsInAreTold)
{
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"--text {0}of{1}", ""},
        {"--text {page}-{0}-{page}-{x", "{page}"},
        {"--text {}{2} --text {0} --number-type plain", "{} {2} {0}"},
    };
    for (const auto& [arguments, words_] : cases) {
        Settings settings;
        QStringList told;
        for (const Remark& remark :
             parseRunnerOptions(words("run --save-profile p") + words(arguments), settings).remarks)
            told.append(remark.text.section(u'"', 1, 1));
        EXPECT_EQ(told.join(u' ').toStdString(), words_) << arguments;
    }
}

TEST(ProgressLineTest, TheTimeLeftFollowsFromThePagesDone)
{
    struct Case
    {
        std::int64_t milliseconds, done, total;
        const char* text;
    };
    const std::vector<Case> cases = {
        {2900, 10, 100, ""},
        {5000, 0, 100, ""},
        {5000, 100, 100, ""},
        {5000, 100, 90, ""},
        {10'000, 50, 100, "about 15 s left"},
        {60'000, 100, 400, "about 4 min left"},
        {3'600'000, 100, 350, "about 2 h 30 min left"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(remainingTime(c.milliseconds, c.done, c.total).toStdString(), c.text);
}

} // namespace
} // namespace quillfern
