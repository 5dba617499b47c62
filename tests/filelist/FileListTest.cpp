#include "filelist/FileListModel.h"
#include "filelist/FileListSupport.h"
#include "support/PdfBuilder.h"

#include <QAbstractItemModelTester>
#include <QLocale>
#include <random>
#include <utime.h>

namespace quillfern {
namespace {

TEST(FileList, SortsAsPeopleDo)
{
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"b10.pdf a2.pdf A1.pdf b9.pdf", "A1.pdf a2.pdf b9.pdf b10.pdf"},
        {"x007.pdf x10.pdf x7a.pdf x8.pdf", "x007.pdf x7a.pdf x8.pdf x10.pdf"},
        {"p99999999999999999999.pdf p100000000000000000000.pdf p2.pdf",
         "p2.pdf p99999999999999999999.pdf p100000000000000000000.pdf"},
        {"Zoo.pdf \xC3\x84pfel.pdf april.pdf", "\xC3\x84pfel.pdf april.pdf Zoo.pdf"}, // beside its letter
        {"B.pdf b.PDF a.pdf", "a.pdf B.pdf b.PDF"}, // equal but for case: as they were
    };
    const QLocale before;
    for (const QLocale& locale : {QLocale(QLocale::English), QLocale::c()}) {
        QLocale::setDefault(locale);
        for (const auto& [names, sorted] : cases) {
            FileList files;
            files.append(itemsNamed(words(names)));
            files.sort({u"NAME"_s, true});
            EXPECT_EQ(namesOf(files), words(sorted)) << locale.name().toStdString();
        }
    }
    QLocale::setDefault(before);
}

TEST(FileList, SortsNumbersAndDatesByTheirValues)
{
    const Scratch scratch;
    FileList files;
    // padding: bytes that are appended to make the size
    // Sorted as texts, "9.0 MB" would stand in front of "98 KB" or behind "100 KB", and dates would be sorted
    // by their day.
    for (const auto& [name, pages, padding, modified] :
         Rows<const char*, int, int, time_t>{{"ten.pdf", 10, 0, 1'000'000},
                                             {"two.pdf", 2, 9'000'000, 30'000'000},
                                             {"nine.pdf", 9, 100'000, 999'999'999}}) {
        const QString path =
            scratch.write(QString::fromLatin1(name), numberedPdf(pages) + QByteArray(padding, '\n'));
        const utimbuf times = {modified, modified};
        ASSERT_EQ(::utime(nativePath(path).constData(), &times), 0);
        files.append({itemAt(path)});
    }
    files.append({itemAt(scratch.path(u"absent.tif"_s))});
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"pages", "absent.tif two.pdf nine.pdf ten.pdf"},
        {"sizeInKB", "absent.tif ten.pdf nine.pdf two.pdf"},
        {"dateModified", "absent.tif ten.pdf two.pdf nine.pdf"},
        {"type", "two.pdf nine.pdf ten.pdf absent.tif"},
    };
    for (const auto& [column, ascending] : cases) {
        files.sort({u"pages"_s, true}); // so that equal rows have an order to keep
        files.sort({QString::fromLatin1(column), true});
        EXPECT_EQ(namesOf(files), words(ascending)) << column;
    }
    files.sort({u"type"_s, false});
    EXPECT_EQ(namesOf(files), words("absent.tif two.pdf nine.pdf ten.pdf")) << "stable downwards, too";
    files.sort({u"nonsense"_s, false});
    EXPECT_EQ(namesOf(files), words("absent.tif two.pdf nine.pdf ten.pdf"));
}

