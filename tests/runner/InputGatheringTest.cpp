#include "runner/InputGathering.h"

#include "platform/store/AtomicFile.h"
#include "platform/system/NativePath.h"
#include "support/Fakes.h"
#include "support/PdfBuilder.h"
#include "support/Tools.h"

#include <gtest/gtest.h>

namespace quillfern {
namespace {

TEST(InputGathering, FollowsTheCommandLine)
{
    const Scratch scratch;
    const QString foreign = scratch.path() + u'/' + pathText("latin\xE9.pdf");
    AtomicFile::writeWhole(foreign, numberedPdf(2));
    scratch.write(QStringLiteral("d/b.pdf"), numberedPdf(1));
    scratch.write(QStringLiteral("d/sub/c.pdf"), numberedPdf(1));
    const QString mixed = scratch.write(QStringLiteral("z.Pdf"), numberedPdf(4));
    const QByteArray folder = nativePath(scratch.path());
    const QString list = scratch.write(QStringLiteral("list.txt"), folder + "/d/sub/c.pdf\n" + folder +
                                                                       "/gone.tif\n" + nativePath(foreign));
    RunnerOptions options;
    // A file of a folder comes where it is named first; what a list repeats is not taken again.
    options.inputs = {mixed, scratch.path(QStringLiteral("d/../d")), foreign, mixed};
    options.lists = {list};
    FileList files;
    const FakeClock clock;
    EventLoopMainThread mainThread;
    InputGathering gathering(files, mainThread, clock);
    gathering.gather(requestsFor(options), [] { return true; });
    QList<QByteArray> paths;
    for (int row = 0; row < files.count(); ++row)
        paths.append(nativePath(files.at(row).path()).mid(folder.size() + 1));
    EXPECT_EQ(paths, (QList<QByteArray>{"z.Pdf", "d/b.pdf", "latin\xE9.pdf", "d/sub/c.pdf", "gone.tif"}));
    EXPECT_EQ(files.totals(), (FileTotals{5, 8, 0, 0}));
}

TEST(InputGathering, RefusesWhatCannotBeMeant)
{
    const Scratch scratch;
    const QString text = scratch.write(QStringLiteral("notes.txt"), "nothing here\n");
    struct Case
    {
        QStringList inputs;
        QStringList lists;
        const char* word;
    };
    for (const Case& c : {Case{{scratch.path(QStringLiteral("gone.pdf"))}, {}, "there is no file or folder"},
                          Case{{text}, {}, "is not a PDF"},
                          Case{{}, {scratch.path(QStringLiteral("gone.txt"))}, "cannot be read"},
                          Case{{}, {text}, "names no PDF"}}) {
        RunnerOptions options;
        options.inputs = c.inputs;
        options.lists = c.lists;
        try {
            static_cast<void>(requestsFor(options));
            ADD_FAILURE() << c.word;
        } catch (const WrongUse& wrongUse) {
            EXPECT_TRUE(wrongUse.reason().contains(QLatin1String(c.word))) << wrongUse.what();
        }
    }
}

TEST(RunnerLists, ListsWithoutStampingAndStampsNamesOfAnyBytes)
{
    const Scratch scratch;
    const QString program = qEnvironmentVariable("QUILLFERN_BIN_DIR") + QStringLiteral("/quillfern-run");
    AtomicFile::writeWhole(scratch.path() + u'/' + pathText("in\xE9.pdf"), numberedPdf(3));
    const QString list = scratch.path(QStringLiteral("list.txt"));
    ToolResult result = runTool(program, {QStringLiteral("--export"), list, scratch.path()});
    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    EXPECT_TRUE(readFile(list).contains("\nin\xEF\xBF\xBD.pdf\t3\t4 KB\tpdf\t"))
        << readFile(list).toStdString();
    EXPECT_TRUE(result.out.contains("1 Total file(s); Total page count of PDF files: 3  TIFF files: 0"));

    // The shell hands the program the very bytes of the name.
    scratch.write(QStringLiteral("out/keep"), "");
    result =
        runTool(QStringLiteral("sh"), {QStringLiteral("-c"),
                                       QStringLiteral("cd \"$1\" && HOME=\"$1\" XDG_DATA_HOME=\"$1/data\" "
                                                      "\"$2\" --text '{0}' --output out in*.pdf && "
                                                      "cat out/in*.pdf > out/copy"),
                                       QStringLiteral("sh"), scratch.path(), program});
    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    EXPECT_FALSE(readFile(scratch.path(QStringLiteral("out/copy"))).isEmpty());
    EXPECT_TRUE(qpdfAccepts(scratch.path(QStringLiteral("out/copy"))));
}

} // namespace
} // namespace quillfern
