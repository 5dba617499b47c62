#pragma once

#include "app/FilesController.h"
#include "app/JobController.h"
#include "app/NumberingForm.h"
#include "app/OpenQueue.h"
#include "app/OutputForm.h"
#include "app/PreviewController.h"
#include "app/StampsController.h"
#include "app/WindowMemory.h"
#include "filelist/FileGatherer.h"
#include "filelist/IncludeSubfolders.h"

#include <QPointer>
#include <memory>

namespace quillfern {

class MainWindow;

/// What the application needs of the outside world; everything outlives it.
struct AppServices
{
    const Clock& clock;
    const Folders& folders;
    DefaultsStore& defaults;
    MainThread& mainThread;
    DesktopServices& desktop;
    FilePanels& panels;
    Alerts& alerts;
    QString renderProgram; ///< quillfern-render
    FilePath helpDocument; ///< empty when it is not installed
    DocumentProcessorsFactory makeProcessors = makeDocumentProcessors;
};

/// The application: it owns the list of files, the settings and the window, puts them together and sees that
/// every control has the state that fits. What the commands do is up to the controllers. Main thread.
class QuillfernAppDelegate final : public QObject,
                                   public NumberingDelegate,
                                   public GatherObserver,
                                   public FilesWindow,
                                   public JobWindow
{
    Q_OBJECT

  public:
    /// Loads the settings and shows the window.
    explicit QuillfernAppDelegate(AppServices services);
    /// Stops what is running and waits for it. Does not save anything.
    ~QuillfernAppDelegate() override;

    /// Takes over what is being typed in and saves the settings. The application may always end then.
    void applicationShouldTerminate();
    /// Brings the window to the front unless it is to be seen.
    void applicationShouldHandleReopen();
    /// Adds files and folders, as a command line names them; later when the window is busy now, or a sheet
    /// lies over it.
    void openFiles(const QList<FilePath>& paths);
    /// The program was started once more, with these files and folders: the window comes to the front and
    /// takes them.
    void startedAgain(const QList<FilePath>& paths);
    /// Asks what is running to stop and waits so long for it. True when nothing runs any more.
    bool stop(int milliseconds);

    [[nodiscard]] MainWindow& window() { return *window_; }
    [[nodiscard]] FileList& files() { return files_; }
    [[nodiscard]] Settings& settings() { return settings_; }
    [[nodiscard]] bool isProcessing() const { return isProcessing_; }
    [[nodiscard]] const JobController& job() const { return *job_; }

    void resetView(bool idle) override;

  Q_SIGNALS:
    /// The user wants to leave.
    void quitRequested();

  private:
    void awakeFromNib();
    void markKeyCharacters();
    void connectWindow();
    void helpAction();
    void aboutAction();
    void cancelAction();
    void viewFrameChanged();
    void selectionDidChange();
    [[nodiscard]] PreviewState previewState() const;
    void showTotals();
    void showTimeTaken(const QString& text);
    void setConvertEnabled(bool enabled);
    void restoreFocus();

    void PropertyChanged(Numbering& number) override;

    void resetViewObject(bool idle) override;
    void startProcess() override;
    void stopProcess() override;
    void updateTimeTakenLabel(const QString& text) override { showTimeTaken(text); }
    void filesAdded() override;

    void endEditing() override;
    void updateTotalLabel() override;
    void load(const QList<FilePath>& paths, bool isFolders) override;
    void applyPassword(const QList<FilePath>& paths, const QString& password) override;
    bool startLoading(const QList<FilePath>& paths, bool isFolders);

    void resetViewForProcess(bool enabled) override;
    void selectSettingsTab(int tab) override;
    void focusOutputFolder() override;
    void jobIsRunning(bool running) override;
    void deselectFiles() override;

    AppServices services_;
    std::unique_ptr<MainWindow> window_;
    FileList files_;
    Settings settings_;
    std::atomic<bool> isProcessing_ = false;
    bool isJobRunning_ = false;
    IncludeSubfolders includeSubfolders_;
    WindowMemory memory_;
    QPointer<QWidget> focusBeforeBusy_; ///< had the keyboard when the window became busy
    std::unique_ptr<FilesController> filesController_;
    std::unique_ptr<StampsController> stampsController_;
    std::unique_ptr<PreviewController> preview_;
    std::unique_ptr<NumberingForm> numberingForm_;
    std::unique_ptr<OutputForm> outputForm_;
    std::unique_ptr<JobController> job_;
    std::unique_ptr<OpenQueue> openQueue_;
    std::unique_ptr<FileGatherer> gatherer_; ///< last: it has to stop before anything else goes
};

} // namespace quillfern
