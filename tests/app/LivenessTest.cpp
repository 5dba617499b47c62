#include "app/AppFixture.h"
#include "stamps/TextStamp.h"

#include <QAbstractButton>
#include <QFile>
#include <QSemaphore>
#include <QTimer>
#include <atomic>

namespace quillfern {
namespace {

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
    // Each file is in work until the window has handled an event that was posted when the file was begun.
    const auto waitForWindow = [&](JobRun& run) {
        const auto turn = std::make_shared<QSemaphore>();
        QMetaObject::invokeMethod(
            &window(), [turn] { turn->release(); }, Qt::QueuedConnection);
        if (turn->tryAcquire(1, 30'000)) ++served;
        run.pageDone();
    };
    makeProcessors = [&](const JobConfiguration&) { return std::make_unique<FakeProcessors>(waitForWindow); };
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
