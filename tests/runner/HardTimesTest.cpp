// The runner where the machine lacks something, or somebody stops it: it always ends, with a word, and leaves
// no half file.

#include "support/PdfBuilder.h"
#include "support/Tools.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <csignal>
#include <gtest/gtest.h>

namespace quillfern {
namespace {

class HardTimes : public testing::Test
{
  protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(out()));
        environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_DATA_HOME"), scratch.path(QStringLiteral("data")));
    }
    QString out(const char* name = "") const
    {
        return scratch.path(QStringLiteral("out/") + QString::fromUtf8(name));
    }
    static QString program()
    {
        return qEnvironmentVariable("QUILLFERN_BIN_DIR") + QStringLiteral("/quillfern-run");
    }
    QStringList jobOf(const QStringList& inputs) const
    {
        return QStringList{QStringLiteral("--output"), out(), QStringLiteral("--text"),
                           QStringLiteral("{0}")} +
               inputs;
    }
    /// Fails the test when the program does not end by itself, or by a crash.
    ToolResult run(const QStringList& arguments, const QString& command = program()) const
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(command, arguments);
        if (!process.waitForFinished(60'000)) {
            ADD_FAILURE() << "does not end";
            process.kill();
            process.waitForFinished();
        }
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << "a crash";
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }
    QStringList copies() const { return QDir(out()).entryList(QDir::Files | QDir::Hidden); }

    Scratch scratch;
    QProcessEnvironment environment;
};

TEST_F(HardTimes, WithoutAnyFontATextStampFailsWithAWord)
{
    ASSERT_TRUE(QDir().mkpath(scratch.path(QStringLiteral("fonts"))));
    environment.insert(
        QStringLiteral("FONTCONFIG_FILE"),
        scratch.write(QStringLiteral("fonts.conf"), "<?xml version=\"1.0\"?><fontconfig><dir>" +
                                                        scratch.path(QStringLiteral("fonts")).toUtf8() +
                                                        "</dir></fontconfig>"));
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(Qt::red);
    const QString png = scratch.path(QStringLiteral("page.png"));
    ASSERT_TRUE(picture.save(png));
    const QString pdf = scratch.write(QStringLiteral("a.pdf"), numberedPdf(2));

    ToolResult result = run(jobOf({pdf, png}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out.count("No font is installed"), 2) << result.out.constData();
    EXPECT_TRUE(copies().isEmpty());
    result = run(
        {QStringLiteral("--text"), QStringLiteral("{0}"), QStringLiteral("--preview"), out("p.png"), pdf});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.contains("No font is installed")) << result.err.constData();

    result = run({QStringLiteral("--output"), out(), QStringLiteral("--image"), png, pdf});
    EXPECT_EQ(result.exitCode, 0) << "a picture needs no font: " << result.out.constData();
    EXPECT_EQ(copies(), QStringList{QStringLiteral("a.pdf")});
}

