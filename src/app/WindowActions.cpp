#include "app/WindowActions.h"

#include "app/ActionTable.h"
#include "dialogs/ThemedIcon.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QMenu>
#include <algorithm>

namespace quillfern {

namespace {

QString shown(const char* source)
{
    return QCoreApplication::translate("quillfern::Actions", source);
}

} // namespace

WindowActions::WindowActions(QWidget& window)
{
    for (const ActionRow& row : actionTable()) {
        const QString tip = shown(row.tip);
        auto* action = new QAction(themedIcon(QString::fromLatin1(row.icon)), shown(row.text), &window);
        action->setObjectName(QString::fromLatin1(row.name));
        action->setToolTip(tip);
        action->setStatusTip(tip);
        action->setShortcuts(row.keys.sequences());
        if (row.tag != 0) action->setData(row.tag);
        if (row.shortText) action->setIconText(shown(row.shortText));
        if (row.isOfFilesTable) action->setShortcutContext(Qt::WidgetShortcut);
        window.addAction(action);
        this->*row.member = action;
        made_.append({action, row.needs, row.spots, row.isOfFilesTable});
    }
    livePreview->setCheckable(true);
    aboutMenuItem->setMenuRole(QAction::AboutRole);
    quit->setMenuRole(QAction::QuitRole);
}

QList<QAction*> WindowActions::checkSelection() const
{
    return {checkSelected, uncheckSelected, invertSelected};
}

QList<QAction*> WindowActions::checkAll() const
{
    return {checkAllFiles, uncheckAllFiles, invertAllFiles};
}

void WindowActions::update(bool isIdle, bool hasFiles)
{
    for (const Made& each : made_) {
        if (each.needs == Needs::Idle) each.action->setEnabled(isIdle);
        if (each.needs == Needs::Files) each.action->setEnabled(isIdle && hasFiles);
    }
}

QList<std::pair<int, QAction*>> WindowActions::at(Place place) const
{
    QList<std::pair<int, QAction*>> list;
    for (const Made& each : made_)
        for (const Spot& spot : each.spots)
            if (spot.place == place) list.append({spot.position, each.action});
    std::sort(list.begin(), list.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    return list;
}

void WindowActions::fill(QMenu& menu, Place place) const
{
    int last = 0;
    for (const auto& [position, action] : at(place)) {
        if (last != 0 && position / 10 != last / 10) menu.addSeparator();
        menu.addAction(action);
        last = position;
    }
}

QList<QAction*> WindowActions::ofFilesTable() const
{
    QList<QAction*> list;
    for (const Made& each : made_)
        if (each.isOfFilesTable) list.append(each.action);
    return list;
}

void bindButton(QAbstractButton& button, QAction& action)
{
    QObject::connect(&button, &QAbstractButton::clicked, &action, &QAction::trigger);
    QObject::connect(&action, &QAction::changed, &button,
                     [&button, &action] { button.setEnabled(action.isEnabled()); });
}

} // namespace quillfern
