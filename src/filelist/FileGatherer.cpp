#include "filelist/FileGatherer.h"

#include "filelist/AllowedFileTypes.h"
#include "filelist/FolderWalk.h"
#include "filelist/ItemFeed.h"
#include "platform/system/FileFacts.h"
#include "platform/system/Guarded.h"
#include "platform/system/StartedThread.h"
#include "platform/system/TimeTaken.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace quillfern {

namespace {

constexpr auto loadFailure = "Error in (loadURLs:) : %@";
constexpr auto passwordFailure = "Error in (updatePDFReadPassword:) : %@";

} // namespace

/// The state of one request while it runs. Used on the gathering thread.
class FileGatherer::Request
{
  public:
    Request(FileGatherer& gatherer, const QString& password)
        : gatherer_(gatherer),
          feed_(
              gatherer.counters_, password, loadFailure, [&gatherer] { return gatherer.isWanted(); },
              [this](std::vector<FileItem> items) { show(std::move(items)); }, gatherer.known_)
    {
        std::optional<FileListOrder> order;
        std::vector<FileItem> present;
        gatherer_.mainThread_.postAndWait([&] {
            known_ = gatherer_.files_.paths(); // to leave out duplicates without reading the files
            order = gatherer_.files_.order();
            if (order) present = gatherer_.files_.copies();
            revision_ = gatherer_.files_.revision();
        });
        if (!order) return;
        sorter_.emplace(*order);
        for (const FileItem& item : present) {
            if (!goOn()) return; // the request adds nothing then, and so does not sort
            sorter_->add(item);
        }
    }

    bool goOn() { return feed_.goOn(); }

    void candidate(const FilePath& path)
    {
        const qsizetype before = known_.size();
        known_.insert(path);
        if (known_.size() > before) feed_.add(path);
    }

    /// Waits for the files that are still being counted. Returns whether anything was added.
    bool finish()
    {
        feed_.finish();
        return added_ > 0;
    }

    /// Sorts the list by its order again, if it has one. The order of the rows is computed on this thread;
    /// the main thread only rearranges the rows.
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
    void show(std::vector<FileItem> items)
    {
        if (sorter_)
            for (const FileItem& item : items)
                sorter_->add(item);
        gatherer_.mainThread_.postAndWait([&] {
            const bool unchanged = gatherer_.files_.revision() == revision_;
            added_ += gatherer_.files_.append(std::move(items));
            if (unchanged) revision_ = gatherer_.files_.revision();
            gatherer_.observer_.filesAdded();
        });
    }

    FileGatherer& gatherer_;
    ItemFeed feed_;
    QSet<FilePath> known_;
    int added_ = 0;
    /// Has the items of the list, as long as the list's revision is `revision_`.
    std::optional<FileListSorter> sorter_;
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
    // A gathering thread may be waiting until this thread has run a posted call.
    for (const auto& thread : threads_)
        while (!thread->wait(10)) {
            QCoreApplication::sendPostedEvents(QCoreApplication::instance(), QEvent::MetaCall);
            if (deadline.hasExpired()) return false;
        }
    // A request does not wait for the files in work, and reading a file on a dead network mount may never
    // end.
    return counters_.waitForDone(static_cast<int>(deadline.remainingTime()));
}

bool FileGatherer::start(const Arguments& request, std::optional<QString>& pdfOpenPassword)
{
    if (isRunning_ || isStopping_) return false;
    if (!pdfOpenPassword) pdfOpenPassword = QString();
    return launch([this, request, password = *pdfOpenPassword] { loadURLs(request, password); });
}

void FileGatherer::startPasswords(const QList<FilePath>& paths, const QString& password)
{
    waiting_.push_back([this, paths, password] { applyPassword(paths, password); });
    launchNext();
}

void FileGatherer::launchNext()
{
    if (isRunning_ || isStopping_ || waiting_.empty()) return;
    launch(std::move(waiting_.front()));
    waiting_.pop_front();
}

bool FileGatherer::launch(std::function<void()> request)
{
    isRunning_ = true;
    std::erase_if(threads_, [](const auto& thread) { return thread->isFinished(); });
    try {
        threads_.push_back(startedThread(std::move(request)));
    } catch (const Failure& failure) {
        isRunning_ = false;
        logLine(failureLine(loadFailure, failure.reason()));
        return false;
    }
    return true;
}

void FileGatherer::loadURLs(const Arguments& arguments, const QString& pdfOpenPassword)
{
    perform(loadFailure, [&] {
        Request request(*this, pdfOpenPassword);
        const bool grew = arguments.isFolders
                              ? addFolderToList(request, arguments.urls, arguments.isIncludeSubdirectories)
                              : addFilesToList(request, arguments.urls);
        if (grew) request.sort();
    });
}

void FileGatherer::applyPassword(const QList<FilePath>& paths, const QString& password)
{
    perform(passwordFailure, [&] {
        int row = 0;
        ItemFeed feed(
            counters_, password, passwordFailure, [this] { return isWanted(); },
            [&](const std::vector<FileItem>& counted) {
                mainThread_.postAndWait([&] { row = files_.takeCounts(counted, row); });
            });
        for (const FilePath& path : paths) {
            if (!feed.goOn()) break;
            feed.add(path);
        }
        feed.finish();
    });
}

void FileGatherer::perform(const char* failure, const std::function<void()>& request)
{
    const QDateTime started = clock_.now();
    guarded(failure, [&] {
        showBusy();
        request();
    });
    guarded(failure, [&] { showIdle(timeTakenString(started, clock_.now())); });
}

void FileGatherer::showBusy()
{
    mainThread_.postAndWait([this] {
        if (isStopping_) return; // stop() was called before the request began
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
        launchNext();
    });
}

bool FileGatherer::addFolderToList(Request& request, const QList<FilePath>& paths, bool includeSubdirectories)
{
    guarded("Error in (addFolderToList:) : %@", [&] {
        FolderWalk walk([&](const FilePath& path) { request.candidate(path); },
                        [&] { return request.goOn(); });
        for (const FilePath& path : paths) {
            if (!request.goOn()) break;
            if (path.isEmpty()) continue;
            if (fileKind(path) == FileKind::Folder)
                walk.walk(path, includeSubdirectories);
            else if (hasAllowedType(path.name()))
                request.candidate(path);
        }
    });
    return request.finish();
}

bool FileGatherer::addFilesToList(Request& request, const QList<FilePath>& paths)
{
    guarded("Error in (addFilesToList:) : %@", [&] {
        for (const FilePath& path : paths) {
            if (!request.goOn()) break;
            if (!path.isEmpty()) request.candidate(path);
        }
    });
    return request.finish();
}

} // namespace quillfern
