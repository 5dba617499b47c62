#pragma once

#include <QAction>
#include <QList>
#include <QString>
#include <QToolBar>
#include <QToolButton>

class QMenu;

namespace quillfern {

class WindowActions;

/// The main window's toolbar: the commands of the action table, two buttons with menus, and help at the far
/// end.
class WindowToolbar final : public QToolBar
{
    Q_OBJECT

  public:
    /// The actions outlive the toolbar.
    WindowToolbar(const WindowActions& actions, QWidget* parent);

    /// The buttons that open menus; the others follow their actions.
    void setMenuButtonsEnabled(bool enabled);

  private:
    void addCommand(const WindowActions& actions, QAction* action);
    QToolButton* addKeyedButton(QAction* action, const char* name, const char* key);
    void addMenuButton(QMenu* menu, const QString& icon, const QString& text, const QString& tip);

    QList<QToolButton*> menuButtons_;
};

} // namespace quillfern
