#include "app/StampsPane.h"

#include "app/TableRows.h"
#include "app/WindowActions.h"
#include "ui_StampsPane.h"

#include <QKeyEvent>
#include <QShortcut>

namespace quillfern {

StampsPane::StampsPane(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::StampsPane>())
{
    ui_->setupUi(this);
    setUpTable(*ui_->stampsTableView);
    ui_->stampsTableView->installEventFilter(this);
}

StampsPane::~StampsPane() = default;

void StampsPane::bindActions(const WindowActions& actions)
{
    bindButton(*ui_->textStampButton, *actions.textStamp);
    bindButton(*ui_->imageStampButton, *actions.imageStamp);
    bindButton(*ui_->editStampButton, *actions.editStamp);
    bindButton(*ui_->removeStampButton, *actions.removeStamp);
    bindButton(*ui_->moveStampUpButton, *actions.moveStampUp);
    bindButton(*ui_->moveStampDownButton, *actions.moveStampDown);
    bindButton(*ui_->loadStampsButton, *actions.loadStamps);
    bindButton(*ui_->saveStampsButton, *actions.saveStamps);
    const std::pair<QAbstractButton*, QAction*> pictured[] = {
        {ui_->editStampButton, actions.editStamp},
        {ui_->removeStampButton, actions.removeStamp},
        {ui_->moveStampUpButton, actions.moveStampUp},
        {ui_->moveStampDownButton, actions.moveStampDown}};
    for (const auto& [button, action] : pictured)
        button->setIcon(action->icon());
    // From right to left, Qt 6.4 pushes a title beside a picture against the button's border.
    if (!isRightToLeft()) {
        ui_->textStampButton->setIcon(actions.textStamp->icon());
        ui_->imageStampButton->setIcon(actions.imageStamp->icon());
    }
    // The same keys as in the table of files.
    const auto key = [this](const QKeySequence& keys, QAction* action) {
        auto* shortcut = new QShortcut(keys, ui_->stampsTableView, nullptr, nullptr, Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, action, &QAction::trigger);
    };
    key(Qt::Key_Delete, actions.removeStamp);
    key(Qt::Key_Backspace, actions.removeStamp);
    key(Qt::Key_Return, actions.editStamp);
    key(Qt::Key_Enter, actions.editStamp);
    key(QKeySequence(Qt::CTRL | Qt::Key_Up), actions.moveStampUp);
    key(QKeySequence(Qt::CTRL | Qt::Key_Down), actions.moveStampDown);
}

QTableView& StampsPane::table()
{
    return *ui_->stampsTableView;
}

bool StampsPane::eventFilter(QObject* watched, QEvent* event)
{
    // Select All is for the table that has the keyboard; the window's command is for the table of files.
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::SelectAll))
        event->accept();
    return QWidget::eventFilter(watched, event);
}

} // namespace quillfern
