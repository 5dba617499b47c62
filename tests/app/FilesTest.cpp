#include "app/AppFixture.h"

#include <QTimer>

namespace quillfern {
namespace {

class Files : public StartedApp
{
  protected:
    /// a.pdf to f.pdf of 1 to 6 pages, in this order.
    void fillSix()
    {
        QStringList paths;
        for (int i = 0; i < 6; ++i)
            paths.append(pdf(qPrintable(u"%1.pdf"_s.arg(QChar('a' + i))), i + 1));
        fill(paths);
    }
    QString order()
    {
        QString letters;
        for (const QString& name : names())
            letters += name.at(0);
        return letters;
    }
    QString marks()
    {
        QString text;
        for (const FileItem* item : files().items())
            text += item->isSelected() ? u'x' : u'-';
        return text;
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        ui().mainTableView->setFocus();
        QTest::keyClick(ui().mainTableView, key, modifiers);
    }
};

TEST_F(Files, ADropOfFilesAndFoldersFillsTheList)
{
    pdf("in/b.pdf", 2);
    pdf("in/sub/c.PDF", 3);
    scratch.write(u"in/notes.txt"_s, "no");
    scratch.write(u"in/Report.Pdf"_s, numberedPdf(1));
    scratch.writePicture(u"in/scan.png"_s, {40, 30});
    fill({scratch.path(u"in"_s), pdf("loose.pdf", 4)});
    EXPECT_EQ(names(), words("b.pdf scan.png loose.pdf"));
    EXPECT_FALSE(ui().lableDragAndDrop->isVisible());
    EXPECT_TRUE(ui().convertBtn->isEnabled());
    EXPECT_TRUE(actions().exportToolbarItem->isEnabled());
    EXPECT_EQ(ui().labelTotalFiles->text(),
              u"3 Total file(s); Total page count of PDF files: 6  TIFF files: 0  Other files: 1"_s);
    EXPECT_FALSE(ui().loadingIndicator->isAnimating());

    press(window(), "inculdeSubfoldersBtn");
    EXPECT_EQ(defaults.flushes, 1) << "the choice is kept at once";
    fill({scratch.path(u"in"_s)});
    EXPECT_EQ(names().constLast(), u"c.PDF"_s) << "only the new one of the subfolder";
    EXPECT_EQ(files().count(), 4);
}

TEST_F(Files, NothingCanBeDroppedBehindADialog)
{
    fillSix();
    const QString more = pdf("more.pdf", 1);
    select({0});
    actions().pdfPasswordButton->trigger();
    ASSERT_NE(QApplication::activeModalWidget(), nullptr);
    EXPECT_FALSE(drop({more}));
    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
    EXPECT_TRUE(drop({more}));
    waitFor([this] { return files().count() == 7 && !app().isProcessing(); }, "the file");
}

TEST_F(Files, ThePanelsChooseFilesAndFolders)
{
    pdf("in/b.pdf", 2);
    panels.answers.append(QStringList{pdf("Picked.Pdf", 1)}); // the panel has tested its type
    actions().addFiles->trigger();
    waitFor([this] { return files().count() == 1 && !app().isProcessing(); }, "the picked file");
    panels.answers.append(QStringList{scratch.path(u"in"_s)});
    actions().addFolder->trigger();
    waitFor([this] { return files().count() == 2 && !app().isProcessing(); }, "the folder's file");
    actions().addFiles->trigger(); // closed without a choice
    EXPECT_EQ(panels.opened.size(), 3);
    EXPECT_FALSE(app().isProcessing());
    EXPECT_EQ(names(), words("Picked.Pdf b.pdf"));
    EXPECT_EQ(panels.opened[0].message, u"Select TIFF or PDF File(s):"_s);
    EXPECT_EQ(panels.opened[1].message, u"Select folder(s) contains TIFF or PDF File(s):"_s);
    EXPECT_TRUE(panels.opened[0].multiple && panels.opened[1].folders);
}

TEST_F(Files, KeysOfTheTable)
{
    fillSix();
    select({1, 3});
    key(Qt::Key_Space);
    EXPECT_EQ(marks(), u"x-x-xx"_s);
    key(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(order(), u"acbedf"_s);
    EXPECT_THAT(selectedFiles(), testing::ElementsAre(2, 4));
    key(Qt::Key_Up, Qt::ControlModifier);
    key(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(order(), u"badcef"_s);
    key(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(order(), u"badcef"_s) << "row 0 is selected: the button is disabled";
    EXPECT_FALSE(actions().moveUpButton->isEnabled());
    select({0, 5});
    EXPECT_FALSE(actions().moveDownButton->isEnabled());
    key(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(order(), u"badcef"_s);
    select({0, 2});
    key(Qt::Key_Delete);
    EXPECT_EQ(order(), u"acef"_s);
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(selectedFiles().size(), 4U);
    select({0});
    key(Qt::Key_Backspace);
    EXPECT_EQ(order(), u"cef"_s);
    select({1});
    key(Qt::Key_F7);
    EXPECT_TRUE(number().isLivePreview());
    QTest::keyClick(&window(), Qt::Key_F7); // wherever one is in the window
    EXPECT_FALSE(number().isLivePreview());
}

TEST_F(Files, CommandsOnMarksAndSelection)
{
    fillSix();
    const auto check = [this](const QList<QAction*>& actions, int tag) { actions[tag - 1]->trigger(); };
    select({0, 5});
    check(actions().checkSelection(), 2);
    EXPECT_EQ(marks(), u"-xxxx-"_s);
    check(actions().checkAll(), 3);
    EXPECT_EQ(marks(), u"x----x"_s);
    check(actions().checkAll(), 1);
    check(actions().checkSelection(), 3);
    EXPECT_EQ(marks(), u"-xxxx-"_s);
    check(actions().checkAll(), 2);
    EXPECT_EQ(marks(), u"------"_s);
    actions().selectAllButton->trigger();
    EXPECT_EQ(selectedFiles().size(), 6U);
    actions().deselectAllButton->trigger();
    EXPECT_THAT(selectedFiles(), testing::ElementsAre(0));

    alerts.answer = false;
    actions().removeAllFilesButton->trigger();
    EXPECT_EQ(files().count(), 6);
    alerts.answer = true;
    actions().removeAllFilesButton->trigger();
    EXPECT_EQ(alerts.questions.constLast(), u"Are you sure to remove all file(s)?"_s);
    EXPECT_EQ(files().count(), 0);
    EXPECT_TRUE(ui().lableDragAndDrop->isVisible());
    EXPECT_FALSE(ui().convertBtn->isEnabled());
}

TEST_F(Files, ThePasswordIsForPdfFilesOnly)
{
    fill({scratch.writePicture(u"scan.png"_s, {40, 30}), pdf("a.pdf", 2)});
    for (const auto& [rows, isEnabled] : Rows<std::vector<int>, bool>{
             {{0}, false}, {{1}, true}, {{0, 1}, true}, {std::vector<int>(), false}}) {
        select(rows);
        EXPECT_EQ(actions().pdfPasswordButton->isEnabled(), isEnabled) << rows.size();
    }
    select({0});
    key(Qt::Key_F8);
    EXPECT_EQ(openDialog(), nullptr);
    select({0, 1});
    key(Qt::Key_F8);
    QDialog* dialog = openDialog();
    ASSERT_NE(dialog, nullptr);
    auto* field = dialog->findChild<QLineEdit*>();
    ASSERT_NE(field, nullptr);
    QTest::keyClicks(field, u"open sesame"_s);
    pdf("a.pdf", 3);
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(files().at(1).pages(), 2) << "counting is not for the window's own thread";
    waitFor([this] { return files().at(1).pages() == 3 && !app().isProcessing(); }, "the count");
    EXPECT_EQ(files().at(0).pdfOpenPassword(), QString());
    EXPECT_EQ(files().at(1).pdfOpenPassword(), u"open sesame"_s);
    EXPECT_TRUE(ui().labelTotalFiles->text().contains(u"PDF files: 3"_s));
    EXPECT_TRUE(ui().mainTableView->isEnabled());
}

TEST_F(Files, TheDesktopIsAskedForTheSelectedFiles)
{
    fillSix();
    select({0, 2});
    actions().openFileButton->trigger();
    actions().openEnclosedFolderButton->trigger();
    actions().getInfoButton->trigger();
    const QStringList paths = {scratch.path(u"a.pdf"_s), scratch.path(u"c.pdf"_s)};
    EXPECT_EQ(desktop.opened, paths);
    EXPECT_EQ(desktop.revealed, QList<QStringList>{paths});
    EXPECT_EQ(desktop.shownProperties, QList<QStringList>{paths});
}

TEST_F(Files, ReturnOpensWhatIsSelectedAndASingleClickNothing)
{
    fillSix();
    const QRect cell = ui().mainTableView->visualRect(ui().mainTableView->model()->index(2, 1));
    QTest::mouseClick(ui().mainTableView->viewport(), Qt::LeftButton, {}, cell.center());
    EXPECT_TRUE(desktop.opened.isEmpty());
    QTest::mouseDClick(ui().mainTableView->viewport(), Qt::LeftButton, {}, cell.center());
    EXPECT_EQ(desktop.opened, QStringList{scratch.path(u"c.pdf"_s)});
    desktop.opened.clear();
    select({0}); // the current cell is a check box
    key(Qt::Key_Return);
    EXPECT_EQ(desktop.opened, QStringList{scratch.path(u"a.pdf"_s)});

    QStringList more;
    for (int i = 0; i < 6; ++i)
        more.append(pdf(qPrintable(u"more%1.pdf"_s.arg(i)), 1));
    fill(more);
    desktop.opened.clear();
    alerts.answer = false;
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_Return);
    EXPECT_EQ(alerts.questions.size(), 1);
    EXPECT_TRUE(desktop.opened.isEmpty()) << "a dozen windows at once have to be wanted";
}

TEST_F(Files, TheListIsExported)
{
    fillSix();
    const QString target = scratch.path(u"list.txt"_s);
    panels.answers = {QStringList{target}, QStringList{scratch.path(u"gone/list.txt"_s)}};
    actions().exportToolbarItem->trigger();
    EXPECT_EQ(panels.saved[0].message, u"Export List To Tab Delimited Text File :"_s);
    EXPECT_EQ(panels.saved[0].name, u"Export 16-Nov-2026 02-05-09 PM.txt"_s);
    EXPECT_EQ(readFile(target).count('\n'), 7);
    EXPECT_TRUE(alerts.criticals.isEmpty());
    actions().exportToolbarItem->trigger();
    EXPECT_EQ(alerts.criticals.size(), 1) << "a list that was not written must not seem to be";
}

TEST_F(Files, ByHandMovedFilesLeaveTheOrderOfAColumn)
{
    fillSix();
    ui().mainTableView->sortByColumn(FileListModel::PagesColumn, Qt::DescendingOrder);
    EXPECT_EQ(order(), u"fedcba"_s);
    select({0});
    key(Qt::Key_Down, Qt::ControlModifier);
    fill({pdf("z.pdf", 9)});
    EXPECT_EQ(order(), u"efdcbaz"_s) << "what was put in order by hand stays so";
}

TEST_F(Files, WhileBusyNothingElseCanBeBegun)
{
    fillSix();
    select({3});
    app().activity().begin(Activity::State::Gathering);
    for (QAction* action :
         {actions().addFiles, actions().addFolder, actions().importFiles, actions().openFileButton,
          actions().removeAllFilesButton, actions().exportToolbarItem, actions().convert, actions().help})
        EXPECT_FALSE(action->isEnabled()) << action->text().toStdString();
    EXPECT_FALSE(ui().mainTableView->isEnabled());
    EXPECT_FALSE(ui().inculdeSubfoldersBtn->isEnabled());
    EXPECT_TRUE(actions().moveUpButton->isEnabled()) << "these two follow the selection alone";
    EXPECT_TRUE(actions().moveDownButton->isEnabled());
    EXPECT_TRUE(actions().pdfPasswordButton->isEnabled());
    app().activity().end(Activity::State::Gathering);
    EXPECT_TRUE(ui().mainTableView->isEnabled());
    EXPECT_TRUE(actions().convert->isEnabled());
}

TEST_F(Files, TheWindowServesEventsWhileFilesAreGathered)
{
    constexpr int count = 3'000;
    const QString first = scratch.write(u"many/00000.pdf"_s, numberedPdf(1));
    for (int i = 1; i < count; ++i)
        QFile::link(first, scratch.path(u"many/%1.pdf"_s.arg(i, 5, 10, QLatin1Char('0'))));
    ui().mainTableView->sortByColumn(FileListModel::NameColumn, Qt::DescendingOrder);
    int turns = 0; // of the event loop; at least one between two calls of the gatherer to the main thread
    QTimer turn;
    QObject::connect(&turn, &QTimer::timeout, [&] { turns += app().activity().isGathering() ? 1 : 0; });
    turn.start(0);
    fill({scratch.path(u"many"_s)});
    EXPECT_GE(turns, 2);
    EXPECT_EQ(files().count(), count);
    EXPECT_EQ(files().at(0).name(), u"02999.pdf"_s);
}

} // namespace
} // namespace quillfern
