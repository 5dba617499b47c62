// Names, places and the index of copies, as the options of the program want them.

#include "support/PdfBuilder.h"
#include "support/Tools.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <gtest/gtest.h>

namespace quillfern {
namespace {

class CopyOptions : public testing::Test
{
  protected:
    void SetUp() override
    {
        qputenv("XDG_DATA_HOME", scratch.path(QStringLiteral("data")).toUtf8());
        scratch.write(QStringLiteral("in/a.pdf"), numberedPdf(2));
        scratch.write(QStringLiteral("in/d/b.pdf"), numberedPdf(1));
        scratch.write(QStringLiteral("other/a.pdf"), numberedPdf(1));
        QImage page(40, 30, QImage::Format_RGB32);
        page.fill(Qt::white);
        ASSERT_TRUE(page.save(scratch.path(QStringLiteral("in/d/c.png"))));
        ASSERT_TRUE(QDir().mkpath(scratch.path(QStringLiteral("elsewhere"))));
    }
    /// Runs the program with a stamp, the output folder "out" and further words, with the scratch folder for
    /// each DIR.
    ToolResult run(const char* arguments)
    {
        return runTool(
            qEnvironmentVariable("QUILLFERN_BIN_DIR") + QStringLiteral("/quillfern-run"),
            words(("--text Nr{0} --padding 3 --output DIR/out " + QByteArray(arguments)).constData())
                .replaceInStrings(QStringLiteral("DIR"), scratch.path()));
    }
    /// The files below a folder, without links to folders.
    QString filesIn(const char* folder) const
    {
        const QString root = scratch.path(QString::fromLatin1(folder));
        QStringList names;
        QDirIterator files(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext())
            names.append(files.next().mid(root.size() + 1));
        names.sort();
        return names.join(u'|');
    }
    QString out(const char* name) const { return scratch.path(QStringLiteral("out/") + QLatin1String(name)); }

