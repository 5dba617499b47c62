#include "app/QuillfernAppDelegate.h"

#include "app/AboutDialog.h"
#include "app/MainWindow.h"
#include "app/PreviewPane.h"
#include "dialogs/KeyHint.h"
#include "platform/pageimages/PageImageCache.h"
#include "platform/pageimages/RenderProcess.h"
#include "platform/system/Guarded.h"
#include "platform/system/TimeTaken.h"
#include "ui_MainWindow.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QToolButton>

namespace quillfern {

namespace {

/// Keeps the pages that a process has shown; used on one thread.
class CachedPages final : public PageImageSource
{
  public:
    explicit CachedPages(const QString& program) : process_(program), cache_(process_) {}

    [[nodiscard]] std::optional<PageImage> page(const PageImageRequest& request) override
    {
        return cache_.page(request);
    }

  private:
    RenderProcess process_;
    PageImageCache cache_;
};

} // namespace

QuillfernAppDelegate::QuillfernAppDelegate(AppServices services)
    : services_(std::move(services)), window_(std::make_unique<MainWindow>()), settings_(&services_.defaults),
      includeSubfolders_(services_.defaults), memory_(services_.defaults)
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

    Ui::MainWindow& ui = window_->ui();
    Numbering& number = *settings_.number;
    filesController_ =
        std::make_unique<FilesController>(files_, isProcessing_, *window_, *this, services_.desktop,
                                          services_.panels, services_.alerts, services_.clock);
    number.setDelegate(this);
    stampsController_ = std::make_unique<StampsController>(
        number, *window_, services_.panels, services_.alerts, [this] { return isJobRunning_; });
    preview_ = std::make_unique<PreviewController>(number, *ui.previewPane,
                                                   std::make_unique<CachedPages>(services_.renderProgram),
                                                   [this] { return previewState(); });
    numberingForm_ = std::make_unique<NumberingForm>(ui, number, [this] { return preview_->viewSize(); });
    outputForm_ = std::make_unique<OutputForm>(ui, settings_, services_.panels, *window_);
    job_ = std::make_unique<JobController>(files_, settings_,
                                           ProcessServices{services_.clock, services_.folders,
                                                           services_.mainThread, services_.desktop,
                                                           services_.makeProcessors},
                                           services_.alerts, *this, *window_);
    gatherer_ =
        std::make_unique<FileGatherer>(files_, isProcessing_, services_.mainThread, services_.clock, *this);
    openQueue_ = std::make_unique<OpenQueue>(
        *window_, [this](const QList<FilePath>& paths) { return startLoading(paths, true); });
    markKeyCharacters();
    selectSettingsTab(0);
    ui.inculdeSubfoldersBtn->setChecked(includeSubfolders_.inculdeSubfolders());
    ui.cancelBtn->hide();
    resetView(true);
    connectWindow();
    memory_.restore(*window_);
    window_->show();
    updateTotalLabel();
    preview_->resizePreview();
    PropertyChanged(number);
    stampsController_->selectFirstStamp();
    ui.mainTableView->setFocus();
}

void QuillfernAppDelegate::markKeyCharacters()
{
    Ui::MainWindow& ui = window_->ui();
    const std::pair<QAbstractButton*, const char*> hints[] = {
        {window_->importBtn, "i"},
        {window_->addFilesBtn, "f"},
        {window_->addFolderBtn, "o"},
        {ui.inculdeSubfoldersBtn, "u"},
        {ui.convertBtn, "c"},
        {ui.setCurrentAsDefaultOutputFolderPathBtn, "d"},
        {ui.openFolderAfterConversionBtn, "p"},
    };
    for (const auto& [button, key] : hints)
        setButtonKeyCharacter(*button, QString::fromLatin1(key), QColor());
}

