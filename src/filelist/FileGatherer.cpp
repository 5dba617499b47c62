#include "filelist/FileGatherer.h"

#include "filelist/AllowedFileTypes.h"
#include "filelist/FolderWalk.h"
#include "filelist/ItemPipeline.h"
#include "platform/system/FileFacts.h"
#include "platform/system/Guarded.h"
#include "platform/system/NativePath.h"
#include "platform/system/TimeTaken.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace quillfern {

namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

constexpr auto showEvery = 50ms;         ///< how long found items may wait to be seen
constexpr auto waitAtMost = 20ms;        ///< between two looks at the stop signal
constexpr std::size_t mostPending = 512; ///< files found and not yet counted: bounds memory, feeds the cores

} // namespace

/// What one request remembers while it runs. Lives on the gathering thread.
class FileGatherer::Request
{
  public:
    Request(FileGatherer& gatherer, const QString& password)
        : gatherer_(gatherer), pipeline_(gatherer.counters_, password)
    {
        std::optional<FileListOrder> order;
        std::vector<FileItem> present;
        gatherer_.mainThread_.postAndWait([&] {
            known_ = gatherer_.files_.urls(); // to refuse duplicates before anything is read of them
            order = gatherer_.files_.order();
            if (order) present = gatherer_.files_.copies();
            revision_ = gatherer_.files_.revision();
        });
        if (!order) return;
        sorter_.emplace(*order);
        for (const FileItem& item : present) {
            if (!goOn()) return; // nothing is added then, and so nothing sorted
            sorter_->add(item);
        }
    }

    /// Whether to continue. Asked all the time, so this is also where found items find their way out.
    bool goOn()
    {
        if (SteadyClock::now() - lastShown_ > showEvery) show();
        return gatherer_.isProcessing_ && !gatherer_.isStopping_;
    }

    void candidate(const QString& path)
    {
        const QUrl url = fileUrl(path);
        const qsizetype before = known_.size();
        known_.insert(url);
        if (known_.size() == before) return;
        while (pipeline_.pending() >= mostPending) {
            if (!goOn()) return;
            pipeline_.waitForNext(waitAtMost);
            collect();
        }
        pipeline_.add(url);
    }

    /// Waits for the files that are still being counted. Returns whether anything was added.
    bool finish()
    {
        while (goOn() && pipeline_.pending() > 0) {
            pipeline_.waitForNext(waitAtMost);
            collect();
        }
        show();
        return added_ > 0;
    }

    /// Sorts the list as it was sorted before, if it was. The order is found here, and the window only puts
    /// the rows in their places.
    void sort()
    {
        if (!sorter_) return;
        const std::vector<int> rows = sorter_->sorted();
        gatherer_.mainThread_.postAndWait([&] {
            FileList& files = gatherer_.files_;
            if (!files.order()) return; // somebody has moved files by hand meanwhile
            if (files.revision() == revision_)
                files.arrange(rows);
            else
                files.sort(*files.order()); // somebody else changed the list meanwhile
        });
    }

  private:
    void collect()
    {
        for (FileItem& item : pipeline_.takeReady())
            batch_.push_back(std::move(item));
    }

    void show()
    {
        collect();
        lastShown_ = SteadyClock::now();
        if (batch_.empty()) return;
        if (sorter_)
            for (const FileItem& item : batch_)
                sorter_->add(item);
        gatherer_.mainThread_.postAndWait([this] {
            const bool unchanged = gatherer_.files_.revision() == revision_;
            added_ += gatherer_.files_.append(std::exchange(batch_, {}));
            if (unchanged) revision_ = gatherer_.files_.revision();
            gatherer_.observer_.filesAdded();
        });
        lastShown_ = SteadyClock::now();
    }

    FileGatherer& gatherer_;
    ItemPipeline pipeline_;
    QSet<QUrl> known_;
    std::vector<FileItem> batch_;
    SteadyClock::time_point lastShown_ = SteadyClock::now();
    int added_ = 0;
    std::optional<FileListSorter> sorter_; ///< knows the items in the list, as long as that has `revision_`
    std::uint64_t revision_ = 0;
};

