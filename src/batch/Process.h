#pragma once

#include "batch/DocumentProcessors.h"
#include "batch/Log.h"
#include "batch/OutputFile.h"
#include "config/Settings.h"
#include "platform/desktop/DesktopServices.h"
#include "platform/system/MainThread.h"
#include "platform/system/TimeTaken.h"

#include <QCoreApplication>
#include <atomic>
#include <mutex>
#include <vector>

namespace quillfern {

/// Told how a job goes, on the main thread, while its worker waits.
class ProcessObserver
{
  public:
    virtual ~ProcessObserver() = default;
    /// The text for the label that shows the time and the files done.
    virtual void updateTimeTakenLabel(const QString& text) = 0;
    /// One output document is done. `note` tells people in their language why it failed, or what else there
    /// is to know; often empty. The record's texts are those of the log.
    virtual void outputFinished(const LogFiles&, const QString& note) { static_cast<void>(note); }
};

/// What a job needs of the outside world; everything outlives the job.
struct ProcessServices
{
    const Clock& clock;
    const Folders& folders;
    MainThread& mainThread;
    DesktopServices& desktop;
    DocumentProcessorsFactory makeProcessors = makeDocumentProcessors;
};

/// One run of the batch: walks the planned output documents, has each made, keeps the log and ends with a
/// message.
///
/// start() runs on a worker thread; everything else may be called from the main thread meanwhile. One run
/// only.
class Process
{
    Q_DECLARE_TR_FUNCTIONS(quillfern::Process)

  public:
    /// `settings` and `observer` are not owned and must outlive the job.
    Process(ProcessServices services, Settings& settings, ProcessObserver& observer);

    std::vector<OutputFile> outputFiles; ///< filled before start()

    /// Runs the whole job on the calling thread. `totalPages` is the page count of the whole list.
    void start(std::int64_t totalPages);
    /// Asks the job to stop; it finishes the file it is in.
    void stop() { isCombining_ = false; }
    /// Opens the log with its default application; does nothing before there is one.
    void viewLog();

    [[nodiscard]] bool isCombining() const { return isCombining_; } ///< keep running
    void setIsCombining(bool running) { isCombining_ = running; }
    [[nodiscard]] bool isCompleted() const { return isCompleted_; } ///< message and time are final
    [[nodiscard]] std::int32_t totalFileSelected() const { return totalFileSelected_; }
    void setTotalFileSelected(std::int32_t count) { totalFileSelected_ = count; }
    [[nodiscard]] std::int32_t totalFileProcessed() const { return totalFileProcessed_; }
    [[nodiscard]] std::int32_t totalFileCreated() const { return totalFileCreated_; }
    [[nodiscard]] std::int64_t totalPagesProcessed() const { return totalPagesProcessed_; }
    [[nodiscard]] QString fileInProcess() const { return read(fileInProcess_); }
    [[nodiscard]] QString outputFileInProcess() const { return read(outputFileInProcess_); }
    [[nodiscard]] QString timeTaken() const { return read(timeTaken_); }
    [[nodiscard]] QString message() const { return read(message_); }
    /// The log; to be read from the main thread once the job has completed.
    [[nodiscard]] const Log& log() const { return log_; }

  private:
    void runOutputs(DocumentProcessors& processors, std::int64_t totalPages);
    void runOutput(std::size_t index, DocumentProcessors& processors, std::int64_t& totalPages);
    void runItem(const FileItem& item, std::size_t index, DocumentProcessors& processors, LogFiles& record,
                 std::int64_t& totalPages);
    void finish();
    void postLabel();
    void findCollisions();
    [[nodiscard]] QString resultMessage() const;

    [[nodiscard]] QString read(const QString& field) const;
    void write(QString& field, const QString& value);

    ProcessServices services_;
    Settings& settings_;
    ProcessObserver& observer_;

    std::atomic<bool> isCombining_ = false;
    std::atomic<bool> isCompleted_ = false;
    std::atomic<std::int32_t> totalFileSelected_ = 1;
    std::atomic<std::int32_t> totalFileProcessed_ = 0;
    std::atomic<std::int32_t> totalFileCreated_ = 0;
    std::atomic<std::int64_t> totalPagesProcessed_ = 0;

    mutable std::mutex mutex_; ///< guards the four texts
    QString fileInProcess_;
    QString outputFileInProcess_;
    QString timeTaken_ = timeTakenInProcess();
    QString message_;

    Log log_;
    bool failed_ = false; ///< an exception was caught
    QString note_;        ///< about the output in process

    /// Which other document of the job stands in the way of an output.
    struct Collision
    {
        FilePath overwritesInput; ///< another input at the output's place; never harmed
        FilePath replacesCopyOf;  ///< an earlier input whose copy has the same name
    };
    std::vector<Collision> collisions_;
};

} // namespace quillfern
