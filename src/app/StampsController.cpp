#include "app/StampsController.h"

#include "app/MainWindow.h"
#include "app/TableRows.h"
#include "platform/system/Folders.h"
#include "platform/system/Guarded.h"
#include "stamps/ImageStamp.h"
#include "stamps/TextStamp.h"
#include "ui_MainWindow.h"

#include <QAction>
#include <QHeaderView>
#include <QKeyEvent>
#include <QShortcut>

namespace quillfern {

namespace {

QString profileType()
{
    return QStringLiteral("qfprofile");
}

} // namespace

StampsController::StampsController(Numbering& number, MainWindow& window, FilePanels& panels, Alerts& alerts,
                                   std::function<bool()> isLocked)
    : number_(number), window_(window), panels_(panels), alerts_(alerts), model_(number, std::move(isLocked)),
      operations_(number, [this](const IStampItem& stamp) { editors_.removehandlers(stamp); }),
      editors_(number, *this, panels, alerts, &window)
{
    QTableView& table = *window.ui().stampsTableView;
    table.setModel(&model_);
    setUpTable(table);
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
    connectCommands();
    updateCommands();
}

StampsController::~StampsController()
{
    window_.ui().stampsTableView->setModel(nullptr);
}

void StampsController::connectCommands()
{
    Ui::MainWindow& ui = window_.ui();
    const auto on = [this](QAction* action, QAbstractButton* button, void (StampsController::*command)()) {
        connect(action, &QAction::triggered, this, command);
        connect(button, &QAbstractButton::clicked, action, &QAction::trigger);
        connect(action, &QAction::changed, button, [=] { button->setEnabled(action->isEnabled()); });
    };
    on(window_.textStamp, ui.textStampButton, &StampsController::textStampAction);
    on(window_.imageStamp, ui.imageStampButton, &StampsController::imageStampAction);
    on(window_.editStamp, ui.editStampButton, &StampsController::stampDoubleAction);
    on(window_.removeStamp, ui.removeStampButton, &StampsController::removeStampAction);
    on(window_.loadStamps, ui.loadStampsButton, &StampsController::stampLoadAction);
    on(window_.saveStamps, ui.saveStampsButton, &StampsController::stampSaveAction);
    const auto move = [this](QAction* action, QAbstractButton* button,
                             RowSelection (StampListOperations::*operation)(const std::vector<int>&)) {
        connect(action, &QAction::triggered, this, [this, operation] {
            show((operations_.*operation)(selection()), true);
            Q_EMIT renderRequested();
        });
        connect(button, &QAbstractButton::clicked, action, &QAction::trigger);
        connect(action, &QAction::changed, button, [=] { button->setEnabled(action->isEnabled()); });
    };
    move(window_.moveStampUp, ui.moveStampUpButton, &StampListOperations::moveStampUpAction);
    move(window_.moveStampDown, ui.moveStampDownButton, &StampListOperations::moveStampDownAction);

    // The same keys as in the table of files.
    const auto key = [&](const QKeySequence& keys, QAction* action) {
        auto* shortcut = new QShortcut(keys, ui.stampsTableView, nullptr, nullptr, Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, action, &QAction::trigger);
    };
    ui.stampsTableView->installEventFilter(this);
    key(Qt::Key_Delete, window_.removeStamp);
    key(Qt::Key_Backspace, window_.removeStamp);
    key(Qt::Key_Return, window_.editStamp);
    key(Qt::Key_Enter, window_.editStamp);
    key(QKeySequence(Qt::CTRL | Qt::Key_Up), window_.moveStampUp);
    key(QKeySequence(Qt::CTRL | Qt::Key_Down), window_.moveStampDown);
}

bool StampsController::eventFilter(QObject* watched, QEvent* event)
{
    // Select All means the table one is in, and this one is not the one with the window's command.
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::SelectAll))
        event->accept();
    return QObject::eventFilter(watched, event);
}

std::vector<int> StampsController::selection() const
{
    return selectedRows(*window_.ui().stampsTableView);
}

int StampsController::selectedStamp() const
{
    const std::vector<int> rows = selection();
    return rows.empty() ? -1 : rows.front();
}

void StampsController::updateCommands()
{
    const std::vector<int> rows = selection();
    window_.editStamp->setEnabled(!rows.empty());
    window_.removeStamp->setEnabled(!rows.empty());
    window_.moveStampUp->setEnabled(operations_.canMoveUp(rows));
    window_.moveStampDown->setEnabled(operations_.canMoveDown(rows));
}

void StampsController::reload()
{
    editors_.removeOrphans();
    const std::vector<int> rows = selection();
    model_.refresh();
    if (selection() != rows) selectRows(*window_.ui().stampsTableView, rows);
    updateCommands();
}

void StampsController::show(const RowSelection& selection, bool takeFocus)
{
    QTableView& table = *window_.ui().stampsTableView;
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
    // New stamps whose editors were closed without adding them were given up.
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
    // The editors of all the stamps that go, not of the first one only.
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
    // Its editor is on the stack of this call and must not go before it returns.
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

void StampsController::setEditorsEnabled(bool enabled)
{
    editors_.setEditorsEnabled(enabled);
}

void StampsController::stampSaveAction()
{
    const SavePanel panel{tr("%1 Profile").arg(getAppTitle()), profileType(), QString()};
    guarded("Error in [stampSaveAction:] : %@", [&] {
        panels_.save(&window_, panel, [this](const QString& path) {
            if (number_.save(path))
                alerts_.information(&window_, tr("%1 Profile save successfully.").arg(getAppTitle()));
            else
                alerts_.critical(&window_, tr("Unable to save %1 Profile!").arg(getAppTitle()));
        });
    });
}

void StampsController::stampLoadAction()
{
    OpenPanel panel;
    panel.message = tr("%1 Profile").arg(getAppTitle());
    panel.types = QStringList{profileType()};
    guarded("Error in [stampLoadAction:] : %@", [&] {
        panels_.open(&window_, panel, [this](const QStringList& paths) {
            const StampList before = number_.stamps;
            if (!number_.load(paths.value(0))) {
                alerts_.critical(&window_, tr("Unable to load %1 Profile!").arg(getAppTitle()));
                return;
            }
            for (const auto& stamp : before)
                editors_.removehandlers(*stamp); // these stamps are not part of the job any more
            model_.refresh();
            show({{0}, 0});
            Q_EMIT profileLoaded();
            Q_EMIT renderRequested();
        });
    });
}

} // namespace quillfern
