#pragma once

#include "app/ProgressSheet.h"
#include "batch/Process.h"
#include "filelist/FileList.h"
#include "platform/desktop/Alerts.h"

#include <QThread>

namespace quillfern {

/// What a job needs of the window.
class JobWindow
{
  public:
    virtual ~JobWindow() = default;
    /// Takes over what is being typed in.
    virtual void endEditing() = 0;
    virtual void resetView(bool idle) = 0;
    virtual void startProcess() = 0;
    virtual void stopProcess() = 0;
    /// Convert and Cancel, together.
    virtual void resetViewForProcess(bool enabled) = 0;
    virtual void updateTimeTakenLabel(const QString& text) = 0;
    /// Brings a page of the settings to the front.
    virtual void selectSettingsTab(int tab) = 0;
    /// Takes the user to where the output folder is set.
    virtual void focusOutputFolder() = 0;
    /// A job holds the configuration from now on, or has given it back.
    virtual void jobIsRunning(bool running) = 0;
    /// Items were taken off the list.
    virtual void deselectFiles() = 0;
};

/// Plans, starts and ends jobs, one at a time, and shows them in the progress sheet. Main thread.
class JobController final : public QObject, public ProcessObserver
{
    Q_OBJECT

  public:
    /// Everything outlives the controller; `parent` is the window that the sheet lies over.
    JobController(FileList& files, Settings& settings, ProcessServices services, Alerts& alerts,
                  JobWindow& window, QWidget& parent);
    /// Asks a running job to stop and waits for the file in work.
    ~JobController() override;

    void combine();
    void cancelProcessAction();
    void viewLogAction();
    void closeProcessAction();

    /// From the start of a job until its sheet is closed.
    [[nodiscard]] bool isSheetShown() const { return isSheetShown_; }
    /// Asks a running job to stop and waits so long for it. True when none runs any more.
    bool stop(int milliseconds);

    [[nodiscard]] const Process* process() const { return process_.get(); } ///< null when there is none

  Q_SIGNALS:
    /// The user wants to leave the program, also from a running job.
    void quitRequested();

  private:
    void leave();
    void updateTimeTakenLabel(const QString& text) override;
    void outputFinished(const LogFiles& record) override;
    void launch(Job job);
    void completed();
    void backToIdle();

    FileList& files_;
    Settings& settings_;
    ProcessServices services_;
    Alerts& alerts_;
    JobWindow& window_;
    QWidget& parent_;
    std::unique_ptr<Process> process_;
    std::unique_ptr<QThread> worker_;
    std::unique_ptr<ProgressSheet> processViewPanel_;
    bool isSheetShown_ = false;
};

} // namespace quillfern
