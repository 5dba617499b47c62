#include "filelist/FileListExport.h"

#include "filelist/FileListSupport.h"
#include "support/PdfBuilder.h"

#include <sys/stat.h>
#include <utime.h>

namespace quillfern {
namespace {

const QByteArray header = "Name\tPages\tSize\tType\tModified Date\tAccessed Date\tCreated Date\tLocation\n";

TEST(FileListExport, IsTheSameToTheByteWhateverTheLanguage)
{
    const Scratch scratch;
    const QString path = scratch.write(u"tab\there.PDF"_s, numberedPdf(3));
    FileList files;
    files.append({itemAt(path), itemAt(u"/gone/\u00E4.tif"_s), itemAt(pathText("/gone/\xE4.gif"))});
    files.setIsSelected(0, false);                             // marks do not matter
    const utimbuf times = {951'782'400 + 3661, 1'700'000'000}; // accessed 2000-02-29 01:01:01 UTC
    ASSERT_EQ(::utime(nativePath(path).constData(), &times), 0);
    struct statx facts = {};
    ASSERT_EQ(::statx(-1, nativePath(path).constData(), 0, STATX_BTIME, &facts), 0);
    const QDateTime born = QDateTime::fromSecsSinceEpoch(facts.stx_btime.tv_sec, Qt::UTC);
    const QByteArray created =
        (facts.stx_mask & STATX_BTIME)
            ? born.toString(Qt::ISODate).replace(u'T', u' ').chopped(1).toUtf8() + " +0000"
            : QByteArray("(null)");
    const QByteArray expected = header + "tab\there.PDF\t3\t4 KB\tPDF\t2023-11-14 22:13:20 +0000\t" +
                                "2000-02-29 01:01:01 +0000\t" + created + "\t" + scratch.path().toUtf8() +
                                "\n" + "\xC3\xA4.tif\t0\t0 KB\ttif\t(null)\t(null)\t(null)\t/gone\n" +
                                "\xEF\xBF\xBD.gif\t0\t0 KB\tgif\t(null)\t(null)\t(null)\t/gone\n";
    const QLocale before;
    for (const QLocale::Language language : {QLocale::C, QLocale::German, QLocale::Arabic}) {
        QLocale::setDefault(QLocale(language));
        EXPECT_EQ(exportedList(files), expected);
    }
    QLocale::setDefault(before);
}

} // namespace
} // namespace quillfern
