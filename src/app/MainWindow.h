#pragma once

#include <QMainWindow>
#include <memory>

class QAction;
class QLabel;
class QMenu;
class QToolBar;
class QToolButton;

namespace quillfern {

namespace Ui {
class MainWindow;
}

/// The main window as such: its layout, its toolbar and its menus. What its commands do is connected by
/// others. Owned by whoever shows it; owns everything in it.
class MainWindow final : public QMainWindow
{
    Q_OBJECT

  public:
    MainWindow();
    ~MainWindow() override;

    [[nodiscard]] Ui::MainWindow& ui() { return *ui_; }

    // The toolbar's own buttons, with a letter to press with Alt.
    QToolButton* importBtn = nullptr;
    QToolButton* addFilesBtn = nullptr;
    QToolButton* addFolderBtn = nullptr;

    // Commands, in the menus, the toolbar and the context menu of the files.
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
    /// Check, uncheck and turn about: their tags are 1, 2 and 3 (QAction::data()).
    QList<QAction*> checkSelection;
    QList<QAction*> checkAll;

    QMenu* filesContextMenu = nullptr;
    QWidget* lableDragAndDrop = nullptr; ///< tells what to do with an empty list

    /// Every item of the toolbar.
    void setToolbarEnabled(bool enabled);

  Q_SIGNALS:
    /// The user wants to leave.
    void closeRequested();
    /// The window is on another screen now, whose pixels may be denser.
    void densityChanged();

  protected:
    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;

  private:
    QAction* makeAction(const QString& icon, const QString& text, const QString& tip,
                        const QList<QKeySequence>& shortcuts = {});
    void makeActions();
    void makeToolbar();
    QToolButton* addButton(QToolBar& bar, QAction* action, const QString& name, const QString& text);
    void addMenuButton(QToolBar& bar, QMenu* menu, const QString& icon, const QString& text,
                       const QString& tip);
    void makeMenus();
    void makeContextMenu();
    void showLivePreviewMark();
    void makeHint();
    void fitIn();

    std::unique_ptr<Ui::MainWindow> ui_;
    QToolBar* toolbar_ = nullptr;
    QList<QToolButton*> menuButtons_;
    QAction* settingsTabs_[3] = {};
};

} // namespace quillfern