    Scratch scratch;
};

TEST_F(CopyOptions, DecideNamesAndPlaces)
{
    struct Case
    {
        const char* arguments;
        const char* earlier; ///< in the output folder; empty for none
        const char* copies;
        int exitCode;
    };
    const std::vector<Case> cases = {
        {"--subfolders DIR/in", "", "a.pdf|b.pdf|c.png", 0},
        {"--keep-folders --subfolders DIR/in", "", "a.pdf|d/b.pdf|d/c.png", 0},
        {"--tif-names --subfolders DIR/in", "", "a.pdf|b.pdf|c.tif", 0},
        {"--continuous --name {first}-{last},{name} --subfolders DIR/in", "",
         "001-002,a.pdf|003-003,b.pdf|004-004,c.png", 0},
        {"--existing skip --subfolders DIR/in", "a.pdf", "a.pdf|b.pdf|c.png", 0},
        {"--existing number --subfolders DIR/in", "d/b.pdf", "a.pdf|b.pdf|c.png|d/b.pdf", 0},
        {"--existing number --keep-folders --subfolders DIR/in", "d/b.pdf",
         "a.pdf|d/b (2).pdf|d/b.pdf|d/c.png", 0},
        {"--keep-folders --tif-names --existing number --name {index}_{name} --index DIR/out/index.csv "
         "--subfolders DIR/in",
         "d/3_c.tif", "1_a.pdf|d/2_b.pdf|d/3_c (2).tif|d/3_c.tif|index.csv", 0},
        {"DIR/in/a.pdf DIR/other/a.pdf", "", "a.pdf", 1},
        {"--existing number DIR/in/a.pdf DIR/other/a.pdf", "", "a (2).pdf|a.pdf", 0},
        {"--existing skip DIR/in/a.pdf DIR/other/a.pdf", "", "a.pdf", 1},
        {"--name same DIR/in/a.pdf DIR/in/d/b.pdf", "", "same.pdf", 1},
    };
    for (const Case& c : cases) {
        QDir(scratch.path(QStringLiteral("out"))).removeRecursively();
        const QString earlier = QString::fromLatin1(c.earlier);
        if (!earlier.isEmpty()) scratch.write(QStringLiteral("out/") + earlier, "earlier");
        const ToolResult result = run(c.arguments);
        EXPECT_EQ(result.exitCode, c.exitCode)
            << c.arguments << result.out.constData() << result.err.constData();
        EXPECT_EQ(filesIn("out").toStdString(), c.copies) << c.arguments;
        if (!earlier.isEmpty()) {
            EXPECT_EQ(readFile(out(c.earlier)), "earlier") << c.arguments;
        }
    }
}

TEST_F(CopyOptions, ASkippedFileKeepsItsNumbers)
{
    scratch.write(QStringLiteral("out/a.pdf"), "earlier");
    const ToolResult result = run("--continuous --existing skip --subfolders DIR/in");
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_TRUE(result.out.startsWith("Skipped ")) << result.out.constData();
    EXPECT_TRUE(pdfText(out("b.pdf"), 1).contains(QStringLiteral("Nr003")));
}

TEST_F(CopyOptions, NoFileIsProcessedInPlaceWhereNothingIsReplaced)
{
    const QByteArray before = readFile(scratch.path(QStringLiteral("in/a.pdf")));
    for (const char* const arguments :
         {"--existing skip --output DIR/in", "--existing number --output DIR/in"}) {
        const QByteArray whole = "--text Nr{0} " + QByteArray(arguments) + " DIR/in/a.pdf";
        const ToolResult result =
            runTool(qEnvironmentVariable("QUILLFERN_BIN_DIR") + QStringLiteral("/quillfern-run"),
                    words(whole.constData()).replaceInStrings(QStringLiteral("DIR"), scratch.path()));
        EXPECT_EQ(result.exitCode, 0) << result.err.constData();
        EXPECT_EQ(readFile(scratch.path(QStringLiteral("in/a.pdf"))), before) << arguments;
    }
    EXPECT_EQ(filesIn("in"), QStringLiteral("a (2).pdf|a.pdf|d/b.pdf|d/c.png"));
}

TEST_F(CopyOptions, NoCopyLeavesTheOutputFolder)
{
    scratch.write(QStringLiteral("elsewhere/b.pdf"), "of somebody else");
    ASSERT_TRUE(QDir().mkpath(scratch.path(QStringLiteral("out"))));
    ASSERT_TRUE(QFile::link(scratch.path(QStringLiteral("elsewhere")), out("d")));
    const ToolResult result = run("--keep-folders --subfolders DIR/in");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.contains("is a link or a file")) << result.out.constData();
    EXPECT_EQ(filesIn("elsewhere"), QStringLiteral("b.pdf"));
    EXPECT_EQ(readFile(scratch.path(QStringLiteral("elsewhere/b.pdf"))), "of somebody else");
    EXPECT_EQ(QDir(scratch.path(QStringLiteral("out"))).entryList(QDir::Files | QDir::Hidden),
              QStringList{QStringLiteral("a.pdf")});
}

TEST_F(CopyOptions, TheIndexHasTheHashesOfSourcesAndCopies)
{
    scratch.write(QStringLiteral("in/x.pdf"), "no document");
    for (const char* const way : {"", "--rewrite "}) {
        const ToolResult result =
            run((QByteArray(way) + "--continuous --index DIR/out/i.csv DIR/in/a.pdf DIR/in/x.pdf DIR/in/d")
                    .constData());
        EXPECT_EQ(result.exitCode, 1) << result.err.constData();
        const QList<QByteArray> lines = readFile(out("i.csv")).split('\n');
        ASSERT_EQ(lines.size(), 6) << result.out.constData();
        const auto hash = [](const QByteArray& path) {
            return QCryptographicHash::hash(readFile(QString::fromUtf8(path)), QCryptographicHash::Sha256)
                .toHex();
        };
        QByteArrayList numbers;
        for (const QByteArray& line : lines.mid(1, 4)) {
            const QList<QByteArray> fields = line.trimmed().split(',');
            ASSERT_EQ(fields.size(), 10) << line.constData();
            numbers.append(fields[4] + '-' + fields[5] + ' ' + fields[6]);
            EXPECT_EQ(fields[8], fields[2].isEmpty() ? QByteArray() : hash(fields[1]))
                << way << line.constData();
            EXPECT_EQ(fields[9], fields[2].isEmpty() ? QByteArray() : hash(fields[2]))
                << way << line.constData();
        }
        EXPECT_EQ(numbers.join('|').toStdString(),
                  "001-002 created|- no-pages|003-003 created|004-004 created");
    }
}

TEST_F(CopyOptions, WrongOnesAreRefusedBeforeAnythingIsDone)
{
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"--name {page} DIR/in", "not {page}"},
        {"--name= DIR/in", "--name takes a pattern"},
        {"--existing maybe DIR/in", "one of replace, skip, number"},
        {"--index DIR/in/a.pdf DIR/in", "would overwrite"},
        {"--index DIR/none/i.csv DIR/in", "cannot be written into"},
        {"--keep-folders --no-keep-folders DIR/in", "exclude each other"},
    };
    for (const auto& [arguments, reason] : cases) {
        const ToolResult result = run(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments;
        EXPECT_TRUE(result.err.contains(reason)) << arguments << result.err.constData();
        EXPECT_EQ(filesIn("out"), QString()) << arguments;
    }
}

} // namespace
} // namespace quillfern
