#pragma once

#include <QAction>
#include <QList>
#include <span>
#include <utility>

class QAbstractButton;
class QMenu;
class QWidget;

namespace quillfern {

/// Where commands appear.
enum class Place {
    None,
    FileMenu,
    EditMenu,
    StampsMenu,
    ViewMenu,
    HelpMenu,
    FilesMenu, ///< the context menu of the table of files
    Toolbar,
    CheckMenu, ///< of the toolbar's button Check
    RemoveMenu ///< of the toolbar's button Remove
};

/// A command's position in one place. Positions of one ten are a group; a separator stands between groups.
struct Spot
{
    Place place = Place::None;
    int position = 0;
};

/// When a command can be used.
enum class Needs {
    Nothing,
    Idle,     ///< an idle window
    Files,    ///< an idle window and files in the list
    Selection ///< depends on what is selected; its controller enables it
};

/// The commands of the main window, made from one table (ActionTable.cpp): a new command is a member here and
/// a row there. The window owns the actions.
class WindowActions
{
  public:
    /// Makes the actions as children of the window, where their shortcuts work, also while no menu shows
    /// them.
    explicit WindowActions(QWidget& window);

    QAction* importFiles = nullptr;
    QAction* addFiles = nullptr;
    QAction* addFolder = nullptr;
    QAction* exportToolbarItem = nullptr;
    QAction* openFileButton = nullptr;
    QAction* openEnclosedFolderButton = nullptr;
    QAction* getInfoButton = nullptr;
    QAction* selectAllButton = nullptr;
    QAction* deselectAllButton = nullptr;
    QAction* removeSelectedFilesButton = nullptr;
    QAction* removeAllFilesButton = nullptr;
    QAction* pdfPasswordButton = nullptr;
    QAction* moveUpButton = nullptr;
    QAction* moveDownButton = nullptr;
    QAction* checkSelected = nullptr;
    QAction* uncheckSelected = nullptr;
    QAction* invertSelected = nullptr;
    QAction* checkAllFiles = nullptr;
    QAction* uncheckAllFiles = nullptr;
    QAction* invertAllFiles = nullptr;
    QAction* livePreview = nullptr; ///< F7 in the table of files
    QAction* convert = nullptr;
    QAction* quit = nullptr;
    QAction* textStamp = nullptr;
    QAction* imageStamp = nullptr;
    QAction* editStamp = nullptr;
    QAction* removeStamp = nullptr;
    QAction* moveStampUp = nullptr;
    QAction* moveStampDown = nullptr;
    QAction* loadStamps = nullptr;
    QAction* saveStamps = nullptr;
    QAction* help = nullptr;
    QAction* aboutMenuItem = nullptr;

    /// Check, uncheck and invert: their tags are 1, 2 and 3 (QAction::data()).
    [[nodiscard]] QList<QAction*> checkSelection() const;
    [[nodiscard]] QList<QAction*> checkAll() const;

    /// Enables the commands that do not depend on a selection.
    void update(bool isIdle, bool hasFiles);
    /// The commands that appear in a place, with their positions, in their order.
    [[nodiscard]] QList<std::pair<int, QAction*>> at(Place place) const;
    /// Appends the commands of a place to a menu, with separators between the groups.
    void fill(QMenu& menu, Place place) const;
    /// Those whose keys work in the table of files only, because elsewhere they belong to a field.
    [[nodiscard]] QList<QAction*> ofFilesTable() const;

  private:
    struct Made
    {
        QAction* action;
        Needs needs;
        std::span<const Spot> spots;
        bool isOfFilesTable;
    };
    QList<Made> made_;
};

/// Makes the button trigger the action, and be enabled when the action is.
void bindButton(QAbstractButton& button, QAction& action);

} // namespace quillfern