TEST_F(HardTimes, ASecondSignalGivesUpTheFileInWork)
{
    const QString large = scratch.write(QStringLiteral("large.pdf"), numberedPdf(40'000));
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
        QProcess process;
        process.setProcessEnvironment(environment);
        // Reading, stamping and writing all objects of these pages takes seconds.
        process.start(program(), jobOf({large}) << QStringLiteral("--rewrite"));
        ASSERT_TRUE(process.waitForStarted());
        process.waitForFinished(1500);
        ::kill(static_cast<pid_t>(process.processId()), signal);
        process.waitForFinished(300);
        ::kill(static_cast<pid_t>(process.processId()), signal);
        ASSERT_TRUE(process.waitForFinished(30'000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << signal;
        EXPECT_EQ(process.exitCode(), 1);
        const QByteArray err = process.readAllStandardError();
        EXPECT_TRUE(err.contains("Stopping after the current file") && err.contains("Giving up"))
            << err.constData();
        const QByteArray text = process.readAllStandardOutput();
        EXPECT_TRUE(text.contains("Process cancelled!") && text.contains("Log: ")) << text.constData();
        EXPECT_TRUE(copies().isEmpty());
    }
}

TEST_F(HardTimes, WithLittleMemoryTheRunnerStillEndsWithAWord)
{
    QStringList inputs = {scratch.write(QStringLiteral("a.pdf"), numberedPdf(300))};
    for (int i = 0; i < 4; ++i) {
        QImage picture(1500, 1000, QImage::Format_RGB32);
        picture.fill(QColor(i * 50, 80, 90));
        inputs.append(scratch.path(QStringLiteral("p%1.png").arg(i)));
        ASSERT_TRUE(picture.save(inputs.constLast()));
    }
    // With a cache of its own: fontconfig may keep what it could not read for want of memory.
    environment.insert(QStringLiteral("FONTCONFIG_FILE"),
                       scratch.write(QStringLiteral("fonts.conf"),
                                     "<?xml version=\"1.0\"?><fontconfig>"
                                     "<dir>/usr/share/fonts/truetype/liberation</dir><cachedir>" +
                                         scratch.path(QStringLiteral("cache")).toUtf8() +
                                         "</cachedir></fontconfig>"));
    // In KiB of address space: from what the program can hardly start in to what the job may just need.
    for (int limit = 110'000; limit <= 240'000; limit += 5'000) {
        const ToolResult result =
            run(QStringList{QStringLiteral("-c"), QStringLiteral("ulimit -v %1; exec \"$@\"").arg(limit),
                            QStringLiteral("sh"), program()} +
                    jobOf(inputs),
                QStringLiteral("/bin/sh"));
        EXPECT_TRUE(result.exitCode != 0 || copies().size() == 5) << limit;
        EXPECT_FALSE(result.exitCode != 0 && result.err.isEmpty() && result.out.isEmpty()) << limit;
        for (const QString& copy : copies()) {
            EXPECT_FALSE(copy.startsWith(u'.')) << limit;
            if (copy.endsWith(QLatin1String("pdf"))) {
                EXPECT_TRUE(qpdfAccepts(out() + copy)) << limit;
            }
        }
    }
}

TEST_F(HardTimes, NamesCannotWriteToTheTerminal)
{
    const QString odd = QStringLiteral("a\nb\t\x1b[31mc.pdf");
    const QString junk = QStringLiteral("junk\x1b]0;x\x07.pdf");
    const ToolResult result = run(jobOf({scratch.write(odd, numberedPdf(1)), scratch.write(junk, "junk"),
                                         scratch.write(QStringLiteral("two/") + odd, numberedPdf(1))}));
    EXPECT_EQ(result.exitCode, 1);
    for (QByteArray stream : {result.out, result.err}) {
        stream.replace('\n', QByteArray());
        for (const char c : stream)
            EXPECT_GE(static_cast<unsigned char>(c), 0x20) << stream.constData();
    }
    EXPECT_EQ(result.out.count("/out/a\\nb\\t\\x1b[31mc.pdf"), 2) << result.out.constData();
    EXPECT_TRUE(result.err.contains("of its name: a\\nb\\t\\x1b[31mc.pdf")) << result.err.constData();
    EXPECT_TRUE(result.out.contains("x\\x07.pdf: This is not a PDF document.)")) << result.out.constData();
    EXPECT_TRUE(result.err.contains("junk\\x1b]0;x\\x07.pdf: This is not a PDF document: "))
        << "the log has the library's words as well: " << result.err.constData();

    const ToolResult wrong = run(jobOf({scratch.path(QStringLiteral("no\nsuch.pdf"))}));
    EXPECT_EQ(wrong.exitCode, 2);
    EXPECT_TRUE(wrong.err.contains("no\\nsuch.pdf")) << wrong.err.constData();
}

TEST_F(HardTimes, APreviewThatDoesNotShowTheFileIsAFailure)
{
    const QStringList stamp = {QStringLiteral("--text"), QStringLiteral("{0}"), QStringLiteral("--preview"),
                               out("p.png")};
    EXPECT_EQ(run(stamp + QStringList{scratch.write(QStringLiteral("good.pdf"), numberedPdf(1))}).exitCode,
              0);
    const ToolResult result = run(stamp + QStringList{scratch.write(QStringLiteral("bad.pdf"), "junk")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.contains("bad.pdf cannot be shown")) << result.err.constData();
}

TEST_F(HardTimes, ALogThatCannotBeWrittenIsAFailure)
{
    environment.insert(QStringLiteral("XDG_DATA_HOME"), QStringLiteral("/proc"));
    const ToolResult result = run(QStringList{QStringLiteral("--quiet")} +
                                  jobOf({scratch.write(QStringLiteral("good.pdf"), numberedPdf(1))}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.contains("The log could not be written")) << result.err.constData();
    EXPECT_EQ(copies().size(), 1) << "the copy is there all the same";
}

} // namespace
} // namespace quillfern
