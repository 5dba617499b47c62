#include "app/MainWindow.h"

#include "dialogs/ThemedIcon.h"
#include "ui_MainWindow.h"

#include <QCloseEvent>
#include <QMenuBar>
#include <QPainter>
#include <QToolBar>
#include <QToolButton>

namespace quillfern {

namespace {

constexpr int toolbarIcon = 24;
constexpr int hintPicture = 72;

/// A picture that follows the palette and the screen.
class IconView final : public QWidget
{
  public:
    IconView(QIcon icon, QWidget* parent) : QWidget(parent), icon_(std::move(icon))
    {
        setFixedSize(hintPicture, hintPicture);
    }

  protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        icon_.paint(&painter, rect(), Qt::AlignCenter, QIcon::Disabled);
    }

  private:
    QIcon icon_;
};

QAction* tagged(QAction* action, int tag)
{
    action->setData(tag);
    return action;
}

} // namespace

MainWindow::MainWindow() : ui_(std::make_unique<Ui::MainWindow>())
{
    ui_->setupUi(this);
    setWindowIcon(QIcon(QStringLiteral(":/quillfern.svg")));
    makeActions();
    makeToolbar();
    makeMenus();
    makeContextMenu();
    makeHint();
    fitIn();
}

MainWindow::~MainWindow() = default;

QAction* MainWindow::makeAction(const QString& icon, const QString& text, const QString& tip,
                                const QList<QKeySequence>& shortcuts)
{
    auto* action = new QAction(themedIcon(icon), text, this);
    action->setToolTip(tip);
    action->setStatusTip(tip);
    action->setShortcuts(shortcuts);
    addAction(action); // shortcuts work also while no menu shows the command
    return action;
}

