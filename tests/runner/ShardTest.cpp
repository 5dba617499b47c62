// Parts of one job, done by several programs at once.

#include "filelist/KnownCounts.h"
#include "platform/system/Failure.h"
#include "support/PdfBuilder.h"
#include "support/Tools.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImage>

namespace quillfern {
namespace {

class Shards : public testing::Test
{
  protected:
    void SetUp() override
    {
        qputenv("XDG_DATA_HOME", scratch.path(u"data"_s).toUtf8());
        for (int i = 0; i < 9; ++i)
            scratch.write(u"in/%1/f%2.pdf"_s.arg(i % 2).arg(i), numberedPdf(1 + i % 3));
        scratch.writePicture(u"in/1/scan.png"_s, QSize(600, 800));
        scratch.write(u"in/0/broken.pdf"_s, "%PDF-1.4 no more");
        QDir().mkpath(scratch.path(u"out"_s));
    }
    /// A command line with the scratch folder for each DIR.
    QStringList line(const QByteArray& text) const
    {
        return words(text.constData()).replaceInStrings(u"DIR"_s, scratch.path());
    }
    ToolResult run(const QByteArray& arguments) const
    {
        return runTool(program, line("--text {0}/{0} --padding 4 --symmetric --continuous " + arguments));
    }
    /// All copies, by their place, and whether all are gone afterwards.
    QMap<QString, QByteArray> takeCopies() const
    {
        QMap<QString, QByteArray> copies;
        const QString out = scratch.path(u"out"_s);
        QDirIterator files(out, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            copies.insert(path.mid(out.size()), readFile(path));
        }
        QDir(out).removeRecursively();
        QDir().mkpath(out);
        return copies;
    }

    const QString program = qEnvironmentVariable("QUILLFERN_BIN_DIR") + u"/quillfern-run"_s;
    const Scratch scratch;
};

TEST_F(Shards, GiveWhatOneRunGivesByteForByte)
{
    const QByteArray job =
        "--keep-folders --name {index}_{first}-{last}_{name} --output DIR/out --subfolders DIR/in ";
    EXPECT_EQ(run(job + "--index DIR/whole.csv").exitCode, 1) << "one file is broken";
    const auto whole = takeCopies();
    ASSERT_EQ(whole.size(), 10);
    ASSERT_EQ(runTool(program, line("--save-counts DIR/counts --subfolders DIR/in")).exitCode, 0);
    const QByteArray command = "--text {0}/{0} --padding 4 --symmetric --continuous " + job +
                               "--counts DIR/counts --shard %K/4 --index DIR/%K.csv";
    QStringList parts = line("-j4 -I %K " + program.toUtf8() + ' ' + command + " ::: 1 2 3 4");
    const ToolResult result = runTool(u"parallel"_s, parts);
    EXPECT_EQ(result.exitCode, 1) << "the part with the broken file: " << result.err.constData();
    EXPECT_EQ(takeCopies(), whole);
    QByteArray index;
    for (const char* const part : {"1", "2", "3", "4"})
        index += readFile(scratch.path(QLatin1String(part) + u".csv"_s));
    EXPECT_EQ(index.toStdString(), readFile(scratch.path(u"whole.csv"_s)).toStdString());
}

TEST_F(Shards, AreRefusedOrToldWhereTheyWouldNotFit)
{
    ASSERT_EQ(runTool(program, line("--save-counts DIR/counts --subfolders DIR/in")).exitCode, 0);
    QByteArray wrong = readFile(scratch.path(u"counts"_s));
    scratch.write(u"wrong"_s, wrong.replace("2\t1\t", "5\t1\t"));
    scratch.write(u"torn"_s, "pages\tcompression\tsize\tpath\n3\t1");
    scratch.write(u"other/f8.pdf"_s, numberedPdf(1));
    const Rows<const char*, int, const char*> cases = {
        {"--shard 1/2 --subfolders DIR/in/1", 0, "All files processed"},
        {"--shard 3/2 DIR/in/1", 2, "--shard"},
        {"--shard 2 DIR/in/1", 2, "K/N"},
        {"--shard 9/9 DIR/in/1/f1.pdf DIR/in/1/f3.pdf", 0, ""},
        {"--counts DIR/torn DIR/in/1", 2, "Line 2 is no line of page counts"},
        {"--counts DIR/none DIR/in/1", 2, "cannot be used"},
        {"--counts DIR/wrong DIR/in/1", 1, "Count the pages again"},
        {"--counts DIR/wrong --shard 1/2 DIR/in/1", 1, "Count the pages again"},
        {"--shard 1/2 DIR/in/0/f8.pdf DIR/other", 1, "different parts of the job"},
        {"--shard 1/2 DIR/in/0/broken.pdf DIR/in/1", 1, "no-pages"},
    };
    for (const auto& [arguments, exitCode, said] : cases) {
        const ToolResult result = run("--json --output DIR/out " + QByteArray(arguments));
        EXPECT_EQ(result.exitCode, exitCode) << arguments << result.out.constData();
        EXPECT_TRUE(result.out.contains(said)) << arguments << result.out.constData();
    }
}

TEST_F(Shards, CountsAreTakenAsLongAsAFileHasItsSize)
{
    const FilePath path = asPath(scratch.path(u"in/0/f0.pdf"_s));
    FileItem item = *FileItem::initWithURL(path);
    item.takeCount(PageCount{7, 4});
    const KnownCounts counts(KnownCounts::text({item}));
    ASSERT_TRUE(counts.of(path));
    EXPECT_EQ(counts.of(path)->pages, 7);
    EXPECT_EQ(counts.of(path)->compression, 4);
    scratch.write(u"in/0/f0.pdf"_s, numberedPdf(2));
    EXPECT_FALSE(counts.of(path));
    for (const char* const text : {"", "x", "pages\tcompression\tsize\tpath\n-1\t1\t1\t/a\n"})
        EXPECT_THROW(KnownCounts{QByteArray(text)}, Failure) << text;
}

} // namespace
} // namespace quillfern
