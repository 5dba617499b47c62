// The whole window at work: how long the main thread's event loop is blocked while many files are gathered
// and while a job runs. Time in which the machine was busy with other programs does not count.
//
//     bench_liveness [--files N]
//
// The exit status is 1 when a value is beyond its limit.

#include "BenchSupport.h"
#include "app/MainWindow.h"
#include "app/QuillfernAppDelegate.h"
#include "app/WindowActions.h"
#include "app/WindowControls.h"
#include "platform/drawing/FontCatalog.h"
#include "stamps/TextStamp.h"
#include "support/Fakes.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <clocale>
#include <vector>

namespace quillfern {
namespace {

using Steady = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;
using namespace std::chrono_literals;

constexpr double longestAllowedMs = 100;

struct Gap
{
    Steady::time_point from;
    Steady::time_point to;
};

/// Is called by a timer every few milliseconds and records every call that came late.
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

/// The beats of the main thread, and those of a second thread that has nothing else to do: while both are
/// late, the machine was busy with other programs.
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

    /// The longest time, in milliseconds, that the main thread's event loop was blocked by its own work.
    double longestStall()
    {
        beats_.beat();
        end();
        Milliseconds longest{0};
        for (const Gap& gap : beats_.gaps()) {
            Milliseconds own = gap.to - gap.from;
            for (const Gap& noise : idleBeats_.gaps()) {
                const auto from = std::max(gap.from, noise.from);
                const auto to = std::min(gap.to, noise.to);
                if (from < to) own -= to - from;
            }
            longest = std::max(longest, own);
        }
        return longest.count();
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

void serveEventsFor(std::chrono::milliseconds time)
{
    const auto end = Steady::now() + time;
    while (Steady::now() < end)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

void serveEventsUntil(const std::function<bool()>& isDone)
{
    while (!isDone())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// Checks the measurement itself: a stall made on purpose has to be found.
void checkHeartbeat()
{
    Heartbeat heart;
    serveEventsFor(50ms);
    QThread::msleep(160);
    serveEventsFor(50ms);
    if (heart.longestStall() < 150) qFatal("a stall of 160 ms was not noticed");
}

/// The program with settings and files in a folder of its own, without a user.
class Program
{
  public:
    Program()
        : folders_(folder.filePath(QStringLiteral("home"))),
          app(AppServices{clock_, folders_, defaults_, mainThread_, desktop_, panels_, alerts_,
                          QCoreApplication::applicationDirPath() + QStringLiteral("/quillfern-render"),
                          FilePath(), makeDocumentProcessors})
    {
        QDir(folder.path()).mkpath(QStringLiteral("home"));
        serveEventsFor(400ms); // the first layout and the preview
    }

    void gather(const QStringList& paths)
    {
        QList<FilePath> named;
        for (const QString& path : paths)
            named.append(FilePath::fromText(path));
        app.openFiles(named);
        serveEventsUntil([&] { return app.files().count() > 0 && !app.isProcessing(); });
    }

    QTemporaryDir folder;

  private:
    SystemClock clock_;
    FakeFolders folders_;
    MemoryDefaults defaults_;
    EventLoopMainThread mainThread_;
    FakeDesktop desktop_;
    FakePanels panels_;
    FakeAlerts alerts_;

  public:
    QuillfernAppDelegate app;
};

/// A folder with `count` names of one document.
QString linkedDocuments(const QTemporaryDir& folder, int count, int pages)
{
    const QString first = folder.filePath(QStringLiteral("many/00000.pdf"));
    QDir(folder.path()).mkpath(QStringLiteral("many"));
    QFile file(first);
    if (!file.open(QIODevice::WriteOnly) || file.write(pdfBytes(pages)) <= 0)
        qFatal("cannot write %s", qPrintable(first));
    file.close();
    for (int i = 1; i < count; ++i)
        QFile::link(first, folder.filePath(QStringLiteral("many/%1.pdf").arg(i, 5, 10, QLatin1Char('0'))));
    return folder.filePath(QStringLiteral("many"));
}

void benchGathering(int files)
{
    Program program;
    WindowControls(program.app.window())
        .mainTableView->sortByColumn(FileListModel::NameColumn, Qt::DescendingOrder);
    const QString many = linkedDocuments(program.folder, files, 1);
    serveEventsFor(50ms);
    Heartbeat heart;
    program.gather({many});
    report(QStringLiteral("longest stall while %1 files are gathered, sorted").arg(files),
           heart.longestStall(), "ms", longestAllowedMs);
    if (program.app.files().count() != files) qFatal("%d files were found", program.app.files().count());
}

void benchJob(int files)
{
    Program program;
    program.gather({linkedDocuments(program.folder, files, 5)});
    Numbering& number = *program.app.settings().number;
    number.stamps.push_back(std::make_shared<TextStamp>());
    number.endUpdate(true);
    const QString out = program.folder.filePath(QStringLiteral("out"));
    QDir().mkpath(out);
    WindowControls(program.app.window()).outputFolderPath->setText(out);
    serveEventsFor(400ms);
    Heartbeat heart;
    program.app.window().actions().convert->trigger();
    const auto process = [&] { return program.app.job().process(); };
    serveEventsUntil([&] { return process() && process()->isCompleted(); });
    serveEventsFor(50ms);
    report(QStringLiteral("longest stall while %1 files are stamped").arg(files), heart.longestStall(), "ms",
           longestAllowedMs);
    if (process()->totalFileCreated() != files)
        qFatal("only %d copies were made", process()->totalFileCreated());
}

int run(int files)
{
    checkHeartbeat();
    benchGathering(files);
    benchJob(std::max(10, files / 30));
    return failures == 0 ? 0 : 1;
}

} // namespace
} // namespace quillfern

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    quillfern::drawing::FontCatalog::preferEmbeddableFonts();
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    QCommandLineParser options;
    options.addHelpOption();
    options.addOption({QStringLiteral("files"), QStringLiteral("How many files."), QStringLiteral("N"),
                       QStringLiteral("10000")});
    options.process(application);
    return quillfern::run(std::max(100, options.value(QStringLiteral("files")).toInt()));
}