void MainWindow::makeActions()
{
    const auto ctrl = [](int key) { return QList<QKeySequence>{QKeySequence(Qt::CTRL | Qt::Key(key))}; };
    const auto ctrlShift = [](int key) {
        return QList<QKeySequence>{QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key(key))};
    };
    importFiles = makeAction(QStringLiteral("import"), tr("&Import List of Paths…"),
                             tr("Add the files that a list of paths names"), ctrl(Qt::Key_I));
    addFiles = makeAction(QStringLiteral("add-files"), tr("Add &Files…"), tr("Add PDF and picture files"),
                          QKeySequence::keyBindings(QKeySequence::Open));
    addFolder = makeAction(QStringLiteral("add-folder"), tr("Add F&older…"), tr("Add the files of folders"),
                           ctrlShift(Qt::Key_O));
    exportToolbarItem = makeAction(QStringLiteral("export"), tr("&Export List…"),
                                   tr("Save the list as tab-delimited text"), ctrl(Qt::Key_E));
    openFileButton = makeAction(QStringLiteral("open"), tr("Open File&s"),
                                tr("Open the selected files with their applications"));
    openEnclosedFolderButton = makeAction(QStringLiteral("reveal"), tr("Show in File &Manager"),
                                          tr("Show the selected files in the file manager"));
    getInfoButton = makeAction(QStringLiteral("info"), tr("File &Properties"),
                               tr("Show the file manager's properties of the selected files"));
    selectAllButton = makeAction(QStringLiteral("select-all"), tr("Select &All"), tr("Select all files"),
                                 QKeySequence::keyBindings(QKeySequence::SelectAll));
    deselectAllButton = makeAction({}, tr("&Deselect All"), tr("Select the first file only"));
    removeSelectedFilesButton =
        makeAction(QStringLiteral("remove"), tr("&Remove Selected Files"),
                   tr("Take the selected files off the list; the files themselves stay"), {Qt::Key_Delete});
    removeAllFilesButton = makeAction(QStringLiteral("remove-all"), tr("Remove All &Files…"),
                                      tr("Take all files off the list; the files themselves stay"));
    pdfPasswordButton = makeAction(QStringLiteral("password"), tr("PDF Open Pass&word…"),
                                   tr("Give the selected PDF files a password"), {Qt::Key_F8});
    moveUpButton =
        makeAction(QStringLiteral("up"), tr("M&ove Up"), tr("Move the selected files up"), ctrl(Qt::Key_Up));
    moveDownButton = makeAction(QStringLiteral("down"), tr("Move Dow&n"), tr("Move the selected files down"),
                                ctrl(Qt::Key_Down));
    // Elsewhere these keys belong to the field or table one is in.
    for (QAction* action : {removeSelectedFilesButton, moveUpButton, moveDownButton})
        action->setShortcutContext(Qt::WidgetShortcut);
    ui_->mainTableView->addActions({removeSelectedFilesButton, moveUpButton, moveDownButton});

    const QString checkTips[] = {tr("Put check marks"), tr("Take check marks away"),
                                 tr("Turn check marks about")};
    const QString icons[] = {QStringLiteral("check"), QStringLiteral("uncheck"), QStringLiteral("invert")};
    const QString ofSelection[] = {tr("&Check Selected"), tr("&Uncheck Selected"), tr("&Invert Selected")};
    const QString ofAll[] = {tr("Check A&ll"), tr("Unchec&k All"), tr("In&vert All")};
    for (int i = 0; i < 3; ++i) {
        checkSelection.append(tagged(makeAction(icons[i], ofSelection[i], checkTips[i]), i + 1));
        checkAll.append(tagged(makeAction({}, ofAll[i], checkTips[i]), i + 1));
    }

    livePreview = makeAction({}, tr("&Live Preview"),
                             tr("Show the first page of the selected file in the preview"), {Qt::Key_F7});
    livePreview->setCheckable(true);
    convert = makeAction(QStringLiteral("convert"), tr("&Convert"),
                         tr("Write a stamped copy of every file of the list"),
                         {QKeySequence(Qt::CTRL | Qt::Key_Return), QKeySequence(Qt::CTRL | Qt::Key_Enter)});
    quit = makeAction(QStringLiteral("quit"), tr("&Quit"), tr("Save the settings and leave"),
                      {QKeySequence(Qt::CTRL | Qt::Key_Q)});
    textStamp = makeAction(QStringLiteral("text-stamp"), tr("New &Text Stamp…"),
                           tr("Make a new stamp with numbers or text"), ctrl(Qt::Key_T));
    imageStamp = makeAction(QStringLiteral("picture-stamp"), tr("New &Picture Stamp…"),
                            tr("Make a new stamp with a picture"), ctrlShift(Qt::Key_T));
    editStamp = makeAction(QStringLiteral("edit"), tr("&Edit Stamp…"), tr("Change the selected stamp"));
    removeStamp =
        makeAction(QStringLiteral("delete"), tr("&Remove Stamps"), tr("Remove the selected stamps"));
    moveStampUp =
        makeAction(QStringLiteral("up"), tr("Move Stamps &Up"), tr("Draw the selected stamps earlier"));
    moveStampDown = makeAction(QStringLiteral("down"), tr("Move Stamps &Down"),
                               tr("Draw the selected stamps later, above others"));
    loadStamps = makeAction(QStringLiteral("load-profile"), tr("&Load Profile…"),
                            tr("Replace all stamps, numbering and margins by those of a saved profile"),
                            ctrl(Qt::Key_L));
    saveStamps = makeAction(QStringLiteral("save-profile"), tr("&Save Profile…"),
                            tr("Save all stamps, numbering and margins as a profile"),
                            QKeySequence::keyBindings(QKeySequence::Save));
    help = makeAction(QStringLiteral("help"), tr("Quillfern &Help"), tr("Open the manual"), {Qt::Key_F1});
    aboutMenuItem = makeAction(QStringLiteral("about"), tr("&About Quillfern"), tr("Which version this is"));
    aboutMenuItem->setMenuRole(QAction::AboutRole);
    quit->setMenuRole(QAction::QuitRole);
}

QToolButton* MainWindow::addButton(QToolBar& bar, QAction* action, const QString& name, const QString& text)
{
    // Not the action's own button, which would take its text, and with it the letter, from the action anew
    // at every change.
    auto* button = new QToolButton(&bar);
    button->setObjectName(name);
    button->setIcon(action->icon());
    button->setText(text);
    button->setToolTip(QStringLiteral("%1 (%2)").arg(action->toolTip(),
                                                     action->shortcut().toString(QKeySequence::NativeText)));
    button->setAccessibleName(text);
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    connect(button, &QToolButton::clicked, action, &QAction::trigger);
    connect(action, &QAction::changed, button, [=] { button->setEnabled(action->isEnabled()); });
    bar.addWidget(button);
    return button;
}

