#pragma once

#include "filelist/Arguments.h"
#include "filelist/FileList.h"
#include "filelist/GatherObserver.h"
#include "platform/system/Clock.h"
#include "platform/system/MainThread.h"

#include <QThread>
#include <QThreadPool>
#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace quillfern {

/// Turns paths of files and folders into items of the list, on a thread of its own: the walk finds files one
/// by one, all cores count pages, and the items reach the list on the main thread in the order in which they
/// were found, a few at a time. Files of the list that are given a password are counted anew in the same way.
///
/// One request at a time. Setting `isProcessing` to false stops it at once; what is in the list by then
/// stays. Nothing else may change the list while a request runs.
class FileGatherer
{
  public:
    /// The references outlive the gatherer. `isProcessing` is true while a request runs, and is set by it.
    FileGatherer(FileList& files, std::atomic<bool>& isProcessing, MainThread& mainThread, const Clock& clock,
                 GatherObserver& observer);
    /// Stops what still runs and waits for it, however long that takes. Main thread.
    ~FileGatherer();
    FileGatherer(const FileGatherer&) = delete;
    FileGatherer& operator=(const FileGatherer&) = delete;

    /// Begins a request on a new thread; false when one is still running, or after stop(). New items get a
    /// copy of the password, which is made the empty text when it is absent. Main thread.
    bool start(const Arguments& request, std::optional<QString>& pdfOpenPassword);

    /// Gives the items of these paths a password and counts their pages anew, on a new thread. It waits its
    /// turn while another request runs. Items that a cancel leaves out keep the password they have. Main
    /// thread.
    void startPasswords(const QList<FilePath>& paths, const QString& password);

    /// Asks a request that runs to stop, for good: no other begins after this. Waits so long for it and for
    /// the files still being counted; true when nothing runs any more. Main thread.
    bool stop(int milliseconds);

    /// The whole request on the calling thread; start() runs this.
    void loadURLs(const Arguments& request, const QString& pdfOpenPassword);

  private:
    class Request;
    bool addFolderToList(Request& request, const QList<FilePath>& paths, bool includeSubdirectories);
    bool addFilesToList(Request& request, const QList<FilePath>& paths);
    void applyPassword(const QList<FilePath>& paths, const QString& password);
    void launch(std::function<void()> request);
    void launchNext();
    /// Runs a request between busy and idle.
    void perform(const char* failure, const std::function<void()>& request);
    [[nodiscard]] bool isWanted() const { return isProcessing_ && !isStopping_; }
    void showBusy();
    void showIdle(const QString& timeTaken);

    FileList& files_;
    std::atomic<bool>& isProcessing_;
    MainThread& mainThread_;
    const Clock& clock_;
    GatherObserver& observer_;
    QThreadPool counters_;
    bool isRunning_ = false; ///< main thread
    std::atomic<bool> isStopping_ = false;
    std::deque<std::function<void()>> waiting_; ///< main thread
    /// The last one, and those before it that had not quite ended when the next was started.
    std::vector<std::unique_ptr<QThread>> threads_;
};

} // namespace quillfern
