#include "app/FilesController.h"

#include "app/Activity.h"
#include "app/CustomTableView.h"
#include "app/FilesDelegate.h"
#include "app/FilesPane.h"
#include "app/TableRows.h"
#include "app/WindowActions.h"
#include "app/WindowFocus.h"
#include "dialogs/ImportFilesWindowController.h"
#include "dialogs/PDFReadPasswordWindowController.h"
#include "filelist/AllowedFileTypes.h"
#include "filelist/FileListExport.h"
#include "platform/system/Guarded.h"

#include <QAction>
#include <QHeaderView>

namespace quillfern {

namespace {

constexpr int openedWithoutAsking = 10; ///< each in a window of its own

} // namespace

FilesController::FilesController(FileList& files, const Activity& activity, FilesPane& pane,
                                 WindowActions& actions, desktop::DesktopServices& desktop,
                                 desktop::FilePanels& panels, desktop::Alerts& alerts, const Clock& clock)
    : files_(files), activity_(activity), pane_(pane), actions_(actions), panels_(panels), alerts_(alerts),
      clock_(clock), model_(files, activity.busy()), commands_(files, *this, desktop)
{
    connectTable();
    connectCommands();
    connect(&activity, &Activity::changed, this, [this] {
        updateCommands();
        if (activity_.isIdle()) updateTotalLabel();
    });
}

QWidget& FilesController::window() const
{
    return *pane_.window();
}

FilesController::~FilesController()
{
    pane_.table().setModel(nullptr); // the pane outlives the model
}

void FilesController::connectTable()
{
    CustomTableView& table = pane_.table();
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
            &FilesController::selectionDidChange);
    connect(&table, &CustomTableView::invertMarksRequested, this,
            [this] { commands_.invertMarks(selection()); });
    connect(&table, &CustomTableView::removeRequested, actions_.removeSelectedFilesButton, &QAction::trigger);
    connect(&table, &CustomTableView::moveUpRequested, actions_.moveUpButton, &QAction::trigger);
    connect(&table, &CustomTableView::moveDownRequested, actions_.moveDownButton, &QAction::trigger);
    connect(&table, &CustomTableView::openRequested, actions_.openFileButton, &QAction::trigger);
    connect(&model_, &FileListModel::checkMarkEdited, this, &FilesController::updateTotalLabel);
    connect(&model_, &FileListModel::sorted, this, &FilesController::selectionDidChange);
    connect(&model_, &FileListModel::filesDropped, this, [this](const QList<FilePath>& paths) {
        pane_.showHint(false);
        endEditing(window());
        Q_EMIT filesChosen(paths, true);
    });
}