void MainWindow::addMenuButton(QToolBar& bar, QMenu* menu, const QString& icon, const QString& text,
                               const QString& tip)
{
    auto* button = new QToolButton(&bar);
    button->setIcon(themedIcon(icon));
    button->setText(text);
    button->setToolTip(tip);
    button->setAccessibleName(text);
    button->setMenu(menu);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    bar.addWidget(button);
    menuButtons_.append(button);
}

void MainWindow::makeToolbar()
{
    toolbar_ = addToolBar(tr("Toolbar"));
    toolbar_->setObjectName(QStringLiteral("toolbar"));
    toolbar_->setMovable(false);
    toolbar_->setContextMenuPolicy(Qt::PreventContextMenu);
    toolbar_->setIconSize({toolbarIcon, toolbarIcon});
    toolbar_->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    const auto add = [this](QAction* action, const QString& shortText) {
        action->setIconText(shortText);
        toolbar_->addAction(action);
    };
    importBtn = addButton(*toolbar_, importFiles, QStringLiteral("importBtn"), tr("Import"));
    addFilesBtn = addButton(*toolbar_, addFiles, QStringLiteral("addFilesBtn"), tr("Add Files"));
    addFolderBtn = addButton(*toolbar_, addFolder, QStringLiteral("addFolderBtn"), tr("Add Folder"));
    toolbar_->addSeparator();
    add(openFileButton, tr("Open"));
    add(openEnclosedFolderButton, tr("Reveal"));
    add(getInfoButton, tr("Info"));
    toolbar_->addSeparator();
    auto* checkMenu = new QMenu(this);
    checkMenu->addActions(checkSelection);
    checkMenu->addSeparator();
    checkMenu->addActions(checkAll);
    checkMenu->addSeparator();
    checkMenu->addActions({selectAllButton, deselectAllButton});
    addMenuButton(*toolbar_, checkMenu, QStringLiteral("check"), tr("Check"),
                  tr("Check marks and selection"));
    add(moveUpButton, tr("Up"));
    add(moveDownButton, tr("Down"));
    add(pdfPasswordButton, tr("Password"));
    auto* removeMenu = new QMenu(this);
    removeMenu->addActions({removeSelectedFilesButton, removeAllFilesButton});
    addMenuButton(*toolbar_, removeMenu, QStringLiteral("remove"), tr("Remove"),
                  tr("Take files off the list"));
    toolbar_->addSeparator();
    add(exportToolbarItem, tr("Export"));
    auto* space = new QWidget(toolbar_);
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    toolbar_->addWidget(space);
    add(help, tr("Help"));
}

void MainWindow::setToolbarEnabled(bool enabled)
{
    for (QAction* action :
         {importFiles, addFiles, addFolder, openFileButton, openEnclosedFolderButton, getInfoButton,
          moveUpButton, moveDownButton, pdfPasswordButton, exportToolbarItem, help})
        action->setEnabled(enabled);
    for (QAction* action : checkSelection + checkAll)
        action->setEnabled(enabled);
    for (QToolButton* button : menuButtons_)
        button->setEnabled(enabled);
}

void MainWindow::makeMenus()
{
    // The letters of the menus leave those of the buttons free: I, F, O, U, C, D and P.
    QMenu* file = menuBar()->addMenu(tr("Fi&le"));
    file->addActions({addFiles, addFolder, importFiles, exportToolbarItem});
    file->addSeparator();
    file->addActions({openFileButton, openEnclosedFolderButton, getInfoButton});
    file->addSeparator();
    file->addAction(convert);
    file->addSeparator();
    file->addAction(quit);

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    edit->addActions({selectAllButton, deselectAllButton});
    edit->addSeparator();
    edit->addActions(checkSelection);
    edit->addActions(checkAll);
    edit->addSeparator();
    edit->addActions({moveUpButton, moveDownButton, pdfPasswordButton});
    edit->addSeparator();
    edit->addActions({removeSelectedFilesButton, removeAllFilesButton});

    QMenu* stamps = menuBar()->addMenu(tr("&Stamps"));
    stamps->addActions({textStamp, imageStamp});
    stamps->addSeparator();
    stamps->addActions({editStamp, removeStamp, moveStampUp, moveStampDown});
    stamps->addSeparator();
    stamps->addActions({loadStamps, saveStamps});

    QMenu* view = menuBar()->addMenu(tr("&View"));
    for (int i = 0; i < 3; ++i) {
        QAction* tab = view->addAction(ui_->settingTabView->tabText(i));
        tab->setShortcut(QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + i)));
        connect(tab, &QAction::triggered, this, [this, i] {
            ui_->settingTabView->setCurrentIndex(i);
            ui_->settingTabView->setFocus();
        });
        settingsTabs_[i] = tab;
    }
    view->addSeparator();
    view->addAction(livePreview);
    // The box tells what is so; the mark follows whenever a menu shows it.
    connect(livePreview, &QAction::triggered, ui_->isLivePreview, &QCheckBox::toggle);
    connect(view, &QMenu::aboutToShow, this, &MainWindow::showLivePreviewMark);

    QMenu* helpMenu = menuBar()->addMenu(tr("&Help"));
    helpMenu->addActions({help, aboutMenuItem});
}