FileGatherer::FileGatherer(FileList& files, std::atomic<bool>& isProcessing, MainThread& mainThread,
                           const Clock& clock, GatherObserver& observer)
    : files_(files), isProcessing_(isProcessing), mainThread_(mainThread), clock_(clock), observer_(observer)
{
}

FileGatherer::~FileGatherer()
{
    while (!stop(1000)) {
    }
}

bool FileGatherer::stop(int milliseconds)
{
    isStopping_ = true;
    if (isRunning_) isProcessing_ = false;
    const QDeadlineTimer deadline(milliseconds);
    // A thread may itself be waiting for this one to run something.
    for (const auto& thread : threads_)
        while (!thread->wait(10)) {
            QCoreApplication::sendPostedEvents(QCoreApplication::instance(), QEvent::MetaCall);
            if (deadline.hasExpired()) return false;
        }
    // Requests leave files in work behind, and one on a dead network mount may never end.
    return counters_.waitForDone(static_cast<int>(deadline.remainingTime()));
}

bool FileGatherer::start(const Arguments& request, std::optional<QString>& pdfOpenPassword)
{
    if (isRunning_ || isStopping_) return false;
    isRunning_ = true;
    if (!pdfOpenPassword) pdfOpenPassword = QString();
    std::erase_if(threads_, [](const auto& thread) { return thread->isFinished(); });
    threads_.emplace_back(
        QThread::create([this, request, password = *pdfOpenPassword] { loadURLs(request, password); }));
    threads_.back()->start();
    return true;
}

void FileGatherer::loadURLs(const Arguments& arguments, const QString& pdfOpenPassword)
{
    const QDateTime started = clock_.now();
    guarded("Error in (loadURLs:) : %@", [&] {
        showBusy();
        Request request(*this, pdfOpenPassword);
        const bool grew = arguments.isFolders
                              ? addFolderToList(request, arguments.urls, arguments.isIncludeSubdirectories)
                              : addFilesToList(request, arguments.urls);
        if (grew) request.sort();
    });
    guarded("Error in (loadURLs:) : %@", [&] { showIdle(timeTakenString(started, clock_.now())); });
}

void FileGatherer::showBusy()
{
    mainThread_.postAndWait([this] {
        if (isStopping_) return; // asked to before it had properly begun
        observer_.resetViewObject(false);
        isProcessing_ = true;
        observer_.startProcess();
        observer_.updateTimeTakenLabel(timeTakenLabel(timeTakenInProcess(), 0, 0));
    });
}

void FileGatherer::showIdle(const QString& timeTaken)
{
    mainThread_.postAndWait([&] {
        isRunning_ = false;
        isProcessing_ = false;
        observer_.stopProcess();
        observer_.resetViewObject(true);
        observer_.updateTimeTakenLabel(timeTakenLabel(timeTaken, 0, 0));
    });
}

bool FileGatherer::addFolderToList(Request& request, const QList<QUrl>& urls, bool includeSubdirectories)
{
    guarded("Error in (addFolderToList:) : %@", [&] {
        FolderWalk walk([&](const QString& path) { request.candidate(path); },
                        [&] { return request.goOn(); });
        for (const QUrl& url : urls) {
            if (!request.goOn()) break;
            const QString path = localPath(url);
            if (path.isEmpty()) continue;
            if (fileKind(path) == FileKind::Folder)
                walk.walk(path, includeSubdirectories);
            else if (hasAllowedType(path))
                request.candidate(path);
        }
    });
    return request.finish();
}

bool FileGatherer::addFilesToList(Request& request, const QList<QUrl>& urls)
{
    guarded("Error in (addFilesToList:) : %@", [&] {
        for (const QUrl& url : urls) {
            if (!request.goOn()) break;
            const QString path = localPath(url);
            if (!path.isEmpty()) request.candidate(path);
        }
    });
    return request.finish();
}

} // namespace quillfern
