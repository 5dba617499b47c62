#include "app/FilesController.h"

#include "app/FilesDelegate.h"
#include "app/MainWindow.h"
#include "app/TableRows.h"
#include "dialogs/ImportFilesWindowController.h"
#include "dialogs/PDFReadPasswordWindowController.h"
#include "filelist/AllowedFileTypes.h"
#include "filelist/FileListExport.h"
#include "platform/system/Guarded.h"
#include "ui_MainWindow.h"

#include <QAction>
#include <QHeaderView>

namespace quillfern {

namespace {

constexpr int openedWithoutAsking = 10; ///< each in a window of its own

} // namespace

FilesController::FilesController(FileList& files, const std::atomic<bool>& isProcessing, MainWindow& window,
                                 FilesWindow& host, DesktopServices& desktop, FilePanels& panels,
                                 Alerts& alerts, const Clock& clock)
    : files_(files), window_(window), host_(host), panels_(panels), alerts_(alerts), clock_(clock),
      model_(files, isProcessing), commands_(files, *this, desktop)
{
    connectTable();
    connectCommands();
}

FilesController::~FilesController()
{
    window_.ui().mainTableView->setModel(nullptr); // the window outlives the model
}

void FilesController::connectTable()
{
    CustomTableView& table = *window_.ui().mainTableView;
    table.setModel(&model_);
    table.layOutColumns();
    table.setItemDelegate(new FilesDelegate(&table));
    table.setSortingEnabled(true);
    table.setSelectionInspector([this] {
        const std::vector<int> rows = selection();
        return CustomTableView::Selection{commands_.containsPDFFiles(rows),
                                          commands_.containsMultiPageFiles(rows)};
    });
    connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FilesController::selectionChanged);
    connect(&table, &CustomTableView::invertMarksRequested, this,
            [this] { commands_.invertMarks(selection()); });
    connect(&table, &CustomTableView::removeRequested, window_.removeSelectedFilesButton, &QAction::trigger);
    connect(&table, &CustomTableView::moveUpRequested, window_.moveUpButton, &QAction::trigger);
    connect(&table, &CustomTableView::moveDownRequested, window_.moveDownButton, &QAction::trigger);
    connect(&table, &CustomTableView::openRequested, window_.openFileButton, &QAction::trigger);
    connect(&model_, &FileListModel::checkMarkEdited, this, [this] { host_.updateTotalLabel(); });
    connect(&model_, &FileListModel::sorted, this, &FilesController::selectionChanged);
    connect(&model_, &FileListModel::filesDropped, this, [this](const QList<FilePath>& paths) {
        window_.lableDragAndDrop->hide();
        host_.endEditing();
        host_.load(paths, true);
    });
}

void FilesController::connectCommands()
{
    MainWindow& w = window_;
    const auto on = [this](QAction* action, auto&& command) {
        connect(action, &QAction::triggered, this, command);
    };
    on(w.importFiles, [this] {
        host_.endEditing();
        openImportFilesPanel();
    });
    on(w.addFiles, [this] { addFiles(); });
    on(w.addFolder, [this] { addFolder(); });
    on(w.exportToolbarItem, [this] { exportAction(); });
    on(w.openFileButton, [this] { openFiles(); });
    on(w.openEnclosedFolderButton, [this] { commands_.openEnclodingFolder(selection()); });
    on(w.getInfoButton, [this] { commands_.getInfo(selection()); });
    on(w.selectAllButton, [this] { commands_.selectDeselectRemoveAll(1, selection()); });
    on(w.deselectAllButton, [this] { commands_.selectDeselectRemoveAll(2, selection()); });
    on(w.removeAllFilesButton, [this] {
        commands_.selectDeselectRemoveAll(3, selection());
        Q_EMIT selectionChanged(); // the preview was drawn while the files were just going
    });
    on(w.removeSelectedFilesButton, [this] {
        host_.endEditing();
        commands_.removeFiles(selection());
        Q_EMIT selectionChanged();
    });
    on(w.moveUpButton, [this] {
        commands_.moveUp(selection());
        moved();
    });
    on(w.moveDownButton, [this] {
        commands_.moveDown(selection());
        moved();
    });
    on(w.pdfPasswordButton, [this] { openPDFReadPasswordPanel(); });
    for (QAction* action : w.checkSelection)
        on(action,
           [this, action] { commands_.checkUncheckInvertSelection(action->data().toInt(), selection()); });
    for (QAction* action : w.checkAll)
        on(action, [this, action] { commands_.checkUncheckInvertAll(action->data().toInt()); });
}