void MainWindow::showLivePreviewMark()
{
    livePreview->setChecked(ui_->isLivePreview->isChecked());
}

void MainWindow::makeContextMenu()
{
    filesContextMenu = new QMenu(this);
    filesContextMenu->addActions({pdfPasswordButton, livePreview});
    filesContextMenu->addSeparator();
    filesContextMenu->addActions({openFileButton, openEnclosedFolderButton, getInfoButton});
    filesContextMenu->addSeparator();
    filesContextMenu->addActions(checkSelection);
    filesContextMenu->addSeparator();
    filesContextMenu->addActions({moveUpButton, moveDownButton});
    filesContextMenu->addSeparator();
    filesContextMenu->addAction(removeSelectedFilesButton);
    connect(filesContextMenu, &QMenu::aboutToShow, this, &MainWindow::showLivePreviewMark);
    ui_->mainTableView->setContextMenu(filesContextMenu);
}

void MainWindow::makeHint()
{
    QWidget* viewport = ui_->mainTableView->viewport();
    lableDragAndDrop = new QWidget(viewport);
    lableDragAndDrop->setAttribute(Qt::WA_TransparentForMouseEvents); // drops go to the table
    auto* picture = new IconView(themedIcon(QStringLiteral("drop-files")), lableDragAndDrop);
    auto* text = new QLabel(tr("Drop PDF and picture files or folders here"), lableDragAndDrop);
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    QFont large = text->font();
    large.setPointSizeF(large.pointSizeF() * 1.25);
    text->setFont(large);
    text->setForegroundRole(QPalette::PlaceholderText);
    auto* other = new QLabel(tr("or use Add Files, Add Folder and Import above"), lableDragAndDrop);
    other->setAlignment(Qt::AlignCenter);
    other->setWordWrap(true);
    other->setForegroundRole(QPalette::PlaceholderText);
    auto* layout = new QVBoxLayout(lableDragAndDrop);
    layout->addStretch(2);
    layout->addWidget(picture, 0, Qt::AlignHCenter);
    layout->addSpacing(8);
    layout->addWidget(text);
    layout->addWidget(other);
    layout->addStretch(3);
    auto* fill = new QVBoxLayout(viewport);
    fill->addWidget(lableDragAndDrop);
}

void MainWindow::fitIn()
{
    const auto use = [](QToolButton* button, const QAction* action) { button->setIcon(action->icon()); };
    use(ui_->editStampButton, editStamp);
    use(ui_->removeStampButton, removeStamp);
    use(ui_->moveStampUpButton, moveStampUp);
    use(ui_->moveStampDownButton, moveStampDown);
    // From right to left, Qt 6.4 pushes a title beside a picture against the button's border.
    if (!isRightToLeft()) {
        ui_->textStampButton->setIcon(textStamp->icon());
        ui_->imageStampButton->setIcon(imageStamp->icon());
        ui_->convertBtn->setIcon(convert->icon());
        ui_->outputFolderButton->setIcon(themedIcon(QStringLiteral("browse")));
    }
    // Room for both lines of a long text from the beginning, or the preview above would move for the second
    // one.
    ui_->labelTimeTaken->setMinimumHeight(2 * ui_->labelTimeTaken->fontMetrics().lineSpacing());
    ui_->splitter->setStretchFactor(0, 1);
    ui_->splitter->setStretchFactor(1, 0);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->ignore(); // leaving is decided in one place
    Q_EMIT closeRequested();
}

bool MainWindow::event(QEvent* event)
{
    const bool handled = QMainWindow::event(event);
    if (event->type() == QEvent::ScreenChangeInternal) Q_EMIT densityChanged();
    return handled;
}

} // namespace quillfern
