#include "filelist/FileItem.h"

#include "support/PdfBuilder.h"
#include "support/Tools.h"

#include <QFile>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quillfern {
namespace {

const QLocale english(QLocale::English, QLocale::UnitedStates);

FileItem item(const QString& path)
{
    auto made = FileItem::initWithURL(asPath(path));
    EXPECT_TRUE(made);
    made->setPdfOpenPassword(std::nullopt);
    return *made;
}

TEST(FileItemTest, IsMadeOfFileUrlsOnly)
{
    EXPECT_FALSE(FileItem::initWithURL(FilePath()));
    EXPECT_FALSE(FileItem::initWithURL(FilePath::fromUrl(QUrl(QStringLiteral("https://example.org/a.pdf")))));
    const FileItem a = item(QStringLiteral("/tmp/x y/ü#?.PDF"));
    EXPECT_TRUE(a == item(QStringLiteral("/tmp/x y/ü#?.PDF")));
    EXPECT_FALSE(a == item(QStringLiteral("/tmp/x y/u.PDF")));
    EXPECT_TRUE(a.isSelected());
    EXPECT_EQ(a.name(), QStringLiteral("ü#?.PDF"));
    EXPECT_EQ(a.location(), QStringLiteral("/tmp/x y"));
    EXPECT_EQ(a.type(), QStringLiteral("PDF")) << "as it is written";
    EXPECT_EQ(a.pages(), 0) << "a file that is not there has none";
    EXPECT_FALSE(a.dateModified().isValid());
}

TEST(FileItemTest, OneFileIsOneItemHoweverItIsSpelt)
{
    const FileItem plain = item(QStringLiteral("/x/a.pdf"));
    for (const char* url : {"file:///x/a.pdf/", "file:///x/./a.pdf", "file:////x//a.pdf", "file:///x/%61.pdf",
                            "file://localhost/x/y/../a.pdf"}) {
        const auto same = FileItem::initWithURL(FilePath::fromUrl(QUrl::fromEncoded(url)));
        ASSERT_TRUE(same) << url;
        EXPECT_TRUE(*same == plain) << url;
        EXPECT_EQ(same->name(), QStringLiteral("a.pdf")) << url;
        EXPECT_EQ(same->location(), QStringLiteral("/x")) << url;
        EXPECT_EQ(same->fileType(), FileType::Pdf) << url;
    }
    EXPECT_FALSE(item(QStringLiteral("/x/A.pdf")) == plain);
}

TEST(FileItemTest, WritesSizesForPeople)
{
    const std::vector<std::pair<std::int32_t, const char*>> cases = {{0, "0 KB"},
                                                                     {499, "0 KB"},
                                                                     {500, "1 KB"},
                                                                     {999, "1 KB"},
                                                                     {1000, "1 KB"},
                                                                     {1500, "2 KB"},
                                                                     {1'000'000, "1000 KB"},
                                                                     {1'000'001, " 1 MB"},
                                                                     {1'500'000, " 1.5 MB"},
                                                                     {2'000'000, " 2 MB"},
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
    const QString path = scratch.write(QStringLiteral("a.Pdf"), numberedPdf(2));
    const FileItem file = item(path);
    struct timespec times[2] = {{1'763'000'000, 0}, {1'762'988'888, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
    EXPECT_EQ(file.displayField(QStringLiteral("Name"), english), QVariant(QStringLiteral("a.Pdf")));
    EXPECT_EQ(file.displayField(QStringLiteral("PAGES"), english), QVariant(2));
    EXPECT_EQ(file.displayField(QStringLiteral("other"), english), QVariant(QString()));
    const QDateTime modified = QDateTime::fromSecsSinceEpoch(1'762'988'888);
    const int hour = modified.time().hour() % 12 == 0 ? 12 : modified.time().hour() % 12;
    EXPECT_EQ(file.displayField(QStringLiteral("dateModified"), english).toString().toStdString(),
              QStringLiteral("%1-%2-2025 %3:%4 %5")
                  .arg(modified.date().day(), 2, 10, QLatin1Char('0'))
                  .arg(english.monthName(modified.date().month(), QLocale::ShortFormat))
                  .arg(hour)
                  .arg(modified.time().minute(), 2, 10, QLatin1Char('0'))
                  .arg(modified.time().hour() < 12 ? QStringLiteral("AM") : QStringLiteral("PM"))
                  .toStdString());
}

TEST(FileItemTest, TakesTheSizeOnDisk)
{
    Scratch scratch;
    const QString path = scratch.write(QStringLiteral("sparse.pdf"), "x");
    ASSERT_TRUE(QFile::resize(path, 50'000'000)); // a hole takes no room on the disk
    EXPECT_LT(item(path).size(), 1'000'000);
}

} // namespace
} // namespace quillfern
