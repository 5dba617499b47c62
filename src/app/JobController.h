#pragma once

#include "app/ProgressSheet.h"
#include "batch/Job.h"
#include "batch/Log.h"
#include "batch/Process.h"
#include "config/Settings.h"
#include "filelist/FileList.h"
#include "platform/desktop/Alerts.h"

#include <QObject>
#include <QString>
#include <QThread>
#include <QWidget>
#include <memory>

namespace quillfern {

class Activity;

/// Plans, starts and ends jobs, one at a time, and shows them in the progress sheet. Main thread.
class JobController final : public QObject, public ProcessObserver
{
    Q_OBJECT

  public:
    /// Everything outlives the controller; `parent` is the window that the sheet lies over.
    JobController(FileList& files, Settings& settings, Activity& activity, ProcessServices services,
                  desktop::Alerts& alerts, QWidget& parent);
    /// Asks a running job to stop and waits for the file in work.
    ~JobController() override;

    void combine();
    void cancelProcessAction();
    void viewLogAction();
    void closeProcessAction();

    /// Asks a running job to stop and waits at most so long for the file in work. A file that takes longer is
    /// given up, for which there is another second. True when no job runs any more.
    bool stop(int milliseconds);

    [[nodiscard]] const Process* process() const { return process_.get(); } ///< null when there is none

  Q_SIGNALS:
    /// There is no usable output folder; no job was started.
    void outputFolderRefused();
    /// A job is about to start.
    void starting();
    /// The text for the label that shows the time.
    void timeTakenChanged(const QString& text);
    /// Items were taken off the list after a job.
    void itemsRemoved();
    /// The user wants to leave the program, also from a running job.
    void quitRequested();

  private:
    void leave();
    void stopAfterFile();
    [[nodiscard]] bool waitForEnd(int milliseconds) const;
    void updateTimeTakenLabel(const QString& text) override;
    void outputFinished(const LogFiles& record) override;
    void launch(Job job);
    void completed();

    FileList& files_;
    Settings& settings_;
    Activity& activity_;
    ProcessServices services_;
    desktop::Alerts& alerts_;
    QWidget& parent_;
    std::unique_ptr<Process> process_;
    std::unique_ptr<QThread> worker_; ///< from the start of a job until its sheet is closed
    std::unique_ptr<ProgressSheet> processViewPanel_;
};

} // namespace quillfern
