#include "filelist/FileItem.h"

#include "filelist/FileListSupport.h"
#include "support/PdfBuilder.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace quillfern {
namespace {

const QLocale english(QLocale::English, QLocale::UnitedStates);

TEST(FileItemTest, IsMadeOfFileUrlsOnly)
{
    EXPECT_FALSE(FileItem::initWithURL(FilePath()));
    EXPECT_FALSE(FileItem::initWithURL(FilePath::fromUrl(QUrl(u"https://example.org/a.pdf"_s))));
    const FileItem a = itemAt(u"/tmp/x y/ü#?.PDF"_s);
    EXPECT_TRUE(a == itemAt(u"/tmp/x y/ü#?.PDF"_s));
    EXPECT_FALSE(a == itemAt(u"/tmp/x y/u.PDF"_s));
    EXPECT_TRUE(a.isSelected());
    EXPECT_EQ(a.name(), u"ü#?.PDF"_s);
    EXPECT_EQ(a.location(), u"/tmp/x y"_s);
    EXPECT_EQ(a.type(), u"PDF"_s) << "as it is written";
    EXPECT_EQ(a.pages(), 0) << "a file that is not there has none";
    EXPECT_FALSE(a.dateModified().isValid());
}

TEST(FileItemTest, WritesSizesForPeople)
{
    const std::vector<std::pair<std::int32_t, const char*>> cases = {{0, "0 KB"},
                                                                     {499, "0 KB"},
                                                                     {500, "1 KB"},
                                                                     {1000, "1 KB"},
                                                                     {1500, "2 KB"},
                                                                     {1'000'000, "1000 KB"},
                                                                     {1'000'001, " 1 MB"},
                                                                     {1'500'000, " 1.5 MB"},
                                                                     {2'345'678, " 2.3 MB"},
                                                                     {12'345'678, "12.3 MB"},
                                                                     {999'000'000, "999 MB"},
                                                                     {2'000'000'000, " 2 GB"}};
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(sizeText(bytes).toStdString(), text) << bytes;
}

TEST(FileItemTest, FillsTheColumns)
{
    Scratch scratch;
    const QString path = scratch.write(u"a.Pdf"_s, numberedPdf(2));
    const FileItem file = itemAt(path);
    const QDateTime modified(QDate(2025, 11, 3), QTime(15, 4));
    const timespec times[2] = {{1'763'000'000, 0}, {modified.toSecsSinceEpoch(), 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
    EXPECT_EQ(file.displayField(u"Name"_s, english), QVariant(u"a.Pdf"_s));
    EXPECT_EQ(file.displayField(u"PAGES"_s, english), QVariant(2));
    EXPECT_EQ(file.displayField(u"other"_s, english), QVariant(QString()));
    EXPECT_EQ(file.displayField(u"dateModified"_s, english), QVariant(u"03-Nov-2025 3:04 PM"_s));
}

TEST(FileItemTest, TakesTheSizeOnDisk)
{
    Scratch scratch;
    const QString path = scratch.write(u"sparse.pdf"_s, "x");
    ASSERT_TRUE(QFile::resize(path, 50'000'000)); // a hole takes no room on the disk
    EXPECT_LT(itemAt(path).size(), 1'000'000);
}

} // namespace
} // namespace quillfern
