#pragma once

#include "app/WindowActions.h"

#include <QMainWindow>
#include <memory>

class QMenu;
class QSplitter;

namespace quillfern {

namespace Ui {
class MainWindow;
}

class Activity;
class ActivityBar;
class FilesPane;
class OutputPane;
class PagesPane;
class PreviewPane;
class StampsPane;
class WindowToolbar;

/// The pages of the settings, in the order of their tabs.
enum class SettingsTab { Stamps, Pages, Output };

/// The main window as such: its panes, toolbar and menus. What its commands do is connected by others. Owned
/// by whoever shows it; owns everything in it.
class MainWindow final : public QMainWindow
{
    Q_OBJECT

  public:
    /// Shows this activity, which outlives the window.
    explicit MainWindow(const Activity& activity);
    ~MainWindow() override;

    [[nodiscard]] WindowActions& actions() { return actions_; }
    [[nodiscard]] FilesPane& filesPane();
    [[nodiscard]] PreviewPane& previewPane();
    [[nodiscard]] StampsPane& stampsPane();
    [[nodiscard]] PagesPane& pagesPane();
    [[nodiscard]] OutputPane& outputPane();
    [[nodiscard]] ActivityBar& activityBar();
    [[nodiscard]] QSplitter& splitter();

    /// Brings a page of the settings to the front.
    void showSettings(SettingsTab tab);

  Q_SIGNALS:
    /// The user wants to leave.
    void closeRequested();
    /// The window is on another screen now, whose pixels may be denser.
    void densityChanged();

  protected:
    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;

  private:
    void makeMenus();
    void makeViewMenu(QMenu& view);
    void makeFilesMenu();
    void showLivePreviewMark();
    void showActivity(const Activity& activity);

    std::unique_ptr<Ui::MainWindow> ui_;
    WindowActions actions_;
    WindowToolbar* toolbar_ = nullptr;
};

} // namespace quillfern
