#include "runner/InputGathering.h"

#include "platform/store/AtomicFile.h"
#include "platform/system/NativePath.h"
#include "support/Fakes.h"
#include "support/PdfBuilder.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace quillfern {
namespace {

TEST(InputGathering, FollowsTheCommandLine)
{
    const Scratch scratch;
    const QString foreign = scratch.path() + u'/' + pathText("latin\xE9.pdf");
    store::AtomicFile::writeWhole(asPath(foreign), numberedPdf(2));
    scratch.write(u"d/b.pdf"_s, numberedPdf(1));
    scratch.write(u"d/sub/c.pdf"_s, numberedPdf(1));
    const QString mixed = scratch.write(u"z.Pdf"_s, numberedPdf(4));
    const QByteArray folder = nativePath(scratch.path());
    const QString list = scratch.write(u"list.txt"_s, folder + "/d/sub/c.pdf\n" + folder + "/gone.tif\n" +
                                                          nativePath(foreign));
    RunnerOptions options;
    // A file stands where it is named first; a file that a list names again is not added again.
    options.inputs = {mixed, scratch.path(u"d/../d"_s), foreign, mixed};
    options.lists = {list};
    FileList files;
    const FakeClock clock;
    EventLoopMainThread mainThread;
    InputGathering gathering(files, mainThread, clock);
    std::vector<Remark> remarks;
    const auto goOn = [] { return true; };
    gathering.gather(requestsFor(options, goOn, remarks), goOn);
    QList<QByteArray> paths;
    for (int row = 0; row < files.count(); ++row)
        paths.append(files.at(row).filePath().bytes().mid(folder.size() + 1));
    EXPECT_EQ(paths, (QList<QByteArray>{"z.Pdf", "d/b.pdf", "latin\xE9.pdf", "d/sub/c.pdf", "gone.tif"}));
    EXPECT_EQ(files.totals(), (FileTotals{5, 8, 0, 0}));
}

TEST(InputGathering, LinesLeftOutOfAListAreCounted)
{
    const Scratch scratch;
    RunnerOptions options;
    options.lists = {scratch.write(u"mixed.txt"_s, "/a.pdf\r\n/b.pdf\r\n/notes.doc\r\n/c.pdf")};
    std::vector<Remark> remarks;
    EXPECT_EQ(requestsFor(
                  options, [] { return true; }, remarks)
                  .at(0)
                  .urls,
              asPaths({u"/c.pdf"_s}));
    ASSERT_EQ(remarks.size(), 1U);
    EXPECT_TRUE(remarks[0].text.contains(u"mixed.txt\" 2 line(s) end with a carriage return"_s))
        << remarks[0].text.toStdString();
}

class RunnerNames : public testing::Test
{
  protected:
    /// Runs lines of the shell in the folder, where "$run" is the program and "$e" a byte that is no UTF-8.
    ToolResult shell(const char* lines)
    {
        const QString start = u"set -e; cd \"$1\"; run=\"$2\"; e=$(printf '\\351'); "
                              "export HOME=\"$1/home$e\"; unset XDG_DATA_HOME XDG_CONFIG_HOME\n"_s;
        return runTool("sh -c", {start + QLatin1String(lines), u"sh"_s, scratch.path(),
                                 qEnvironmentVariable("QUILLFERN_BIN_DIR") + u"/quillfern-run"_s});
    }

    Scratch scratch;
};

TEST_F(RunnerNames, OfAnyBytesAreKeptInEveryPlace)
{
    scratch.write(u"a.pdf"_s, numberedPdf(2));
    QImage(8, 8, QImage::Format_RGB32).save(scratch.path(u"logo.png"_s));
    ToolResult result =
        shell("mkdir out$e in$e; cp a.pdf in$e/a$e.pdf; cp logo.png logo$e.png\n"
              "echo in$e/a$e.pdf > list$e.txt\n"
              "$run --output out$e --image logo$e.png --text 'No {0}' --list list$e.txt "
              "--export export$e.txt --save-profile p$e.qfprofile\n"
              "$run --profile p$e.qfprofile --preview page$e.png in$e\n"
              "cp out$e/a$e.pdf copy.pdf; cp export$e.txt export.txt; cp page$e.png page.png\n"
              "cp home$e/.local/share/Orvane/Quillfern1/Logs/*.log job.log\n"
              "printf 'in\\351/a\\351.pdf' | $run --output made$e --text x --json --list - > lines.json\n");
    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    EXPECT_TRUE(result.err.isEmpty()) << result.err.toStdString();
    EXPECT_TRUE(result.out.contains("out\xEF\xBF\xBD/a\xEF\xBF\xBD.pdf\n")) << result.out.toStdString();
    EXPECT_TRUE(qpdfAccepts(scratch.path(u"copy.pdf"_s)));
    EXPECT_TRUE(pdfText(scratch.path(u"copy.pdf"_s), 2).contains(u"No 2"_s));
    EXPECT_TRUE(readFile(scratch.path(u"export.txt"_s)).contains("\na\xEF\xBF\xBD.pdf\t2\t"));
    EXPECT_FALSE(QImage(scratch.path(u"page.png"_s)).isNull());
    EXPECT_TRUE(readFile(scratch.path(u"job.log"_s)).contains("Status=\"Completed\""));
    const QList<QByteArray> lines = readFile(scratch.path(u"lines.json"_s)).trimmed().split('\n');
    const QJsonObject file = QJsonDocument::fromJson(lines.front()).object();
    EXPECT_TRUE(file.value(u"copy"_s).toString().endsWith(u"/made\uFFFD/a\uFFFD.pdf"_s));
    EXPECT_TRUE(QByteArray::fromBase64(file.value(u"copyBase64"_s).toString().toLatin1())
                    .endsWith("/made\xE9/a\xE9.pdf"))
        << lines.front().constData();
    // Started without its streams, the program reads and prints nothing, least of all into a document.
    result =
        shell("$run --output made$e --text x in$e/a$e.pdf --json <&- >&- 2>&- ; cp made$e/a$e.pdf copy.pdf\n"
              "$run --output made$e --text x --list - <&- 2>/dev/null || echo \"ended with $?\"");
    EXPECT_EQ(result.out, "ended with 2\n") << result.err.constData();
    EXPECT_TRUE(qpdfAccepts(scratch.path(u"copy.pdf"_s)));
    // In place, with a backup beside it.
    result = shell("$run --output in$e --backup --text x in$e/a$e.pdf; cmp a.pdf in$e/a$e.pdf.bak");
    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
}

} // namespace
} // namespace quillfern
