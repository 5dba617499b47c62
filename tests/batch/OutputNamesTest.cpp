#include "batch/CopyCommit.h"
#include "batch/Job.h"

#include "platform/system/NativePath.h"
#include "stamps/TextStamp.h"
#include "support/PdfBuilder.h"
#include "support/Tools.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace quillfern {
namespace {

class OutputNaming : public testing::Test
{
  protected:
    /// The plan of a job over files of so many pages each, with numbers through all of them.
    Job plan(const QStringList& files, int pages = 3)
    {
        std::vector<FileItem> items;
        for (const QString& file : files) {
            const FilePath path = asPath(scratch.path(QStringLiteral("in/") + file));
            writeDocument(path, pages);
            items.push_back(*FileItem::initWithURL(path));
            items.back().setPdfOpenPassword(QString());
        }
        EXPECT_TRUE(QDir().mkpath(out()));
        settings.outputFolderPath = out();
        settings.number->setIsContinuousNumbering(true);
        settings.number->setOptions(options);
        return planJob(items, settings, QDate(2026, 11, 16));
    }
    QString out() const { return scratch.path(QStringLiteral("out")); }
    /// The planned outputs below the output folder.
    static QStringList outputs(const Job& job)
    {
        QStringList names;
        for (const OutputFile& output : job.outputFiles)
            names.append(readableName(output.filename().text().mid(job.outputFolder.text().size() + 1)));
        return names;
    }
    void addStamp(const char* pattern, NumberType type, int padding)
    {
        auto stamp = std::make_shared<TextStamp>();
        stamp->number.numberFormat = QString::fromLatin1(pattern);
        stamp->number.numberType = type;
        stamp->number.paddingLength = padding;
        settings.number->stamps.push_back(std::move(stamp));
    }

    Scratch scratch;
    Settings settings;
    JobOptions options;

  private:
    static void writeDocument(const FilePath& path, int pages)
    {
        ASSERT_TRUE(QDir().mkpath(path.parent().text()));
        store::AtomicFile::writeWhole(path, numberedPdf(pages));
    }
};

TEST_F(OutputNaming, FollowsTheOptions)
{
    struct Case
    {
        const char* pattern;
        bool keepFolders, tifNames;
        const char* files;
        const char* copies;
    };
    const std::vector<Case> cases = {
        {"", false, false, "a:b.pdf d/x.PDF", "a:b.pdf x.PDF"},
        {"", true, false, "d/e/a.pdf d/e/f/b.pdf d/e/f/g/c.pdf", "a.pdf f/b.pdf f/g/c.pdf"},
        {"", true, false, "d/a.pdf de/b.pdf", "d/a.pdf de/b.pdf"},
        {"", false, true, "a.pdf b.jpg c.TIFF d.tif e.Png", "a.pdf b.tif c.TIFF d.tif e.tif"},
        {"{first}-{last} {name}", false, false, "a.pdf b.pdf", "0007-0009 a.pdf 0010-0012 b.pdf"},
        {"{index}_{name}_{date}", true, false, "a.pdf d/b.pdf", "1_a_2026-11-16.pdf d/2_b_2026-11-16.pdf"},
        {"../{name}/x:{index}?", false, false, "a:b.pdf", ".._a_b_x_1_.pdf"},
        {"scan", false, true, "a.pdf b.gif", "scan.pdf scan.tif"},
        {"  ", false, false, "a.pdf", "a.pdf"}, // nothing remains of the pattern
    };
    addStamp("no number", NumberType::Numbers, 2);
    addStamp("{0}", NumberType::PlainText, 2);
    addStamp("A {0} of {1}", NumberType::Numbers, 4);
    addStamp("{0}", NumberType::RomanNumbersSmall, 1);
    settings.number->setStartNumber(7);
    for (const Case& c : cases) {
        options = {};
        options.namePattern = QString::fromLatin1(c.pattern);
        options.keepFolders = c.keepFolders;
        options.tifNames = c.tifNames;
        EXPECT_EQ(outputs(plan(words(c.files))).join(u' ').toStdString(), c.copies) << c.pattern;
    }
}

TEST_F(OutputNaming, CutsWholeCharactersAndKeepsBytes)
{
    options.namePattern = QStringLiteral("{name}{name}");
    const QString umlaut = QStringLiteral("a\u0308"); // one character of three bytes
    const Job job = plan({umlaut.repeated(45) + QStringLiteral(".pdf"), pathText("caf\xE9.pdf")});
    const QByteArray name = nativePath(job.outputFiles[0].filename().name());
    EXPECT_EQ(name, (umlaut.repeated(83) + QStringLiteral(".pdf")).toUtf8()); // 249 of 251 bytes
    EXPECT_EQ(nativePath(job.outputFiles[1].filename().name()), QByteArray("caf\xE9"
                                                                           "caf\xE9.pdf"));
    const CopyName next = job.names->numbered({{}, QString::fromUtf8(name)}, 12);
    EXPECT_EQ(next.name, umlaut.repeated(82) + QStringLiteral(" (12).pdf"));
    EXPECT_EQ(OutputNames::unknownWord(QStringLiteral("{name} {page}")), QStringLiteral("{page}"));
    EXPECT_FALSE(OutputNames::unknownWord(QStringLiteral("{name}{first}{last}{index}{date}{")));
}

TEST_F(OutputNaming, UncheckedFilesMayBeLeftOut)
{
    Job job = plan({QStringLiteral("a.pdf"), QStringLiteral("b.pdf")});
    EXPECT_EQ(job.totalPages, 6);
    std::vector<FileItem> items = {job.outputFiles[0].fileItems()[0], job.outputFiles[1].fileItems()[0]};
    items[0].setIsSelected(false);
    options.checkedOnly = true;
    options.namePattern = QStringLiteral("{first}");
    settings.number->setOptions(options);
    job = planJob(items, settings);
    EXPECT_EQ(job.totalPages, 3);
    EXPECT_EQ(outputs(job), QStringList{QStringLiteral("1.pdf")}) << "numbers without the file left out";
}

TEST_F(OutputNaming, ACopyGetsItsNameWhenItIsCommitted)
{
    struct Case
    {
        ExistingCopies existing;
        const char* path; ///< where the copy went; empty for none
        const char* earlier;
    };
    const std::vector<Case> cases = {
        {ExistingCopies::Replace, "d/a.pdf", "new"},
        {ExistingCopies::Skip, "", "earlier"},
        {ExistingCopies::Number, "d/a (3).pdf", "earlier"},
    };
    options.keepFolders = true;
    const Job job = plan({QStringLiteral("d/a.pdf"), QStringLiteral("b.pdf")});
    const CopyName name{{QStringLiteral("d")}, QStringLiteral("a.pdf")};
    for (const Case& c : cases) {
        scratch.write(QStringLiteral("out/d/a.pdf"), "earlier");
        scratch.write(QStringLiteral("out/d/a (2).pdf"), "another");
        store::AtomicFile file(job.outputFiles[0].filename(), job.outputFolder);
        file.write("new", 3);
        const auto path = commitCopy(file, job.outputFolder, *job.names, name, c.existing);
        EXPECT_EQ(path ? path->text().mid(out().size() + 1).toStdString() : std::string(), c.path);
        EXPECT_EQ(readFile(out() + QStringLiteral("/d/a.pdf")), c.earlier);
        EXPECT_EQ(readFile(out() + QStringLiteral("/d/a (2).pdf")), "another");
        if (path) {
            EXPECT_EQ(readFile(path->text()), "new");
        }
    }
}

} // namespace
} // namespace quillfern
