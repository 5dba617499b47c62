// The file list at the scale of a whole archive: makes a tree of tiny but real documents, gathers them, and
// measures the delays that a user would notice. The limits are for a machine with two cores.
//
//     bench_filelist [--files N] [--keep DIR]
//
// The exit status is 1 when a value is beyond its limit.

#include "BenchSupport.h"
#include "filelist/FileGatherer.h"
#include "filelist/FileListCommands.h"
#include "filelist/FileListExport.h"
#include "filelist/FileListModel.h"

#include <QApplication>
#include <QBuffer>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>
#include <sys/resource.h>

namespace quillfern {
namespace {

double peakMiB()
{
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

QByteArray imageBytes(const char* format)
{
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return buffer.data();
}

/// Bilevel pages of one byte each.
QByteArray tiffBytes(int pages)
{
    QByteArray bytes("II*\0", 4);
    const auto number = [&](std::uint32_t value, int size) {
        for (int i = 0; i < size; ++i)
            bytes += static_cast<char>(value >> (8 * i));
    };
    number(10, 4);
    bytes += QByteArray("\xAA\0", 2);
    const std::vector<std::pair<std::uint32_t, std::uint32_t>> entries = {
        {256, 8}, {257, 1}, {258, 1}, {259, 1}, {262, 0}, {273, 8}, {278, 1}, {279, 1}};
    for (int page = 0; page < pages; ++page) {
        number(static_cast<std::uint32_t>(entries.size()), 2);
        for (const auto& [tag, value] : entries) {
            number(tag, 2);
            number(4, 2);
            number(1, 4);
            number(value, 4);
        }
        number(page + 1 < pages ? static_cast<std::uint32_t>(bytes.size()) + 4 : 0, 4);
    }
    return bytes;
}

/// 200 files a folder, folders in folders; names as scanners and people give them.
void makeTree(const QString& root, int files)
{
    const QList<std::pair<QByteArray, QString>> kinds = {
        {pdfBytes(1), QStringLiteral("pdf")},        {pdfBytes(12), QStringLiteral("PDF")},
        {tiffBytes(3), QStringLiteral("tif")},       {imageBytes("png"), QStringLiteral("png")},
        {imageBytes("jpg"), QStringLiteral("jpeg")}, {pdfBytes(3), QStringLiteral("pdf")}};
    for (int i = 0; i < files; ++i) {
        const auto& [bytes, type] = kinds[i % kinds.size()];
        const int folder = i / 200;
        const QString path = root + QStringLiteral("/Box %1/Case %2").arg(folder / 20).arg(folder);
        if (i % 200 == 0) QDir().mkpath(path);
        QFile file(path + QStringLiteral("/Scan %1 of %2.%3").arg((i * 7919) % 100003).arg(files).arg(type));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
    }
}

/// Gathers as the window does, and measures how long the event loop is blocked.
class Window final : public GatherObserver
{
  public:
    Window() : gatherer_(files, isProcessing, mainThread_, clock_, *this)
    {
        QObject::connect(&heartbeat_, &QTimer::timeout, [this] {
            longestStall = std::max(longestStall, static_cast<double>(sinceBeat_.nsecsElapsed()) / 1e6);
            sinceBeat_.start();
        });
    }

    void resetViewObject(bool) override {}
    void startProcess() override {}
    void stopProcess() override
    {
        if (cancelled_.isValid())
            cancelTook = std::max(cancelTook, static_cast<double>(cancelled_.nsecsElapsed()) / 1e6);
        isDone_ = true;
    }
    void updateTimeTakenLabel(const QString&) override {}
    void filesAdded() override
    {
        if (files.count() < cancelAt || cancelled_.isValid()) return;
        QTimer::singleShot(7, &heartbeat_, [this] { // at any moment, not only when files arrive
            cancelled_.start();
            isProcessing = false;
        });
    }

    void gather(const QString& folder)
    {
        isDone_ = false;
        cancelled_.invalidate();
        sinceBeat_.start();
        heartbeat_.start(1);
        std::optional<QString> password;
        gatherer_.start({{FilePath::fromText(folder)}, true, true}, password);
        while (!isDone_)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        heartbeat_.stop();
    }

    FileList files;
    std::atomic<bool> isProcessing = false;
    int cancelAt = std::numeric_limits<int>::max();
    double cancelTook = 0;   ///< milliseconds, the longest
    double longestStall = 0; ///< milliseconds

  private:
    EventLoopMainThread mainThread_;
    SystemClock clock_;
    QTimer heartbeat_;
    QElapsedTimer sinceBeat_;
    QElapsedTimer cancelled_;
    bool isDone_ = false;
    FileGatherer gatherer_;
};

void benchGathering(Window& window, const QString& tree, int files)
{
    report(QStringLiteral("gather %1 files with page counts").arg(files),
           milliseconds([&] { window.gather(tree); }) / 1000, "s", 60);
    report(QStringLiteral("  peak memory"), peakMiB(), "MiB", 400);
    report(QStringLiteral("  longest time the window was kept waiting"), window.longestStall, "ms", 100);
    if (window.files.count() != files) qFatal("%d files were found", window.files.count());
    report(QStringLiteral("gather them again: each refused in"),
           milliseconds([&] { window.gather(tree); }) * 1000 / files, "us", 50);
}

void benchCancel(const QString& tree, int files)
{
    Window window;
    for (const int part : {0, 5, 20, 45, 80}) {
        window.files.clear();
        window.cancelAt = files / 100 * part + 1;
        window.gather(tree);
    }
    report(QStringLiteral("from cancel to the end, the longest of five"), window.cancelTook, "ms", 100);

    // The list is sorted by a column here, so the files found are sorted in, too.
    window.cancelTook = 0;
    for (const char* column : {"name", "dateModified"}) {
        window.files.clear();
        window.files.sort({QString::fromLatin1(column), true});
        window.cancelAt = files / 100 * 90;
        window.gather(tree);
    }
    report(QStringLiteral("the same with a list that is sorted"), window.cancelTook, "ms", 100);
}

void benchSort(FileListModel& model)
{
    double slowest = 0;
    for (int column = 0; column < FileListModel::ColumnCount; ++column)
        for (const Qt::SortOrder order : {Qt::DescendingOrder, Qt::AscendingOrder}) {
            const double time = milliseconds([&] { model.sort(column, order); });
            slowest = std::max(slowest, time);
            QTextStream(stdout) << "  by " << FileListModel::columnIdentifier(column) << ' ' << time
                                << " ms\n";
        }
    report(QStringLiteral("sort by any column, the slowest"), slowest, "ms", 500);
}

std::vector<int> everyOther(int count, int from = 0)
{
    std::vector<int> rows;
    for (int row = from; row < count; row += 2)
        rows.push_back(row);
    return rows;
}

void benchView(Window& window, FileListModel& model)
{
    QTableView view;
    view.setModel(&model);
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.resize(1200, 900);
    view.show();
    QCoreApplication::processEvents();
    double slowest = 0;
    const int range = view.verticalScrollBar()->maximum();
    for (int i = 0; i < 300; ++i)
        slowest = std::max(slowest, milliseconds([&] {
                               view.verticalScrollBar()->setValue(static_cast<int>(i * 7919LL % range));
                               view.viewport()->repaint();
                           }));
    report(QStringLiteral("scroll the table to any place and paint it, the slowest"), slowest, "ms", 50);

    const int count = window.files.count();
    view.selectRow(count / 2);
    view.scrollTo(model.index(count / 2, 0));
    slowest = 0;
    for (int i = 0; i < 200; ++i)
        slowest = std::max(slowest, milliseconds([&] {
                               window.files.moveDown({count / 2 + i});
                               view.viewport()->repaint();
                           }));
    report(QStringLiteral("move a row and paint, the slowest of 200"), slowest, "ms", 50);
    if (view.selectionModel()->selectedRows().value(0).row() != count / 2 + 200) qFatal("selection lost");

    std::vector<int> block(static_cast<std::size_t>(count) / 2);
    std::iota(block.begin(), block.end(), 100);
    report(QStringLiteral("move half the list as one block"),
           milliseconds([&] { window.files.moveUp(block); }), "ms", 100);
    view.selectAll();
    report(QStringLiteral("remove every other row, all selected"),
           milliseconds([&] { window.files.remove(everyOther(count)); }), "ms", 1000);
}

int run(const QCommandLineParser& options)
{
    const int files = std::max(1000, options.value(QStringLiteral("files")).toInt());
    const QTemporaryDir temporary;
    const QString tree =
        options.isSet(QStringLiteral("keep")) ? options.value(QStringLiteral("keep")) : temporary.path();
    if (QDir(tree).isEmpty()) makeTree(tree, files);

    Window window;
    benchGathering(window, QDir(tree).absolutePath(), files);
    benchCancel(QDir(tree).absolutePath(), files);
    FileListModel model(window.files, window.isProcessing);
    benchSort(model);
    report(QStringLiteral("export the list"),
           milliseconds([&] { static_cast<void>(exportedList(window.files)); }), "ms", 2000);
    benchView(window, model);
    return failures == 0 ? 0 : 1;
}

} // namespace
} // namespace quillfern

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QCommandLineParser options;
    options.addHelpOption();
    options.addOption({QStringLiteral("files"), QStringLiteral("How many files."), QStringLiteral("N"),
                       QStringLiteral("100000")});
    options.addOption({QStringLiteral("keep"),
                       QStringLiteral("Make the tree here, or use the one that is here."),
                       QStringLiteral("DIR")});
    options.process(application);
    return quillfern::run(options);
}