void QuillfernAppDelegate::connectWindow()
{
    Ui::MainWindow& ui = window_->ui();
    connect(filesController_.get(), &FilesController::selectionChanged, this,
            &QuillfernAppDelegate::selectionDidChange);
    connect(stampsController_.get(), &StampsController::selectionChanged, this, [this] {
        if (!isJobRunning_) preview_->render();
    });
    connect(stampsController_.get(), &StampsController::renderRequested, this,
            [this] { PropertyChanged(*settings_.number); });
    connect(stampsController_.get(), &StampsController::profileLoaded, this, [this] {
        numberingForm_->refresh();
        outputForm_->refresh();
    });
    connect(outputForm_.get(), &OutputForm::outputFolderPathChanged, outputForm_.get(),
            &OutputForm::updateFolderOptions);
    connect(preview_.get(), &PreviewController::resized, this,
            [this] { PropertyChanged(*settings_.number); });
    connect(ui.previewPane, &PreviewPane::frameChanged, this, &QuillfernAppDelegate::viewFrameChanged);
    connect(window_.get(), &MainWindow::densityChanged, this, [this] { preview_->render(); });
    connect(ui.inculdeSubfoldersBtn, &QCheckBox::toggled, this,
            [this](bool on) { includeSubfolders_.setInculdeSubfolders(on); });
    connect(ui.cancelBtn, &QPushButton::clicked, this, &QuillfernAppDelegate::cancelAction);
    connect(window_->convert, &QAction::triggered, job_.get(), &JobController::combine);
    connect(ui.convertBtn, &QPushButton::clicked, window_->convert, &QAction::trigger);
    connect(window_->help, &QAction::triggered, this, &QuillfernAppDelegate::helpAction);
    connect(window_->aboutMenuItem, &QAction::triggered, this, &QuillfernAppDelegate::aboutAction);
    connect(job_.get(), &JobController::quitRequested, this, &QuillfernAppDelegate::quitRequested);
    connect(window_->quit, &QAction::triggered, this, &QuillfernAppDelegate::quitRequested);
    connect(window_.get(), &MainWindow::closeRequested, this, &QuillfernAppDelegate::quitRequested);
}

void QuillfernAppDelegate::resetView(bool idle)
{
    guarded("Error in (resetView:) : %@", [&] {
        Ui::MainWindow& ui = window_->ui();
        for (QAction* action : {window_->importFiles, window_->addFiles, window_->addFolder})
            action->setEnabled(idle);
        if (!idle && !focusBeforeBusy_) focusBeforeBusy_ = window_->focusWidget();
        ui.inculdeSubfoldersBtn->setEnabled(idle);
        ui.mainTableView->setEnabled(idle);
        window_->setToolbarEnabled(idle);
        for (QAction* action :
             {window_->exportToolbarItem, window_->openFileButton, window_->getInfoButton,
              window_->openEnclosedFolderButton, window_->selectAllButton, window_->deselectAllButton,
              window_->removeSelectedFilesButton, window_->removeAllFilesButton})
            action->setEnabled(idle && !files_.empty());
        window_->pdfPasswordButton->setEnabled(idle && filesController_->containsPDFFiles());
        outputForm_->updateFolderOptions();
        filesController_->updateSelectionCommands();
        window_->lableDragAndDrop->setVisible(files_.empty());
        if (!idle) setConvertEnabled(false); // one thing at a time
        if (idle) {
            restoreFocus();
            openQueue_->retryLater();
        }
        window_->update();
    });
}

void QuillfernAppDelegate::restoreFocus()
{
    // A control that was disabled has lost the keyboard to the next one, where the user never went.
    QWidget* before = std::exchange(focusBeforeBusy_, nullptr);
    if (before && before->isEnabled() && before->isVisible()) before->setFocus();
}

void QuillfernAppDelegate::resetViewObject(bool idle)
{
    resetView(idle);
    if (idle) PropertyChanged(*settings_.number); // the totals on the preview are other ones now
}

void QuillfernAppDelegate::setConvertEnabled(bool enabled)
{
    window_->ui().convertBtn->setEnabled(enabled);
    window_->convert->setEnabled(enabled);
}

void QuillfernAppDelegate::resetViewForProcess(bool enabled)
{
    guarded("Error in (resetViewForProcess:) : %@", [&] {
        setConvertEnabled(enabled);
        window_->ui().cancelBtn->setEnabled(enabled);
        window_->update();
    });
}

void QuillfernAppDelegate::startProcess()
{
    window_->ui().labelTimeTaken->setEnabled(false); // takes the disabled colour of whatever palette there is
    isProcessing_ = true;
    window_->ui().loadingIndicator->startAnimation();
    window_->ui().cancelBtn->show();
    window_->setCursor(Qt::BusyCursor);
}

