#include "app/AppFixture.h"
#include "stamps/TextStamp.h"

#include <QAbstractButton>
#include <QFile>
#include <QThread>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <vector>

namespace quillfern {
namespace {

using Steady = std::chrono::steady_clock;
using std::chrono::duration_cast;
using std::chrono::milliseconds;
using namespace std::chrono_literals;

struct Gap
{
    Steady::time_point from;
    Steady::time_point to;
};

/// Beats every few milliseconds on the thread it lives on and notes every beat that came late.
class Beats
{
  public:
    void beat()
    {
        const auto now = Steady::now();
        if (last_ && now - *last_ > 25ms) gaps_.push_back({*last_, now});
        last_ = now;
    }
    [[nodiscard]] const std::vector<Gap>& gaps() const { return gaps_; }

  private:
    std::optional<Steady::time_point> last_;
    std::vector<Gap> gaps_;
};

/// Listens to the main thread's heart, and beside it to that of a thread that has nothing else to do: while
/// that one is late as well, the machine was busy with something else, and nobody stood in the way.
class Heartbeat
{
  public:
    Heartbeat()
        : idle_(QThread::create([this] {
              while (!isEnding_) {
                  idleBeats_.beat();
                  QThread::msleep(5);
              }
              idleBeats_.beat();
          }))
    {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, [this] { beats_.beat(); });
        timer_.start(5);
        beats_.beat();
        idle_->start();
    }
    ~Heartbeat() { end(); }

    /// The longest time that the main thread's heart stood still by its own doing.
    int longestStall()
    {
        beats_.beat();
        end();
        int longest = 0;
        for (const Gap& gap : beats_.gaps()) {
            auto own = gap.to - gap.from;
            for (const Gap& noise : idleBeats_.gaps()) {
                const auto from = std::max(gap.from, noise.from);
                const auto to = std::min(gap.to, noise.to);
                if (from < to) own -= to - from;
            }
            longest = std::max(longest, static_cast<int>(duration_cast<milliseconds>(own).count()));
        }
        return longest;
    }

  private:
    void end()
    {
        timer_.stop();
        isEnding_ = true;
        idle_->wait();
    }

    Beats beats_;
    Beats idleBeats_;
    QTimer timer_;
    std::atomic<bool> isEnding_ = false;
    std::unique_ptr<QThread> idle_;
};

constexpr int longestAllowedMs = 100;

class Liveness : public AppTest
{
};

TEST_F(Liveness, TheHeartbeatHearsAStall)
{
    Heartbeat heart;
    QTest::qWait(50);
    QThread::msleep(160);
    QTest::qWait(50);
    EXPECT_GT(heart.longestStall(), longestAllowedMs);
}

TEST_F(Liveness, TheWindowStaysLiveWhileTenThousandFilesAreGathered)
{
    const QByteArray document = numberedPdf(1);
    const QString first = scratch.write(QStringLiteral("many/00000.pdf"), document);
    for (int i = 1; i < 10'000; ++i)
        QFile::link(first, scratch.path(QStringLiteral("many/%1.pdf").arg(i, 5, 10, QLatin1Char('0'))));
    start();
    ui().mainTableView->sortByColumn(FileListModel::NameColumn, Qt::DescendingOrder);
    QTest::qWait(400);
    Heartbeat heart;
    fill({scratch.path(QStringLiteral("many"))});
    const int stall = heart.longestStall();
    RecordProperty("longest_stall_ms", stall);
    EXPECT_LE(stall, longestAllowedMs);
    EXPECT_EQ(files().count(), 10'000);
    EXPECT_EQ(files().at(0).name(), QStringLiteral("09999.pdf"));
}

TEST_F(Liveness, TheWindowStaysLiveWhileThreeHundredFilesAreStamped)
{
    QStringList paths;
    for (int i = 0; i < 300; ++i)
        paths.append(pdf(qPrintable(QStringLiteral("in/%1.pdf").arg(i)), 5));
    start();
    fill(paths);
    number().stamps.push_back(std::make_shared<TextStamp>());
    number().endUpdate(true);
    ui().outputFolderPath->setText(outFolder());
    QTest::qWait(400);
    Heartbeat heart;
    QTest::mouseClick(ui().convertBtn, Qt::LeftButton);
    waitFor([this] { return app().job().process() && app().job().process()->isCompleted(); }, "the job");
    QTest::qWait(50);
    const int stall = heart.longestStall();
    RecordProperty("longest_stall_ms", stall);
    EXPECT_LE(stall, longestAllowedMs);
    EXPECT_EQ(app().job().process()->totalFileCreated(), 300);
    QTest::keyClick(sheet(), Qt::Key_Escape);
}

} // namespace
} // namespace quillfern