void FilesController::connectCommands()
{
    const WindowActions& w = actions_;
    const auto on = [this](QAction* action, auto&& command) {
        connect(action, &QAction::triggered, this, command);
    };
    on(w.importFiles, [this] {
        endEditing(window());
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
        selectionDidChange(); // the preview was drawn while the files were being removed
    });
    on(w.removeSelectedFilesButton, [this] {
        endEditing(window());
        commands_.removeFiles(selection());
        selectionDidChange();
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
    for (QAction* action : w.checkSelection())
        on(action,
           [this, action] { commands_.checkUncheckInvertSelection(action->data().toInt(), selection()); });
    for (QAction* action : w.checkAll())
        on(action, [this, action] { commands_.checkUncheckInvertAll(action->data().toInt()); });
}

std::vector<int> FilesController::selection() const
{
    return selectedRows(pane_.table());
}

bool FilesController::containsPDFFiles() const
{
    return commands_.containsPDFFiles(selection());
}

void FilesController::selectionDidChange()
{
    if (!activity_.isIdle()) return;
    updateSelectionCommands();
    Q_EMIT selectionChanged();
}

void FilesController::updateCommands()
{
    guarded("Error in (resetView:) : %@", [this] {
        const bool isIdle = activity_.isIdle();
        pane_.setListEnabled(isIdle);
        actions_.update(isIdle, !files_.empty());
        updateSelectionCommands(); // these follow the selection in any state
        pane_.showHint(files_.empty());
    });
}

void FilesController::updateSelectionCommands()
{
    const std::vector<int> rows = selection();
    actions_.moveUpButton->setEnabled(commands_.canMoveUp(rows));
    actions_.moveDownButton->setEnabled(commands_.canMoveDown(rows));
    actions_.pdfPasswordButton->setEnabled(commands_.containsPDFFiles(rows));
}

void FilesController::moved()
{
    // After a move by hand the list is no longer sorted by a column.
    pane_.table().horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    selectionDidChange();
}

void FilesController::openFiles()
{
    const std::vector<int> rows = selection();
    const auto count = static_cast<int>(rows.size());
    if (count > openedWithoutAsking &&
        !alerts_.confirm(&window(), tr("Are you sure to open %1 files at once?").arg(count)))
        return;
    commands_.openFiles(rows);
}

void FilesController::addFiles()
{
    endEditing(window());
    desktop::OpenPanel panel;
    panel.message = tr("Select TIFF or PDF File(s):");
    panel.types = allowedFileTypes();
    panel.multiple = true;
    panels_.open(&window(), panel,
                 [this](const QList<FilePath>& paths) { Q_EMIT filesChosen(paths, false); });
}

void FilesController::addFolder()
{
    endEditing(window());
    desktop::OpenPanel panel;
    panel.message = tr("Select folder(s) contains TIFF or PDF File(s):");
    panel.folders = true;
    panel.multiple = true;
    panels_.open(&window(), panel, [this](const QList<FilePath>& paths) { Q_EMIT filesChosen(paths, true); });
}

void FilesController::openImportFilesPanel()
{
    guarded("Error in (openImportFilesPanel) : %@", [this] {
        if (!importFilesPanel_) {
            importFilesPanel_ = std::make_unique<ImportFilesWindowController>(panels_, alerts_, &window());
            importFilesPanel_->setAllowedTypes(allowedFileTypes().join(u','));
            connect(importFilesPanel_.get(),
                    &ImportFilesWindowController::ImportFilesWindowControllerDidFinish, this,
                    [this](const QList<FilePath>& paths) {
                        if (!paths.isEmpty()) Q_EMIT filesChosen(paths, false);
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
            pdfReadPasswordPanel_ = std::make_unique<PDFReadPasswordWindowController>(&window());
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
    endEditing(window());
    const desktop::SavePanel panel{tr("Export List To Tab Delimited Text File :"), QStringLiteral("txt"),
                                   exportFileName(clock_)};
    panels_.save(&window(), panel, [this](const FilePath& path) {
        if (!exportList(files_, path))
            alerts_.critical(&window(), tr("The list could not be written to\n%1").arg(path.readable()));
    });
}

void FilesController::resetView(bool)
{
    updateCommands(); // idle or busy is up to the activity
}

void FilesController::updateTotalLabel()
{
    showTotals();
    Q_EMIT totalsChanged();
}

void FilesController::showTotals()
{
    guarded("Error in (updateTotalLabel:) : %@",
            [this] { pane_.showTotals(totalLabelText(files_.totals())); });
}

void FilesController::listGrew()
{
    pane_.showHint(false);
    showTotals();
}

void FilesController::deselectFiles()
{
    pane_.table().clearSelection();
}

bool FilesController::confirm(const QString& message)
{
    return alerts_.confirm(&window(), message);
}

void FilesController::selectRows(const std::vector<int>& rows)
{
    quillfern::selectRows(pane_.table(), rows);
}

void FilesController::selectMovedRows(const std::vector<int>& rows, int scrollTo)
{
    CustomTableView& table = pane_.table();
    table.setFocus();
    selectRows(rows);
    table.scrollTo(model_.index(scrollTo, 0));
}

void FilesController::applyPassword(const QList<FilePath>& paths, const QString& password)
{
    Q_EMIT passwordGiven(paths, password);
}

} // namespace quillfern
