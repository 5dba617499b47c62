// Names, places and the index of copies, as the options of the program want them.

#include "runner/ProgramFixture.h"

#include <QCryptographicHash>
#include <QDirIterator>

namespace quillfern {
namespace {

class CopyOptions : public ProgramFixture
{
  protected:
    CopyOptions()
    {
        scratch.write(u"in/a.pdf"_s, numberedPdf(2));
        scratch.write(u"in/d/b.pdf"_s, numberedPdf(1));
        scratch.write(u"other/a.pdf"_s, numberedPdf(1));
        scratch.writePicture(u"in/d/c.png"_s, {40, 30});
    }
    /// Runs the program with a stamp, the output folder "out" and further words.
    ToolResult job(const QByteArray& words) const
    {
        return run("--text Nr{0} --padding 3 --output DIR/out " + words);
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
};

TEST_F(CopyOptions, DecideNamesAndPlaces)
{
    // a copy of an earlier job, and what is there afterwards
    const Rows<const char*, const char*, const char*, int> cases = {
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
    for (const auto& [arguments, earlier, copies, exitCode] : cases) {
        QDir(out()).removeRecursively();
        if (*earlier) scratch.write(u"out/"_s + QLatin1String(earlier), "earlier");
        const ToolResult result = job(arguments);
        EXPECT_EQ(result.exitCode, exitCode) << arguments << result.out.constData() << result.err.constData();
        EXPECT_EQ(filesIn("out").toStdString(), copies) << arguments;
        EXPECT_TRUE(!*earlier || readFile(out(earlier)) == "earlier") << arguments;
    }
}

TEST_F(CopyOptions, ASkippedFileKeepsItsNumbers)
{
    scratch.write(u"out/a.pdf"_s, "earlier");
    const ToolResult result = job("--continuous --existing skip --subfolders DIR/in");
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_TRUE(result.out.startsWith("Skipped ")) << result.out.constData();
    EXPECT_TRUE(pdfText(out("b.pdf"), 1).contains(u"Nr003"_s));
}

TEST_F(CopyOptions, NoFileIsProcessedInPlaceWhereNothingIsReplaced)
{
    const QByteArray before = readFile(at("in/a.pdf"));
    for (const char* const existing : {"skip", "number"}) {
        const ToolResult result =
            run("--text Nr{0} --output DIR/in DIR/in/a.pdf --existing " + QByteArray(existing));
        EXPECT_EQ(result.exitCode, 0) << result.err.constData();
        EXPECT_EQ(readFile(at("in/a.pdf")), before) << existing;
    }
    EXPECT_EQ(filesIn("in"), u"a (2).pdf|a.pdf|d/b.pdf|d/c.png"_s);
}

TEST_F(CopyOptions, NoCopyLeavesTheOutputFolder)
{
    scratch.write(u"elsewhere/b.pdf"_s, "of somebody else");
    ASSERT_TRUE(QFile::link(at("elsewhere"), out("d")));
    const ToolResult result = job("--keep-folders --subfolders DIR/in");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.contains("is a link or a file")) << result.out.constData();
    EXPECT_EQ(filesIn("elsewhere"), u"b.pdf"_s);
    EXPECT_EQ(readFile(at("elsewhere/b.pdf")), "of somebody else");
    EXPECT_EQ(QDir(at("out")).entryList(QDir::Files | QDir::Hidden), QStringList{u"a.pdf"_s});
}

TEST_F(CopyOptions, TheIndexHasTheHashesOfSourcesAndCopies)
{
    scratch.write(u"in/x.pdf"_s, "no document");
    for (const QByteArray way : {"", "--rewrite "}) {
        const ToolResult result =
            job(way + "--continuous --index DIR/out/i.csv DIR/in/a.pdf DIR/in/x.pdf DIR/in/d");
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
            for (const int i : {1, 2}) // source and copy
                EXPECT_EQ(fields[7 + i], fields[2].isEmpty() ? QByteArray() : hash(fields[i]))
                    << line.constData();
        }
        EXPECT_EQ(numbers.join('|').toStdString(),
                  "001-002 created|- no-pages|003-003 created|004-004 created");
    }
}

TEST_F(CopyOptions, WrongOnesAreRefusedBeforeAnythingIsDone)
{
    const Rows<const char*, const char*> cases = {
        {"--name {page} DIR/in", "not {page}"},
        {"--name= DIR/in", "--name takes a pattern"},
        {"--existing maybe DIR/in", "one of replace, skip, number"},
        {"--index DIR/in/a.pdf DIR/in", "would overwrite"},
        {"--index DIR/none/i.csv DIR/in", "cannot be written into"},
        {"--keep-folders --no-keep-folders DIR/in", "exclude each other"},
    };
    for (const auto& [arguments, reason] : cases) {
        const ToolResult result = job(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments;
        EXPECT_TRUE(result.err.contains(reason)) << arguments << result.err.constData();
        EXPECT_EQ(filesIn("out"), QString()) << arguments;
    }
}

} // namespace
} // namespace quillfern
