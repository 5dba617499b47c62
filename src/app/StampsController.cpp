#include "app/StampsController.h"

#include "app/Activity.h"
#include "app/StampsPane.h"
#include "app/TableRows.h"
#include "app/WindowActions.h"
#include "platform/system/Folders.h"
#include "platform/system/Guarded.h"
#include "stamps/ImageStamp.h"
#include "stamps/TextStamp.h"

#include <QHeaderView>
#include <QTableView>

namespace quillfern {

namespace {

QString profileType()
{
    return QStringLiteral("qfprofile");
}

} // namespace

StampsController::StampsController(Numbering& number, const Activity& activity, StampsPane& pane,
                                   const WindowActions& actions, desktop::FilePanels& panels,
                                   desktop::Alerts& alerts)
    : number_(number), pane_(pane), actions_(actions), panels_(panels), alerts_(alerts),
      model_(number, [&activity] { return activity.isJob(); }),
      operations_(number, [this](const IStampItem& stamp) { editors_.removehandlers(stamp); }),
      editors_(number, *this, panels, alerts, pane.window())
{
    connectTable();
    connectCommands();
    updateCommands();
    connect(&activity, &Activity::changed, this,
            [this, &activity] { editors_.setEditorsEnabled(!activity.isJob()); });
}

StampsController::~StampsController()
{
    pane_.table().setModel(nullptr);
}

void StampsController::connectTable()
{
    QTableView& table = pane_.table();
    table.setModel(&model_);
    QHeaderView& header = *table.horizontalHeader();
    header.setStretchLastSection(true);
    header.setMinimumSectionSize(24);
    table.setColumnWidth(StampsModel::IsSelectedColumn, 28);
    table.setColumnWidth(StampsModel::DescriptionColumn, table.fontMetrics().averageCharWidth() * 30);
    header.setSectionResizeMode(StampsModel::IsSelectedColumn, QHeaderView::Fixed);
    connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        updateCommands();
        Q_EMIT selectionChanged();
    });
    connect(&model_, &StampsModel::isSelectedEdited, this, [this] {
        editors_.refreshEditors();
        Q_EMIT renderRequested();
    });
    connect(&table, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        if (index.column() != StampsModel::IsSelectedColumn) stampDoubleAction();
    });
}

void StampsController::connectCommands()
{
    const auto on = [this](const QAction* action, void (StampsController::*command)()) {
        connect(action, &QAction::triggered, this, command);
    };
    on(actions_.textStamp, &StampsController::textStampAction);
    on(actions_.imageStamp, &StampsController::imageStampAction);
    on(actions_.editStamp, &StampsController::stampDoubleAction);
    on(actions_.removeStamp, &StampsController::removeStampAction);
    on(actions_.loadStamps, &StampsController::stampLoadAction);
    on(actions_.saveStamps, &StampsController::stampSaveAction);
    const auto move = [this](const QAction* action,
                             RowSelection (StampListOperations::*operation)(const std::vector<int>&)) {
        connect(action, &QAction::triggered, this, [this, operation] {
            show((operations_.*operation)(selection()), true);
            Q_EMIT renderRequested();
        });
    };
    move(actions_.moveStampUp, &StampListOperations::moveStampUpAction);
    move(actions_.moveStampDown, &StampListOperations::moveStampDownAction);
}

std::vector<int> StampsController::selection() const
{
    return selectedRows(pane_.table());
}

int StampsController::selectedStamp() const
{
    const std::vector<int> rows = selection();
    return rows.empty() ? -1 : rows.front();
}

void StampsController::updateCommands()
{
    const std::vector<int> rows = selection();
    actions_.editStamp->setEnabled(!rows.empty());
    actions_.removeStamp->setEnabled(!rows.empty());
    actions_.moveStampUp->setEnabled(operations_.canMoveUp(rows));
    actions_.moveStampDown->setEnabled(operations_.canMoveDown(rows));
}

void StampsController::reload()
{
    editors_.removeOrphans();
    const std::vector<int> rows = selection();
    model_.refresh();
    if (selection() != rows) selectRows(pane_.table(), rows);
    updateCommands();
}

void StampsController::show(const RowSelection& selection, bool takeFocus)
{
    QTableView& table = pane_.table();
    model_.refresh();
    if (takeFocus) table.setFocus();
    selectRows(table, selection.rows);
    if (selection.scrollTo >= 0) table.scrollTo(model_.index(selection.scrollTo, 0));
    updateCommands();
}

