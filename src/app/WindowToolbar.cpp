#include "app/WindowToolbar.h"

#include "app/WindowActions.h"
#include "dialogs/KeyHint.h"
#include "dialogs/ThemedIcon.h"

#include <QMenu>

namespace quillfern {

namespace {

constexpr int iconSide = 24;
constexpr int checkMenuPosition = 31;
constexpr int removeMenuPosition = 35;
constexpr int farEnd = 90; ///< positions from here on stand at the end of the bar

} // namespace

WindowToolbar::WindowToolbar(const WindowActions& actions, QWidget* parent) : QToolBar(parent)
{
    setWindowTitle(tr("Toolbar"));
    setObjectName(QStringLiteral("toolbar"));
    setMovable(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setIconSize({iconSide, iconSide});
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);

    auto* checkMenu = new QMenu(this);
    actions.fill(*checkMenu, Place::CheckMenu);
    auto* removeMenu = new QMenu(this);
    actions.fill(*removeMenu, Place::RemoveMenu);
    QList<std::pair<int, QAction*>> items = actions.at(Place::Toolbar);
    items.append(
        {{checkMenuPosition, checkMenu->menuAction()}, {removeMenuPosition, removeMenu->menuAction()}});
    std::sort(items.begin(), items.end(), [](const auto& a, const auto& b) { return a.first < b.first; });

    int last = items.front().first;
    for (const auto& [position, action] : items) {
        if (position >= farEnd && last < farEnd) {
            auto* space = new QWidget(this);
            space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
            addWidget(space);
        } else if (position / 10 != last / 10) {
            addSeparator();
        }
        last = position;
        if (position == checkMenuPosition)
            addMenuButton(checkMenu, QStringLiteral("check"), tr("Check"), tr("Check marks and selection"));
        else if (position == removeMenuPosition)
            addMenuButton(removeMenu, QStringLiteral("remove"), tr("Remove"),
                          tr("Remove files from the list"));
        else
            addCommand(actions, action);
    }
}

void WindowToolbar::addCommand(const WindowActions& actions, QAction* action)
{
    if (action == actions.importFiles)
        addKeyedButton(action, "importBtn", "i");
    else if (action == actions.addFiles)
        addKeyedButton(action, "addFilesBtn", "f");
    else if (action == actions.addFolder)
        addKeyedButton(action, "addFolderBtn", "o");
    else
        addAction(action);
}

QToolButton* WindowToolbar::addKeyedButton(QAction* action, const char* name, const char* key)
{
    // Not the action's own button: that button would replace its text, and with it the letter, by the
    // action's at every change of the action.
    auto* button = new QToolButton(this);
    button->setObjectName(QString::fromLatin1(name));
    button->setIcon(action->icon());
    button->setText(action->iconText());
    button->setToolTip(QStringLiteral("%1 (%2)").arg(action->toolTip(),
                                                     action->shortcut().toString(QKeySequence::NativeText)));
    button->setAccessibleName(action->iconText());
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    bindButton(*button, *action);
    addWidget(button);
    setButtonKeyCharacter(*button, QString::fromLatin1(key), QColor());
    return button;
}

void WindowToolbar::addMenuButton(QMenu* menu, const QString& icon, const QString& text, const QString& tip)
{
    auto* button = new QToolButton(this);
    button->setIcon(themedIcon(icon));
    button->setText(text);
    button->setToolTip(tip);
    button->setAccessibleName(text);
    button->setMenu(menu);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    addWidget(button);
    menuButtons_.append(button);
}

void WindowToolbar::setMenuButtonsEnabled(bool enabled)
{
    for (QToolButton* button : menuButtons_)
        button->setEnabled(enabled);
}

} // namespace quillfern
