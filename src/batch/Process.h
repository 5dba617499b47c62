#pragma once

#include "batch/Collisions.h"
#include "batch/CopyPlacement.h"
#include "batch/DocumentProcessors.h"
#include "batch/FileOutcome.h"
#include "batch/Job.h"
#include "batch/Log.h"
#include "batch/OutputFile.h"
#include "batch/WorkAhead.h"
#include "filelist/FileItem.h"
#include "platform/desktop/DesktopServices.h"
#include "platform/system/Clock.h"
#include "platform/system/FilePath.h"
#include "platform/system/Folders.h"
#include "platform/system/MainThread.h"
#include "platform/system/TimeTaken.h"

#include <QCoreApplication>
#include <QHash>
#include <QString>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <stop_token>
#include <vector>

namespace quillfern {

/// Is notified of the progress of a job, on the main thread, while the job's worker thread waits.
class ProcessObserver
{
  public:
    virtual ~ProcessObserver() = default;
    /// The text for the label that shows the time and the files done.
    virtual void updateTimeTakenLabel(const QString& text) = 0;
    /// One output document is done, or was left out.
    virtual void outputFinished(const LogFiles& output) = 0;
};

/// The services that a job uses; all of them must outlive the job.
struct ProcessServices
{
    const Clock& clock;
    const Folders& folders;
    MainThread& mainThread;
    desktop::DesktopServices& desktop;
    DocumentProcessorsFactory makeProcessors = makeDocumentProcessors;
    int filesAtOnce = 0; ///< how many files are worked on at the same time; 0 for as many as there are cores
};

/// One run of the batch: makes the planned output documents, keeps the log and ends with a message. Several
/// files are worked on at once, but everything that can be seen of the job happens in list order: copies and
/// backups appear, the log and the counters grow, and the observer is called as if one file was made after
/// the other.
///
/// start() runs on a worker thread; everything else may be called from the main thread meanwhile. One run
/// only.
class Process
{
    Q_DECLARE_TR_FUNCTIONS(quillfern::Process)

  public:
    /// `observer` is not owned and must outlive the process.
    Process(ProcessServices services, Job job, ProcessObserver& observer);

    /// The planned outputs, in order; they never change.
    [[nodiscard]] const std::vector<OutputFile>& outputFiles() const { return job_.outputFiles; }
    [[nodiscard]] const Job& job() const { return job_; }

    /// Runs the whole job on the calling thread.
    void start();
    /// Asks the job to stop after the file whose turn it is.
    void stop() { isCombining_ = false; }
    /// Asks the job to give up that file too and to stop; nothing of the file's copy remains.
    void abandon()
    {
        stop();
        abandon_.request_stop();
    }
    /// Opens the log with its default application; does nothing before the log exists.
    void viewLog();

    [[nodiscard]] bool isCombining() const { return isCombining_; } ///< false asks the job to stop
    [[nodiscard]] bool isCompleted() const { return isCompleted_; } ///< message and time are final
    /// The files that this run works on: all outputs, or those of a part of the job.
    [[nodiscard]] std::int32_t totalFileSelected() const { return static_cast<std::int32_t>(part_.size()); }
    [[nodiscard]] std::int32_t totalFileProcessed() const { return totalFileProcessed_; }
    [[nodiscard]] std::int32_t totalFileCreated() const { return totalFileCreated_; }
    /// Pages of all files that are done or in work; goes back when work has to be done again.
    [[nodiscard]] std::int64_t totalPagesProcessed() const { return totalPagesProcessed_; }
    /// Of these, the pages of files whose turn has not ended yet.
    [[nodiscard]] std::int64_t pagesInWork() const { return totalPagesProcessed_ - pagesOfEndedTurns_; }
    [[nodiscard]] QString fileInProcess() const { return read(fileInProcess_); }
    [[nodiscard]] QString outputFileInProcess() const { return read(outputFileInProcess_); }
    [[nodiscard]] QString timeTaken() const { return read(timeTaken_); }
    [[nodiscard]] QString message() const { return read(message_); }
    /// The log; to be read from the main thread once the job has completed.
    [[nodiscard]] const Log& log() const { return log_; }
    /// Why the index of a job that has one could not be written; likewise.
    [[nodiscard]] const std::optional<Reason>& indexProblem() const { return indexProblem_; }
    /// Why numbers or totals of a part of a job are not those of the whole job: a file has given other pages
    /// than were counted. Likewise.
    [[nodiscard]] const std::optional<Reason>& partProblem() const { return partProblem_; }

  private:
    /// One input of one output.
    struct Task
    {
        std::size_t output = 0;
        std::size_t item = 0;
    };

    [[nodiscard]] std::vector<PlannedFile> planFiles();
    [[nodiscard]] std::int64_t plannedPages(std::size_t output, const FileItem& item) const;
    [[nodiscard]] WorkAhead::Means means();
    void noteForecast(const FileWork& work, const FileItem& item);
    [[nodiscard]] FileWork workOn(const Task& task, DocumentProcessors& processors, JobRun& run) const;
    /// `nextTask` is the output's first.
    void runOutput(std::size_t index, std::size_t nextTask, WorkAhead& files);
    [[nodiscard]] FileOutcome finish(FileWork work, const FileItem& item, std::size_t index, FilePath& target,
                                     WorkAhead& files);
    void addRemarks(FileOutcome& outcome, const FileItem& item, const FilePath& target, bool isContinuous);
    void finish();
    [[nodiscard]] QString labelText() const;
    [[nodiscard]] QString resultMessage() const;

    [[nodiscard]] QString read(const QString& field) const;
    void write(QString& field, const QString& value);

    ProcessServices services_;
    const Job job_;
    const JobPart part_;
    ProcessObserver& observer_;

    std::atomic<bool> isCombining_ = true;
    std::stop_source abandon_;
    std::atomic<bool> isCompleted_ = false;
    std::atomic<std::int32_t> totalFileProcessed_ = 0;
    std::atomic<std::int32_t> totalFileCreated_ = 0;
    std::atomic<std::int64_t> totalPagesProcessed_ = 0;
    std::atomic<std::int64_t> pagesOfEndedTurns_ = 0;

    mutable std::mutex mutex_; ///< guards the four texts
    QString fileInProcess_;
    QString outputFileInProcess_;
    QString timeTaken_ = timeTakenInProcess();
    QString message_;

    Log log_;
    bool failed_ = false; ///< an exception was caught

    std::vector<Collision> collisions_;
    const CopyPlacement placement_{job_, written_};
    std::optional<Reason> indexProblem_;
    std::optional<Reason> partProblem_;
    std::vector<Task> tasks_;           ///< in list order
    QHash<FilePath, FilePath> written_; ///< the copies of this job so far, and the input of each
};

} // namespace quillfern
