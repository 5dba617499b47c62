#pragma once

#include "app/Activity.h"
#include "app/FilesController.h"
#include "app/GatherController.h"
#include "app/JobController.h"
#include "app/OpenQueue.h"
#include "app/PreviewController.h"
#include "app/StampsController.h"
#include "app/WindowFocus.h"
#include "app/WindowMemory.h"
#include "batch/DocumentProcessors.h"
#include "config/Numbering.h"
#include "config/PreviewModel.h"
#include "config/Settings.h"
#include "filelist/FileList.h"
#include "filelist/IncludeSubfolders.h"
#include "platform/desktop/Alerts.h"
#include "platform/desktop/DesktopServices.h"
#include "platform/desktop/FilePanels.h"
#include "platform/store/DefaultsStore.h"
#include "platform/system/Clock.h"
#include "platform/system/Failure.h"
#include "platform/system/FilePath.h"
#include "platform/system/Folders.h"
#include "platform/system/MainThread.h"

#include <QList>
#include <QObject>
#include <QString>
#include <memory>
#include <optional>

namespace quillfern {

class MainWindow;

/// The services that the application uses; all of them must outlive the application.
struct AppServices
{
    const Clock& clock;
    const Folders& folders;
    store::DefaultsStore& defaults;
    MainThread& mainThread;
    desktop::DesktopServices& desktop;
    desktop::FilePanels& panels;
    desktop::Alerts& alerts;
    QString renderProgram; ///< quillfern-render
    FilePath helpDocument; ///< empty when it is not installed
    DocumentProcessorsFactory makeProcessors = makeDocumentProcessors;
    int filesAtOnce = 0; ///< see ProcessServices
};

/// The application: it owns the list of files, the settings and the window, and connects the controllers with
/// each other. What the commands do is up to the controllers; which state the controls have follows from the
/// activity. Main thread.
class QuillfernAppDelegate final : public QObject, public NumberingDelegate
{
    Q_OBJECT

  public:
    /// Loads the settings and shows the window.
    explicit QuillfernAppDelegate(AppServices services);
    /// Stops what is running and waits for it. Does not save anything.
    ~QuillfernAppDelegate() override;

    /// Ends editing, so that what was typed counts, and saves the settings. The application can be ended
    /// after this call. Returns why the settings could not be saved; nothing when they are.
    std::optional<Reason> applicationShouldTerminate();
    /// The same for a person who leaves: when the settings cannot be saved, the person may try again. False
    /// when the application is to go on.
    [[nodiscard]] bool saveToQuit();
    /// Brings the window to the front, unless it is visible.
    void applicationShouldHandleReopen();
    /// Adds files and folders, as a command line names them; later when the window is busy now, or a sheet
    /// lies over it.
    void openFiles(const QList<FilePath>& paths);
    /// The program was started once more, with these files and folders: the window comes to the front and
    /// takes them.
    void startedAgain(const QList<FilePath>& paths);
    /// Asks gathering and a job to stop and waits at most so long for their end. True when nothing runs any
    /// more.
    bool stop(int milliseconds);

    [[nodiscard]] MainWindow& window() { return *window_; }
    [[nodiscard]] FileList& files() { return files_; }
    [[nodiscard]] Settings& settings() { return settings_; }
    [[nodiscard]] Activity& activity() { return activity_; }
    [[nodiscard]] bool isProcessing() const { return !activity_.isIdle(); }
    [[nodiscard]] const JobController& job() const { return *job_; }

  Q_SIGNALS:
    /// The user wants to leave.
    void quitRequested();

  private:
    void awakeFromNib();
    void makeControllers();
    void connectFiles();
    void connectConfiguration();
    void connectJob();
    void connectWindow();
    void helpAction();
    void aboutAction();
    void cancelAction();
    bool load(const QList<FilePath>& paths, bool isFolders);
    [[nodiscard]] PreviewState previewState() const;
    void PropertyChanged(Numbering& number) override;

    AppServices services_;
    bool isAskedToQuit_ = false; ///< a question about the settings is open
    Activity activity_;
    FileList files_;
    Settings settings_;
    IncludeSubfolders includeSubfolders_;
    WindowMemory memory_;
    /// Declared after the settings, which its panes edit, so that the window is destroyed first.
    std::unique_ptr<MainWindow> window_;
    WindowFocus focus_;
    std::unique_ptr<FilesController> filesController_;
    std::unique_ptr<StampsController> stampsController_;
    std::unique_ptr<PreviewController> preview_;
    std::unique_ptr<JobController> job_;
    std::unique_ptr<OpenQueue> openQueue_;
    /// Declared last: gathering has to stop before any other member is destroyed.
    std::unique_ptr<GatherController> gatherer_;
};

} // namespace quillfern