std::vector<int> FilesController::selection() const
{
    return selectedRows(*window_.ui().mainTableView);
}

bool FilesController::containsPDFFiles() const
{
    return commands_.containsPDFFiles(selection());
}

void FilesController::updateSelectionCommands()
{
    const std::vector<int> rows = selection();
    window_.moveUpButton->setEnabled(commands_.canMoveUp(rows));
    window_.moveDownButton->setEnabled(commands_.canMoveDown(rows));
    window_.pdfPasswordButton->setEnabled(commands_.containsPDFFiles(rows));
}

void FilesController::moved()
{
    // A list that was put in order by hand is not in the order of a column any more.
    window_.ui().mainTableView->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    Q_EMIT selectionChanged();
}

void FilesController::openFiles()
{
    const std::vector<int> rows = selection();
    const auto count = static_cast<int>(rows.size());
    if (count > openedWithoutAsking &&
        !alerts_.confirm(&window_, tr("Are you sure to open %1 files at once?").arg(count)))
        return;
    commands_.openFiles(rows);
}

void FilesController::addFiles()
{
    host_.endEditing();
    OpenPanel panel;
    panel.message = tr("Select TIFF or PDF File(s):");
    panel.types = allowedFileTypes();
    panel.multiple = true;
    panels_.open(&window_, panel, [this](const QList<FilePath>& paths) { host_.load(paths, false); });
}

void FilesController::addFolder()
{
    host_.endEditing();
    OpenPanel panel;
    panel.message = tr("Select folder(s) contains TIFF or PDF File(s):");
    panel.folders = true;
    panel.multiple = true;
    panels_.open(&window_, panel, [this](const QList<FilePath>& paths) { host_.load(paths, true); });
}

void FilesController::openImportFilesPanel()
{
    guarded("Error in (openImportFilesPanel) : %@", [this] {
        if (!importFilesPanel_) {
            importFilesPanel_ = std::make_unique<ImportFilesWindowController>(panels_, alerts_, &window_);
            importFilesPanel_->setAllowedTypes(allowedFileTypes().join(u','));
            connect(importFilesPanel_.get(),
                    &ImportFilesWindowController::ImportFilesWindowControllerDidFinish, this,
                    [this](const QList<FilePath>& paths) {
                        if (!paths.isEmpty()) host_.load(paths, false);
                    });
        }
        importFilesPanel_->resetView();
        importFilesPanel_->open();
    });
}

void FilesController::openPDFReadPasswordPanel()
{
    if (!containsPDFFiles()) return;
    guarded("Error in (openPDFReadPasswordPanel) : %@", [this] {
        if (!pdfReadPasswordPanel_) {
            pdfReadPasswordPanel_ = std::make_unique<PDFReadPasswordWindowController>(&window_);
            connect(
                pdfReadPasswordPanel_.get(),
                &PDFReadPasswordWindowController::PDFReadPasswordWindowControllerDidFinish, this,
                [this](const QString& password) { commands_.updatePDFReadPassword(password, selection()); });
        }
        pdfReadPasswordPanel_->open();
    });
}

void FilesController::exportAction()
{
    host_.endEditing();
    const SavePanel panel{tr("Export List To Tab Delimited Text File :"), QStringLiteral("txt"),
                          exportFileName(clock_)};
    panels_.save(&window_, panel, [this](const FilePath& path) {
        if (!exportList(files_, path))
            alerts_.critical(&window_, tr("The list could not be written to\n%1").arg(path.readable()));
    });
}

void FilesController::resetView(bool idle)
{
    host_.resetView(idle);
}

void FilesController::updateTotalLabel()
{
    host_.updateTotalLabel();
}

bool FilesController::confirm(const QString& message)
{
    return alerts_.confirm(&window_, message);
}

void FilesController::selectRows(const std::vector<int>& rows)
{
    quillfern::selectRows(*window_.ui().mainTableView, rows);
}

void FilesController::selectMovedRows(const std::vector<int>& rows, int scrollTo)
{
    CustomTableView& table = *window_.ui().mainTableView;
    table.setFocus();
    selectRows(rows);
    table.scrollTo(model_.index(scrollTo, 0));
}

void FilesController::applyPassword(const QList<FilePath>& paths, const QString& password)
{
    host_.applyPassword(paths, password);
}

} // namespace quillfern
