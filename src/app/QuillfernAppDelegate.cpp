#include "app/QuillfernAppDelegate.h"

#include "app/AboutDialog.h"
#include "app/ActivityBar.h"
#include "app/CustomTableView.h"
#include "app/FilesPane.h"
#include "app/MainWindow.h"
#include "app/OutputPane.h"
#include "app/PagesPane.h"
#include "app/PreviewPane.h"
#include "app/StampsPane.h"
#include "platform/pageimages/PageImageCache.h"
#include "platform/pageimages/RenderProcess.h"
#include "platform/system/Guarded.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QScopedValueRollback>

namespace quillfern {

namespace {

/// Keeps the pages that quillfern-render has drawn; used on one thread.
class CachedPages final : public pageimages::PageImageSource
{
  public:
    explicit CachedPages(const QString& program) : process_(program), cache_(process_) {}

    [[nodiscard]] std::optional<pageimages::PageImage>
    page(const pageimages::PageImageRequest& request) override
    {
        return cache_.page(request);
    }

  private:
    pageimages::RenderProcess process_;
    pageimages::PageImageCache cache_;
};

} // namespace

QuillfernAppDelegate::QuillfernAppDelegate(AppServices services)
    : services_(std::move(services)), settings_(&services_.defaults), includeSubfolders_(services_.defaults),
      memory_(services_.defaults), window_(std::make_unique<MainWindow>(activity_)),
      focus_(*window_, activity_)
{
    awakeFromNib();
}

QuillfernAppDelegate::~QuillfernAppDelegate()
{
    settings_.number->setDelegate(nullptr);
}

void QuillfernAppDelegate::awakeFromNib()
{
    window_->setWindowTitle(getAppTitle());
    services_.folders.createApplicationUsersFolder(QStringLiteral("Logs"));
    settings_.number->setDelegate(this);
    makeControllers();
    window_->showSettings(SettingsTab::Stamps);
    window_->filesPane().setIncludesSubfolders(includeSubfolders_.inculdeSubfolders());
    filesController_->updateCommands();
    window_->outputPane().updateFolderOptions();
    connectFiles();
    connectConfiguration();
    connectJob();
    connectWindow();
    memory_.restore(*window_);
    window_->show();
    filesController_->showTotals();
    window_->activityBar().showTimeTaken({});
    preview_->resizePreview();
    PropertyChanged(*settings_.number);
    stampsController_->selectFirstStamp();
    window_->filesPane().table().setFocus();
}

void QuillfernAppDelegate::makeControllers()
{
    MainWindow& w = *window_;
    Numbering& number = *settings_.number;
    filesController_ =
        std::make_unique<FilesController>(files_, activity_, w.filesPane(), w.actions(), services_.desktop,
                                          services_.panels, services_.alerts, services_.clock);
    stampsController_ = std::make_unique<StampsController>(number, activity_, w.stampsPane(), w.actions(),
                                                           services_.panels, services_.alerts);
    preview_ = std::make_unique<PreviewController>(number, w.previewPane(),
                                                   std::make_unique<CachedPages>(services_.renderProgram),
                                                   [this] { return previewState(); });
    w.pagesPane().edit(number, [this] { return preview_->viewSize(); });
    w.outputPane().edit(settings_, services_.panels);
    job_ = std::make_unique<JobController>(files_, settings_, activity_,
                                           ProcessServices{services_.clock, services_.folders,
                                                           services_.mainThread, services_.desktop,
                                                           services_.makeProcessors, services_.filesAtOnce},
                                           services_.alerts, w);
    gatherer_ = std::make_unique<GatherController>(files_, settings_, activity_, services_.mainThread,
                                                   services_.clock);
    openQueue_ =
        std::make_unique<OpenQueue>(w, [this](const QList<FilePath>& paths) { return load(paths, true); });
}

void QuillfernAppDelegate::connectFiles()
{
    FilesController* const files = filesController_.get();
    ActivityBar& bar = window_->activityBar();
    connect(files, &FilesController::selectionChanged, this, [this] { PropertyChanged(*settings_.number); });
    connect(files, &FilesController::totalsChanged, &bar, [&bar] { bar.showTimeTaken({}); });
    connect(files, &FilesController::totalsChanged, &window_->outputPane(), &OutputPane::updateFolderOptions);
    connect(files, &FilesController::filesChosen, this, &QuillfernAppDelegate::load);
    connect(files, &FilesController::passwordGiven, gatherer_.get(), &GatherController::applyPassword);
    connect(gatherer_.get(), &GatherController::listGrew, files, &FilesController::listGrew);
    connect(gatherer_.get(), &GatherController::timeTakenChanged, &bar, &ActivityBar::showTimeTaken);
    connect(&window_->filesPane(), &FilesPane::includesSubfoldersChanged, this,
            [this](bool on) { includeSubfolders_.setInculdeSubfolders(on); });
    connect(&bar, &ActivityBar::cancelRequested, this, &QuillfernAppDelegate::cancelAction);
}

void QuillfernAppDelegate::connectConfiguration()
{
    const auto render = [this] { PropertyChanged(*settings_.number); };
    StampsController* const stamps = stampsController_.get();
    connect(stamps, &StampsController::selectionChanged, this, [this] {
        if (!activity_.isJob()) preview_->render();
    });
    connect(stamps, &StampsController::renderRequested, this, render);
    connect(stamps, &StampsController::profileLoaded, this, [this] {
        window_->pagesPane().refresh();
        preview_->refreshSwitches();
        window_->outputPane().refresh();
    });
    connect(preview_.get(), &PreviewController::resized, this, render);
    connect(window_.get(), &MainWindow::densityChanged, this, [this] { preview_->render(); });
    // The totals on the preview may be other ones now.
    connect(&activity_, &Activity::ended, this, render);
}

void QuillfernAppDelegate::connectJob()
{
    JobController* const job = job_.get();
    connect(window_->actions().convert, &QAction::triggered, job, &JobController::combine);
    connect(job, &JobController::outputFolderRefused, this, [this] {
        window_->showSettings(SettingsTab::Output);
        window_->outputPane().focusFolder();
    });
    connect(job, &JobController::starting, this, [this] { window_->showSettings(SettingsTab::Stamps); });
    connect(job, &JobController::timeTakenChanged, &window_->activityBar(), &ActivityBar::showTimeTaken);
    connect(job, &JobController::itemsRemoved, filesController_.get(), &FilesController::deselectFiles);
    connect(job, &JobController::quitRequested, this, &QuillfernAppDelegate::quitRequested);
}

void QuillfernAppDelegate::connectWindow()
{
    const WindowActions& actions = window_->actions();
    connect(actions.help, &QAction::triggered, this, &QuillfernAppDelegate::helpAction);
    connect(actions.aboutMenuItem, &QAction::triggered, this, &QuillfernAppDelegate::aboutAction);
    connect(actions.quit, &QAction::triggered, this, &QuillfernAppDelegate::quitRequested);
    connect(window_.get(), &MainWindow::closeRequested, this, &QuillfernAppDelegate::quitRequested);
    connect(&activity_, &Activity::changed, &window_->outputPane(), &OutputPane::updateFolderOptions);
    connect(&activity_, &Activity::ended, openQueue_.get(), &OpenQueue::retryLater);
}

PreviewState QuillfernAppDelegate::previewState() const
{
    PreviewState state;
    state.isJobRunning = activity_.isJob();
    for (const FileItem* item : files_.items())
        state.filePagesList.push_back(item->pages());
    const std::vector<int> rows = filesController_->selection();
    if (!rows.empty()) {
        state.selectedFile = rows.front();
        state.selectedPath = files_.at(rows.front()).filePath();
    }
    state.selectedStamp = stampsController_->selectedStamp();
    return state;
}

void QuillfernAppDelegate::PropertyChanged(Numbering&)
{
    if (activity_.isJob()) return;
    guarded("Error in [PropertyChanged:] : %@", [this] {
        stampsController_->reload();
        preview_->render();
    });
}

bool QuillfernAppDelegate::load(const QList<FilePath>& paths, bool isFolders)
{
    return gatherer_->load(paths, isFolders, window_->filesPane().includesSubfolders());
}

void QuillfernAppDelegate::openFiles(const QList<FilePath>& paths)
{
    openQueue_->add(paths);
}

void QuillfernAppDelegate::cancelAction()
{
    gatherer_->cancel();
}

void QuillfernAppDelegate::helpAction()
{
    guarded("Error in [helpAction:] : %@", [this] {
        if (services_.helpDocument.isEmpty()) {
            services_.alerts.critical(window_.get(), tr("The help document is not installed."));
            throw Failure(QStringLiteral("the help document is not installed"));
        }
        services_.desktop.open(services_.helpDocument);
    });
}

void QuillfernAppDelegate::aboutAction()
{
    auto* dialog = new AboutDialog(window_.get());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

std::optional<Reason> QuillfernAppDelegate::applicationShouldTerminate()
{
    endEditing(*window_);
    memory_.remember(*window_);
    return settings_.synchronize();
}

bool QuillfernAppDelegate::saveToQuit()
{
    if (isAskedToQuit_) return false; // the open question decides
    const QScopedValueRollback asked(isAskedToQuit_, true);
    while (const std::optional<Reason> problem = applicationShouldTerminate()) {
        QString why = problem->shown;
        if (why.endsWith(u'.')) why.chop(1);
        const desktop::QuitChoice choice = services_.alerts.chooseToQuit(
            window_.get(),
            tr("The settings could not be saved: %1.\nStamps and options that were changed would be "
               "lost. Save a profile to keep them elsewhere.")
                .arg(why));
        if (choice != desktop::QuitChoice::TryAgain) return choice == desktop::QuitChoice::QuitAnyway;
    }
    return true;
}

void QuillfernAppDelegate::applicationShouldHandleReopen()
{
    if (window_->isVisible() && !window_->isMinimized()) return;
    window_->setWindowState(window_->windowState() & ~Qt::WindowMinimized);
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void QuillfernAppDelegate::startedAgain(const QList<FilePath>& paths)
{
    applicationShouldHandleReopen();
    // The window may be behind those of other programs. A sheet takes the keyboard instead of its window.
    QWidget* const front = QApplication::activeModalWidget();
    window_->raise();
    if (front) front->raise();
    (front ? front : window_.get())->activateWindow();
    openFiles(paths);
}

bool QuillfernAppDelegate::stop(int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    const bool isGathered = gatherer_->stop(milliseconds);
    const bool isJobDone =
        job_->stop(static_cast<int>(deadline.remainingTime())); // the job is asked to stop in any case
    return isGathered && isJobDone;
}

} // namespace quillfern
