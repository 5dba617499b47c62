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
        process.start(program(), jobOf({large}));
        ASSERT_TRUE(process.waitForStarted());
        // Opening, stamping and writing these pages takes seconds.
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

} // namespace
} // namespace quillfern