TEST(FileList, TotalsFollowEveryChange)
{
    const Scratch scratch;
    FileList files;
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (const char* name : {"a.PDF", "b.pdf", "c.pdf"})
        files.append({itemAt(scratch.write(QString::fromLatin1(name), numberedPdf(name[0] - 'a' + 2)))});
    for (const char* name : {"x.jpeg", "y.Tif", "z.TIFF"}) { // the extension decides, not the content
        const QString path = scratch.path(QString::fromLatin1(name));
        ASSERT_TRUE(image.save(path, "png"));
        files.append({itemAt(path)});
    }
    EXPECT_EQ(files.totals(), (FileTotals{6, 9, 2, 1}));
    EXPECT_EQ(totalLabelText(files.totals()),
              u"6 Total file(s); Total page count of PDF files: 9  TIFF files: 2  Other files: 1"_s);

    // A file that has changed is counted anew with its password.
    scratch.write(u"b.pdf"_s, numberedPdf(30));
    std::vector<FileItem> counted = {itemAt(files.at(1).filePath().text()), itemAt(u"/nowhere/x.pdf"_s),
                                     itemAt(files.at(0).filePath().text())};
    counted[0].setPdfOpenPassword(u"secret"_s);
    files.setIsSelected(1, false);
    EXPECT_EQ(files.takeCounts(counted, 5), 1) << "found all round";
    EXPECT_FALSE(files.at(1).isSelected());
    EXPECT_EQ(files.totals(), (FileTotals{6, 36, 2, 1}));
    EXPECT_EQ(files.at(1).pdfOpenPassword(), u"secret"_s);
    files.setIsSelected(0, false);
    files.sort({u"pages"_s, false});
    EXPECT_EQ(files.totals(), (FileTotals{6, 36, 2, 1}));
    files.remove({0, 5}); // the 30 pages and one of the pictures
    EXPECT_EQ(files.totals().files, 4);
    EXPECT_EQ(files.totals().pdfPages, 6);
    files.clear();
    EXPECT_EQ(files.totals(), FileTotals{});
}

/// Moves by definition, one item and one place at a time.
std::vector<int> movedOneByOne(QStringList& names, const std::vector<int>& rows, bool down)
{
    QStringList selected;
    for (const int row : rows)
        selected.append(names[row]);
    if (down) std::reverse(selected.begin(), selected.end());
    std::vector<int> now;
    for (const QString& name : selected) {
        const qsizetype i = names.indexOf(name);
        const qsizetype next = down ? i + 1 : i - 1;
        if (next < 0 || next >= names.size()) break;
        names.swapItemsAt(i, next);
        now.push_back(static_cast<int>(next));
    }
    std::sort(now.begin(), now.end());
    return now;
}

/// Random changes of list and model against plain lists of names. Qt's tester watches every signal, and
/// persistent indexes, as views keep them for selection and scrolling, must stay with their items.
TEST(FileList, ModelAndListAgreeThroughAThousandRandomChanges)
{
    std::mt19937 random(20261121);
    const auto upTo = [&](int n) { return std::uniform_int_distribution<int>(0, n)(random); };
    FileList files;
    const std::atomic<bool> isProcessing = false;
    FileListModel model(files, isProcessing);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    int resets = 0;
    QObject::connect(&model, &QAbstractItemModel::modelReset, [&] { ++resets; });
    const auto numberIn = [](const QString& name) { return name.mid(1, name.size() - 5).toInt(); };

    QStringList names;
    int made = 0;
    for (int step = 0; step < 1000; ++step) {
        std::vector<std::pair<QPersistentModelIndex, QString>> watched;
        for (int row = 0; row < files.count(); row += 1 + upTo(5))
            watched.emplace_back(model.index(row, upTo(8)), names[row]);
        std::vector<int> rows;
        const int sparse = upTo(6);
        for (int row = 0; row < names.size(); ++row)
            if (upTo(sparse) == 0) rows.push_back(row);

        const int what = upTo(9);
        if (what < 3) {
            QStringList fresh;
            for (int i = upTo(20); i >= 0; --i)
                fresh.append(u"f%1.pdf"_s.arg((made++ * 7919) % 1009));
            for (const QString& name : fresh)
                if (!names.contains(name)) names.append(name);
            files.append(itemsNamed(fresh));
        } else if (what < 5) {
            const auto now = movedOneByOne(names, rows, what == 3);
            EXPECT_EQ(what == 3 ? files.moveDown(rows) : files.moveUp(rows), now);
        } else if (what < 7) {
            files.remove(rows);
            for (auto row = rows.rbegin(); row != rows.rend(); ++row)
                names.removeAt(*row);
        } else if (what < 9) {
            const bool ascending = what == 7;
            model.sort(FileListModel::NameColumn, ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
            std::sort(names.begin(), names.end(), [&](const QString& a, const QString& b) {
                return ascending ? numberIn(a) < numberIn(b) : numberIn(b) < numberIn(a);
            });
        } else {
            files.setIsSelected(rows, std::nullopt);
        }
        ASSERT_EQ(namesOf(files), names) << "after step " << step << " of kind " << what;
        for (const auto& [index, name] : watched) {
            ASSERT_EQ(index.isValid(), names.contains(name)) << "step " << step << " of kind " << what;
            if (!index.isValid()) continue;
            ASSERT_EQ(files.at(index.row()).name(), name) << "step " << step << " of kind " << what;
        }
    }
    EXPECT_EQ(resets, 0);
}

} // namespace
} // namespace quillfern