void StampsController::selectFirstStamp()
{
    if (!number_.stamps.empty()) show({{0}, 0});
}

void StampsController::edit(const std::shared_ptr<IStampItem>& stamp)
{
    // New stamps that were not added when their editors were closed are not wanted any more.
    std::erase_if(tempStamps_, [this](const auto& each) { return !editors_.isOpen(*each); });
    editors_.removeOrphans();
    tempStamps_.push_back(stamp);
    editors_.edit(stamp);
}

void StampsController::textStampAction()
{
    guarded("Error in [textStampAction:] : %@", [this] { edit(std::make_shared<TextStamp>()); });
}

void StampsController::imageStampAction()
{
    guarded("Error in [imageStampAction:] : %@", [this] { edit(std::make_shared<ImageStamp>()); });
}

void StampsController::stampDoubleAction()
{
    guarded("Error in [stampDoubleAction:] : %@", [this] {
        const int row = selectedStamp();
        if (row < 0) return;
        editors_.edit(number_.stamps.at(static_cast<std::size_t>(row)));
    });
}

void StampsController::removeStampAction()
{
    // removeStampAction() announces the first stamp only; the editors of all removed stamps have to close.
    for (const int row : selection())
        editors_.removehandlers(*number_.stamps[static_cast<std::size_t>(row)]);
    show(operations_.removeStampAction(selection()));
    Q_EMIT renderRequested();
}

void StampsController::forgetEdited(const IStampItem& stamp)
{
    std::erase_if(tempStamps_, [&](const auto& candidate) { return candidate.get() == &stamp; });
}

void StampsController::addStamp(IStampItem& stamp)
{
    const auto isIt = [&](const auto& candidate) { return candidate.get() == &stamp; };
    const auto found = std::find_if(tempStamps_.begin(), tempStamps_.end(), isIt);
    if (found == tempStamps_.end()) return;
    const std::shared_ptr<IStampItem> kept = *found;
    forgetEdited(stamp);
    show(operations_.addStamp(kept));
    Q_EMIT renderRequested();
}

void StampsController::removeStamp(IStampItem& stamp)
{
    // The stamp's editor makes this call; the stamp has to live until the call returns.
    const auto isIt = [&](const auto& candidate) { return candidate.get() == &stamp; };
    const auto found = std::find_if(number_.stamps.begin(), number_.stamps.end(), isIt);
    const std::shared_ptr<IStampItem> kept = found == number_.stamps.end() ? nullptr : *found;
    show(operations_.removeStamp(stamp, selection()));
    Q_EMIT renderRequested();
}

void StampsController::stampRenamed(IStampItem&)
{
    reload();
}

void StampsController::stampSaveAction()
{
    const desktop::SavePanel panel{tr("%1 Profile").arg(getAppTitle()), profileType(), QString()};
    guarded("Error in [stampSaveAction:] : %@", [&] {
        panels_.save(pane_.window(), panel, [this](const FilePath& path) {
            if (number_.save(path))
                alerts_.information(pane_.window(), tr("%1 Profile save successfully.").arg(getAppTitle()));
            else
                alerts_.critical(pane_.window(), tr("Unable to save %1 Profile!").arg(getAppTitle()));
        });
    });
}

void StampsController::stampLoadAction()
{
    desktop::OpenPanel panel;
    panel.message = tr("%1 Profile").arg(getAppTitle());
    panel.types = QStringList{profileType()};
    panel.anyCase = true;
    guarded("Error in [stampLoadAction:] : %@", [&] {
        panels_.open(pane_.window(), panel, [this](const QList<FilePath>& paths) {
            const StampList before = number_.stamps;
            const bool hadBackup = number_.isBackupFile();
            if (!number_.load(paths.value(0))) {
                alerts_.critical(pane_.window(), tr("Unable to load %1 Profile!").arg(getAppTitle()));
                return;
            }
            for (const auto& stamp : before)
                editors_.removehandlers(*stamp); // these stamps are not part of the job any more
            model_.refresh();
            show({{0}, 0});
            Q_EMIT profileLoaded();
            Q_EMIT renderRequested();
            // The option is on another page of the settings, and files are overwritten according to it.
            if (number_.isBackupFile() != hadBackup)
                alerts_.information(
                    pane_.window(),
                    hadBackup ? tr("This profile turns the backup of files that are stamped in place off.")
                              : tr("This profile turns the backup of files that are stamped in place on."));
        });
    });
}

} // namespace quillfern
