// Runs the program itself, as people and scripts call it.

#include "runner/RunnerOptions.h"

#include "config/Margins.h"
#include "stamps/TextStamp.h"
#include "support/PdfBuilder.h"
#include "support/Tools.h"

#include <QDir>
#include <QFile>
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
        {"--output DIR/out/gone --text {0} DIR/good.pdf", "Output folder missing!"},
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
    };
    for (const auto& [arguments, reason] : cases) {
        const ToolResult result = run(line(arguments));
        EXPECT_EQ(result.exitCode, 2) << reason;
        EXPECT_TRUE(result.err.contains(reason)) << reason << " but said " << result.err.toStdString();
        EXPECT_TRUE(result.out.isEmpty()) << reason;
    }
    EXPECT_TRUE(QDir(out()).isEmpty());
    EXPECT_FALSE(QFile::exists(scratch.path(QStringLiteral("data"))));
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

} // namespace
} // namespace quillfern