void QuillfernAppDelegate::stopProcess()
{
    window_->ui().labelTimeTaken->setEnabled(true);
    isProcessing_ = false;
    window_->ui().loadingIndicator->stopAnimation();
    window_->ui().cancelBtn->hide();
    window_->unsetCursor();
    updateTotalLabel();
}

void QuillfernAppDelegate::jobIsRunning(bool running)
{
    isJobRunning_ = running;
    if (running) {
        window_->ui().loadingIndicator->stopAnimation(); // the sheet shows how it goes
        window_->ui().cancelBtn->hide();
        window_->unsetCursor();
    }
    stampsController_->setEditorsEnabled(!running);
    if (!running) PropertyChanged(*settings_.number);
}

void QuillfernAppDelegate::cancelAction()
{
    isProcessing_ = false;
}

void QuillfernAppDelegate::showTotals()
{
    guarded("Error in (updateTotalLabel:) : %@",
            [this] { window_->ui().labelTotalFiles->setText(totalLabelText(files_.totals())); });
}

void QuillfernAppDelegate::updateTotalLabel()
{
    setConvertEnabled(!files_.empty() && !isProcessing_);
    showTotals();
    showTimeTaken(QString());
}

void QuillfernAppDelegate::showTimeTaken(const QString& text)
{
    guarded("Error in (updateTimeTakenLabel:) : %@", [&] {
        const QString shown = text.isEmpty() ? timeTakenLabel(tr("0 sec(s)"), 0, 0) : text;
        window_->ui().labelTimeTaken->setText(shown);
    });
}

void QuillfernAppDelegate::filesAdded()
{
    window_->lableDragAndDrop->hide();
    showTotals();
}

void QuillfernAppDelegate::selectionDidChange()
{
    if (isProcessing_) return;
    filesController_->updateSelectionCommands();
    PropertyChanged(*settings_.number);
}

PreviewState QuillfernAppDelegate::previewState() const
{
    PreviewState state;
    state.isJobRunning = isJobRunning_;
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
    if (isJobRunning_) return;
    guarded("Error in [PropertyChanged:] : %@", [this] {
        stampsController_->reload();
        preview_->render();
    });
}

void QuillfernAppDelegate::viewFrameChanged()
{
    guarded("Error in [viewFrameChanged:] : %@", [this] { preview_->resizePreview(); });
}

void QuillfernAppDelegate::load(const QList<FilePath>& paths, bool isFolders)
{
    startLoading(paths, isFolders);
}

bool QuillfernAppDelegate::startLoading(const QList<FilePath>& paths, bool isFolders)
{
    if (paths.isEmpty() || isProcessing_) return false;
    const Arguments request{paths, isFolders, window_->ui().inculdeSubfoldersBtn->isChecked()};
    return gatherer_->start(request, settings_.pdfOpenPassword);
}

void QuillfernAppDelegate::applyPassword(const QList<FilePath>& paths, const QString& password)
{
    if (!isJobRunning_) gatherer_->startPasswords(paths, password);
}

void QuillfernAppDelegate::openFiles(const QList<FilePath>& paths)
{
    openQueue_->add(paths);
}

void QuillfernAppDelegate::endEditing()
{
    // Whoever has the keyboard hands in what was typed when it loses it.
    if (QWidget* field = window_->focusWidget()) {
        field->clearFocus();
        field->setFocus();
    }
}

void QuillfernAppDelegate::selectSettingsTab(int tab)
{
    window_->ui().settingTabView->setCurrentIndex(tab);
}

void QuillfernAppDelegate::focusOutputFolder()
{
    window_->ui().outputFolderPath->setFocus();
}

void QuillfernAppDelegate::deselectFiles()
{
    window_->ui().mainTableView->clearSelection();
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

void QuillfernAppDelegate::applicationShouldTerminate()
{
    endEditing();
    memory_.remember(*window_);
    settings_.synchronize();
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
    // It may be behind the windows of other programs; a sheet takes the keyboard instead of its window.
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
    const bool isJobDone = job_->stop(static_cast<int>(deadline.remainingTime())); // asked in any case
    return isGathered && isJobDone;
}

} // namespace quillfern
