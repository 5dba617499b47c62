#include "batch/CopyCommit.h"
#include "batch/Job.h"

#include "platform/system/NativePath.h"
#include "stamps/TextStamp.h"
#include "support/PdfBuilder.h"

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
            const FilePath path = asPath(scratch.path(u"in/"_s + file));
            EXPECT_TRUE(QDir().mkpath(path.parent().text()));
            store::AtomicFile::writeWhole(path, numberedPdf(pages));
            items.push_back(*FileItem::initWithURL(path));
            items.back().setPdfOpenPassword(QString());
        }
        EXPECT_TRUE(QDir().mkpath(out()));
        settings.outputFolderPath = out();
        settings.number->setIsContinuousNumbering(true);
        settings.number->setOptions(options);
        return planJob(items, settings, QDate(2026, 11, 16));
    }
    QString out() const { return scratch.path(u"out"_s); }
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
};

TEST_F(OutputNaming, FollowsTheOptions)
{
    // the pattern, whether folders are kept, whether names end with .tif, the files, their copies
    const Rows<const char*, bool, bool, const char*, const char*> cases = {
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
    for (const auto& [pattern, keepFolders, tifNames, files, copies] : cases) {
        options = {};
        options.namePattern = QString::fromLatin1(pattern);
        options.keepFolders = keepFolders;
        options.tifNames = tifNames;
        EXPECT_EQ(outputs(plan(words(files))).join(u' ').toStdString(), copies) << pattern;
    }
}

TEST_F(OutputNaming, CutsWholeCharactersAndKeepsBytes)
{
    options.namePattern = u"{name}{name}"_s;
    const QString umlaut = u"a\u0308"_s; // one character of three bytes
    const Job job = plan({umlaut.repeated(45) + u".pdf"_s, pathText("caf\xE9.pdf")});
    const QByteArray name = nativePath(job.outputFiles[0].filename().name());
    EXPECT_EQ(name, (umlaut.repeated(83) + u".pdf"_s).toUtf8()); // 249 of 251 bytes
    EXPECT_EQ(nativePath(job.outputFiles[1].filename().name()), QByteArray("caf\xE9"
                                                                           "caf\xE9.pdf"));
    const CopyName next = job.names->numbered({{}, QString::fromUtf8(name)}, 12);
    EXPECT_EQ(next.name, umlaut.repeated(82) + u" (12).pdf"_s);
    EXPECT_EQ(OutputNames::unknownWord(u"{name} {page}"_s), u"{page}"_s);
    EXPECT_FALSE(OutputNames::unknownWord(u"{name}{first}{last}{index}{date}{"_s));
}

TEST_F(OutputNaming, UncheckedFilesMayBeLeftOut)
{
    Job job = plan(words("a.pdf b.pdf"));
    EXPECT_EQ(job.totalPages, 6);
    std::vector<FileItem> items = {job.outputFiles[0].fileItems()[0], job.outputFiles[1].fileItems()[0]};
    items[0].setIsSelected(false);
    options.checkedOnly = true;
    options.namePattern = u"{first}"_s;
    settings.number->setOptions(options);
    job = planJob(items, settings);
    EXPECT_EQ(job.totalPages, 3);
    EXPECT_EQ(outputs(job), QStringList{u"1.pdf"_s}) << "numbers without the file left out";
}

TEST_F(OutputNaming, ACopyGetsItsNameWhenItIsCommitted)
{
    // where the copy goes, if there is one, and what the earlier one is then
    const Rows<ExistingCopies, std::string, const char*> cases = {
        {ExistingCopies::Replace, "d/a.pdf", "new"},
        {ExistingCopies::Skip, "", "earlier"},
        {ExistingCopies::Number, "d/a (3).pdf", "earlier"},
    };
    options.keepFolders = true;
    const Job job = plan(words("d/a.pdf b.pdf"));
    const CopyName name{{u"d"_s}, u"a.pdf"_s};
    for (const auto& [existing, expected, earlier] : cases) {
        scratch.write(u"out/d/a.pdf"_s, "earlier");
        scratch.write(u"out/d/a (2).pdf"_s, "another");
        store::AtomicFile file(job.outputFiles[0].filename(), job.outputFolder);
        file.write("new", 3);
        const auto path = commitCopy(file, job.outputFolder, *job.names, name, existing);
        EXPECT_EQ(path ? path->text().mid(out().size() + 1).toStdString() : std::string(), expected);
        EXPECT_EQ(readFile(out() + u"/d/a.pdf"_s), earlier);
        EXPECT_EQ(readFile(out() + u"/d/a (2).pdf"_s), "another");
        EXPECT_TRUE(!path || readFile(path->text()) == "new");
    }
}

} // namespace
} // namespace quillfern
