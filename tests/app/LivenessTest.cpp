#include "app/AppFixture.h"
#include "stamps/TextStamp.h"

#include <QAbstractButton>
#include <QFile>
#include <QSemaphore>
#include <QTimer>
#include <atomic>

namespace quillfern {
namespace {

/// Works on each file until the window has handled an event that was posted when the file was begun.
class WaitingProcessors final : public DocumentProcessors
{
  public:
    WaitingProcessors(QObject& window, std::atomic<int>& served) : window_(window), served_(served) {}

    FileOutcome processPDF(const FilePath&, const FilePath&, const QString&, JobRun& run) override
    {
        const auto turn = std::make_shared<QSemaphore>();
        QMetaObject::invokeMethod(
            &window_, [turn] { turn->release(); }, Qt::QueuedConnection);
        if (turn->tryAcquire(1, 30'000)) ++served_;
        run.pageDone();
        return {FileStatus::Created, std::nullopt, 1, std::nullopt};
    }
    FileOutcome processTIFF(const FilePath&, const FilePath&, JobRun&, std::int32_t) override { return {}; }

  private:
    QObject& window_;
    std::atomic<int>& served_;
};

class Liveness : public AppTest
{
};

TEST_F(Liveness, TheWindowServesEventsWhileFilesAreGathered)
{
    constexpr int count = 3'000;
    const QString first = scratch.write(QStringLiteral("many/00000.pdf"), numberedPdf(1));
    for (int i = 1; i < count; ++i)
        QFile::link(first, scratch.path(QStringLiteral("many/%1.pdf").arg(i, 5, 10, QLatin1Char('0'))));
    start();
    ui().mainTableView->sortByColumn(FileListModel::NameColumn, Qt::DescendingOrder);
    int turns = 0; // of the event loop; at least one between two calls of the gatherer to the main thread
    QTimer turn;
    QObject::connect(&turn, &QTimer::timeout, [&] { turns += app().activity().isGathering() ? 1 : 0; });
    turn.start(0);
    fill({scratch.path(QStringLiteral("many"))});
    EXPECT_GE(turns, 2);
    EXPECT_EQ(files().count(), count);
    EXPECT_EQ(files().at(0).name(), QStringLiteral("02999.pdf"));
}

TEST_F(Liveness, TheWindowServesEventsDuringEveryFileOfAJob)
{
    std::atomic<int> served = 0;
    makeProcessors = [&](const JobConfiguration&) {
        return std::make_unique<WaitingProcessors>(window(), served);
    };
    QStringList paths;
    for (int i = 0; i < 20; ++i)
        paths.append(pdf(qPrintable(QStringLiteral("in/%1.pdf").arg(i)), 1));
    start();
    fill(paths);
    ui().outputFolderPath->setText(outFolder());
    QTest::mouseClick(ui().convertBtn, Qt::LeftButton);
    waitFor([this] { return app().job().process() && app().job().process()->isCompleted(); }, "the job");
    EXPECT_EQ(served, paths.size());
    QTest::keyClick(sheet(), Qt::Key_Escape);
}

} // namespace
} // namespace quillfern
