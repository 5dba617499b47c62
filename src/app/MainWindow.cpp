#include "app/MainWindow.h"

#include "app/Activity.h"
#include "app/WindowToolbar.h"
#include "ui_MainWindow.h"

#include <QCloseEvent>
#include <QMenu>
#include <QMenuBar>

namespace quillfern {

MainWindow::MainWindow(const Activity& activity) : ui_(std::make_unique<Ui::MainWindow>()), actions_(*this)
{
    ui_->setupUi(this);
    setWindowIcon(QIcon(QStringLiteral(":/quillfern.svg")));
    toolbar_ = new WindowToolbar(actions_, this); // after the panes, which Tab reaches first
    addToolBar(toolbar_);
    makeMenus();
    makeFilesMenu();
    ui_->stampsTab->bindActions(actions_);
    ui_->activityBar->bindConvert(*actions_.convert);
    ui_->splitter->setStretchFactor(0, 1);
    ui_->splitter->setStretchFactor(1, 0);
    ui_->activityBar->follow(activity);
    connect(&activity, &Activity::changed, this, [this, &activity] { showActivity(activity); });
}

MainWindow::~MainWindow() = default;

FilesPane& MainWindow::filesPane()
{
    return *ui_->leftBox;
}

PreviewPane& MainWindow::previewPane()
{
    return *ui_->previewPane;
}

StampsPane& MainWindow::stampsPane()
{
    return *ui_->stampsTab;
}

PagesPane& MainWindow::pagesPane()
{
    return *ui_->pagesTab;
}

OutputPane& MainWindow::outputPane()
{
    return *ui_->outputTab;
}

ActivityBar& MainWindow::activityBar()
{
    return *ui_->activityBar;
}

QSplitter& MainWindow::splitter()
{
    return *ui_->splitter;
}

void MainWindow::showSettings(SettingsTab tab)
{
    ui_->settingTabView->setCurrentIndex(static_cast<int>(tab));
}

void MainWindow::makeMenus()
{
    // The letters of the menus leave those of the buttons free: I, F, O, U, C, D and P.
    actions_.fill(*menuBar()->addMenu(tr("Fi&le")), Place::FileMenu);
    actions_.fill(*menuBar()->addMenu(tr("&Edit")), Place::EditMenu);
    actions_.fill(*menuBar()->addMenu(tr("&Stamps")), Place::StampsMenu);
    makeViewMenu(*menuBar()->addMenu(tr("&View")));
    actions_.fill(*menuBar()->addMenu(tr("&Help")), Place::HelpMenu);
}

void MainWindow::makeViewMenu(QMenu& view)
{
    for (int i = 0; i < ui_->settingTabView->count(); ++i) {
        QAction* tab = view.addAction(ui_->settingTabView->tabText(i));
        tab->setShortcut(QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + i)));
        connect(tab, &QAction::triggered, this, [this, i] {
            ui_->settingTabView->setCurrentIndex(i);
            ui_->settingTabView->setFocus();
        });
    }
    view.addSeparator();
    actions_.fill(view, Place::ViewMenu);
    connect(actions_.livePreview, &QAction::triggered, ui_->previewPane, &PreviewPane::toggleLivePreview);
    connect(&view, &QMenu::aboutToShow, this, &MainWindow::showLivePreviewMark);
}

void MainWindow::makeFilesMenu()
{
    auto* menu = new QMenu(this);
    actions_.fill(*menu, Place::FilesMenu);
    connect(menu, &QMenu::aboutToShow, this, &MainWindow::showLivePreviewMark);
    ui_->leftBox->bindActions(actions_, menu);
}

void MainWindow::showLivePreviewMark()
{
    // The switch in the preview's pane counts; the command's mark is set whenever a menu shows it.
    actions_.livePreview->setChecked(ui_->previewPane->isLivePreview());
}

void MainWindow::showActivity(const Activity& activity)
{
    toolbar_->setMenuButtonsEnabled(activity.isIdle());
    if (activity.isGathering())
        setCursor(Qt::BusyCursor);
    else
        unsetCursor(); // the progress sheet shows how a job goes
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->ignore(); // the receiver of closeRequested() decides whether the program ends
    Q_EMIT closeRequested();
}

bool MainWindow::event(QEvent* event)
{
    const bool handled = QMainWindow::event(event);
    if (event->type() == QEvent::ScreenChangeInternal) Q_EMIT densityChanged();
    return handled;
}

} // namespace quillfern
