#pragma once

#include "filelist/Arguments.h"
#include "filelist/FileList.h"
#include "filelist/GatherObserver.h"
#include "filelist/KnownCounts.h"
#include "platform/system/Clock.h"
#include "platform/system/FilePath.h"
#include "platform/system/MainThread.h"
#include "platform/system/WorkerPool.h"

#include <QList>
#include <QString>
#include <QThread>
#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quillfern {

/// Turns paths of files and folders into items of the list, on a thread of its own: the walk finds files one
/// by one, all cores count pages, and the items reach the list on the main thread in the order in which they
/// were found, a few at a time. The pages of files of the list that are given a password are counted anew in
/// the same way.
///
/// One request at a time. Setting `isProcessing` to false stops the request at once; the files that are in
/// the list by then stay. Nothing else may change the list while a request runs.
class FileGatherer
{
  public:
    /// The references outlive the gatherer. The gatherer sets `isProcessing` to true while a request runs.
    FileGatherer(FileList& files, std::atomic<bool>& isProcessing, MainThread& mainThread, const Clock& clock,
                 GatherObserver& observer);
    /// Stops the requests and waits until their threads have ended, however long that takes. Main thread.
    ~FileGatherer();
    FileGatherer(const FileGatherer&) = delete;
    FileGatherer& operator=(const FileGatherer&) = delete;

    /// Files whose pages are known need not be read. Before a request.
    void setKnownCounts(std::shared_ptr<const KnownCounts> known) { known_ = std::move(known); }

    /// Begins a request on a new thread; false when one is still running, after stop(), or when the system
    /// allows no further thread. New items get a
    /// copy of the password; an absent password is replaced by the empty text, also in the caller's variable.
    /// Main thread.
    bool start(const Arguments& request, std::optional<QString>& pdfOpenPassword);

    /// Gives the items of these paths a password and counts their pages anew, on a new thread. The request
    /// waits until a request that runs has ended. Items that were not counted before a cancel keep their old
    /// password. Main thread.
    void startPasswords(const QList<FilePath>& paths, const QString& password);

    /// Asks a request that runs to stop; no other request begins after this call. Waits at most so long for
    /// the request and for the files still being counted; true when nothing runs any more. Main thread.
    bool stop(int milliseconds);

    /// The whole request on the calling thread; start() runs this.
    void loadURLs(const Arguments& request, const QString& pdfOpenPassword);

  private:
    class Request;
    bool addFolderToList(Request& request, const QList<FilePath>& paths, bool includeSubdirectories);
    bool addFilesToList(Request& request, const QList<FilePath>& paths);
    void applyPassword(const QList<FilePath>& paths, const QString& password);
    /// False when the system allows no further thread; the system log says so.
    bool launch(std::function<void()> request);
    void launchNext();
    /// Shows the busy state, runs a request and shows the idle state.
    void perform(const char* failure, const std::function<void()>& request);
    [[nodiscard]] bool isWanted() const { return isProcessing_ && !isStopping_; }
    void showBusy();
    void showIdle(const QString& timeTaken);

    FileList& files_;
    std::atomic<bool>& isProcessing_;
    MainThread& mainThread_;
    const Clock& clock_;
    GatherObserver& observer_;
    WorkerPool counters_;
    std::shared_ptr<const KnownCounts> known_;
    bool isRunning_ = false; ///< main thread
    std::atomic<bool> isStopping_ = false;
    std::deque<std::function<void()>> waiting_; ///< main thread
    /// The thread of the last request, and those of earlier requests that had not quite ended when the next
    /// began.
    std::vector<std::unique_ptr<QThread>> threads_;
};

} // namespace quillfern
