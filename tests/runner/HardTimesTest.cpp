// The runner where the machine lacks something, or somebody stops it: it always ends, with a word, and leaves
// no half file.

#include "runner/ProgramFixture.h"

#include <QProcess>
#include <csignal>

namespace quillfern {
namespace {

class HardTimes : public ProgramFixture
{
  protected:
    QStringList jobOf(const QStringList& inputs) const
    {
        return QStringList{u"--output"_s, out(), u"--text"_s, u"{0}"_s} + inputs;
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

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(HardTimes, WithoutAnyFontATextStampFailsWithAWord)
{
    ASSERT_TRUE(QDir().mkpath(scratch.path(u"fonts"_s)));
    environment.insert(u"FONTCONFIG_FILE"_s,
                       scratch.write(u"fonts.conf"_s, "<?xml version=\"1.0\"?><fontconfig><dir>" +
                                                          scratch.path(u"fonts"_s).toUtf8() +
                                                          "</dir></fontconfig>"));
    const QString png = scratch.writePicture(u"page.png"_s, {40, 30}, Qt::red);
    const QString pdf = scratch.write(u"a.pdf"_s, numberedPdf(2));

    ToolResult result = run(jobOf({pdf, png}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out.count("No font is installed"), 2) << result.out.constData();
    EXPECT_TRUE(copies().isEmpty());
    result = run({u"--text"_s, u"{0}"_s, u"--preview"_s, out("p.png"), pdf});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.contains("No font is installed")) << result.err.constData();

    result = run({u"--output"_s, out(), u"--image"_s, png, pdf});
    EXPECT_EQ(result.exitCode, 0) << "a picture needs no font: " << result.out.constData();
    EXPECT_EQ(copies(), QStringList{u"a.pdf"_s});
}

TEST_F(HardTimes, ASecondSignalGivesUpTheFileInWork)
{
    const QString large = scratch.write(u"large.pdf"_s, numberedPdf(40'000));
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
        QProcess process;
        process.setProcessEnvironment(environment);
        // Reading, stamping and writing all objects of these pages takes seconds.
        process.start(program(), jobOf({large}) << u"--rewrite"_s);
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
    QStringList inputs = {scratch.write(u"a.pdf"_s, numberedPdf(300))};
    for (int i = 0; i < 4; ++i)
        inputs.append(scratch.writePicture(u"p%1.png"_s.arg(i), {1500, 1000}, QColor(i * 50, 80, 90)));
    // With a cache of its own: fontconfig may keep what it could not read for want of memory.
    environment.insert(
        u"FONTCONFIG_FILE"_s,
        scratch.write(u"fonts.conf"_s, "<?xml version=\"1.0\"?><fontconfig>"
                                       "<dir>/usr/share/fonts/truetype/liberation</dir><cachedir>" +
                                           scratch.path(u"cache"_s).toUtf8() + "</cachedir></fontconfig>"));
    // In KiB of address space: from what the program can hardly start in to what the job may just need.
    for (int limit = 110'000; limit <= 240'000; limit += 5'000) {
        const ToolResult result =
            run(QStringList{u"-c"_s, u"ulimit -v %1; exec \"$@\""_s.arg(limit), u"sh"_s, program()} +
                    jobOf(inputs),
                u"/bin/sh"_s);
        EXPECT_TRUE(result.exitCode != 0 || copies().size() == 5) << limit;
        EXPECT_FALSE(result.exitCode != 0 && result.err.isEmpty() && result.out.isEmpty()) << limit;
        for (const QString& copy : copies()) {
            EXPECT_FALSE(copy.startsWith(u'.')) << limit;
            if (copy.endsWith("pdf"_L1)) {
                EXPECT_TRUE(qpdfAccepts(out() + copy)) << limit;
            }
        }
    }
}

TEST_F(HardTimes, NamesCannotWriteToTheTerminal)
{
    const QString odd = u"a\nb\t\x1b[31mc.pdf"_s;
    const QString junk = u"junk\x1b]0;x\x07.pdf"_s;
    const ToolResult result = run(jobOf({scratch.write(odd, numberedPdf(1)), scratch.write(junk, "junk"),
                                         scratch.write(u"two/"_s + odd, numberedPdf(1))}));
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

    const ToolResult wrong = run(jobOf({scratch.path(u"no\nsuch.pdf"_s)}));
    EXPECT_EQ(wrong.exitCode, 2);
    EXPECT_TRUE(wrong.err.contains("no\\nsuch.pdf")) << wrong.err.constData();
}

TEST_F(HardTimes, ALogThatCannotBeWrittenIsAFailure)
{
    environment.insert(u"XDG_DATA_HOME"_s, u"/proc"_s);
    const ToolResult result =
        run(QStringList{u"--quiet"_s} + jobOf({scratch.write(u"good.pdf"_s, numberedPdf(1))}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.contains("The log could not be written")) << result.err.constData();
    EXPECT_EQ(copies().size(), 1) << "the copy is there all the same";
}

} // namespace
} // namespace quillfern
