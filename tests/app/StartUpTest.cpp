#include "app/AppFixture.h"

#include <QDir>
#include <QHeaderView>
#include <QShortcut>
#include <QToolButton>

namespace quillfern {
namespace {

class StartUp : public AppTest
{
};

TEST_F(StartUp, AnEmptyWindowOffersWhatThereIsToDo)
{
    start();
    EXPECT_EQ(window().windowTitle(), getAppTitle());
    EXPECT_TRUE(window().isVisible());
    EXPECT_TRUE(QDir(folders.getAppPath().child(QStringLiteral("Logs")).text()).exists());
    EXPECT_EQ(ui().settingTabView->currentIndex(), 0);
    EXPECT_TRUE(ui().lableDragAndDrop->isVisible());
    for (QAction* action :
         {actions().exportToolbarItem, actions().openFileButton, actions().getInfoButton,
          actions().openEnclosedFolderButton, actions().selectAllButton, actions().deselectAllButton,
          actions().removeSelectedFilesButton, actions().removeAllFilesButton, actions().pdfPasswordButton,
          actions().moveUpButton, actions().moveDownButton, actions().convert})
        EXPECT_FALSE(action->isEnabled()) << action->text().toStdString();
    EXPECT_FALSE(ui().convertBtn->isEnabled());
    for (QToolButton* button : {ui().find<QToolButton>("importBtn"), ui().find<QToolButton>("addFilesBtn"),
                                ui().find<QToolButton>("addFolderBtn")})
        EXPECT_TRUE(button->isEnabled());
    EXPECT_EQ(
        ui().labelTotalFiles->text(),
        QStringLiteral("0 Total file(s); Total page count of PDF files: 0  TIFF files: 0  Other files: 0"));
    EXPECT_EQ(ui().labelTimeTaken->text(), QStringLiteral("Total Time Taken : 0 sec(s) 0/0"));
    EXPECT_FALSE(ui().previewImageView->image().isNull());
}

TEST_F(StartUp, WithoutAFolderThereIsNothingToRememberOrOpen)
{
    start();
    EXPECT_FALSE(app().settings().isSetCurrentAsDefaultOutputFolderPath);
    EXPECT_FALSE(ui().setCurrentAsDefaultOutputFolderPathBtn->isEnabled());
    EXPECT_FALSE(ui().openFolderAfterConversionBtn->isEnabled());

    panels.answers.append(QStringList{outFolder()});
    ui().settingTabView->setCurrentIndex(2);
    press(window(), "outputFolderButton");
    EXPECT_TRUE(panels.opened.constLast().folders);
    EXPECT_EQ(app().settings().outputFolderPath, outFolder());
    EXPECT_EQ(defaults.flushes, 1) << "a chosen folder is kept at once";
    EXPECT_TRUE(ui().setCurrentAsDefaultOutputFolderPathBtn->isEnabled());
    press(window(), "setCurrentAsDefaultOutputFolderPathBtn");
    EXPECT_TRUE(app().settings().isSetCurrentAsDefaultOutputFolderPath);

    ui().outputFolderPath->clear();
    EXPECT_FALSE(app().settings().isSetCurrentAsDefaultOutputFolderPath);
    EXPECT_FALSE(ui().setCurrentAsDefaultOutputFolderPathBtn->isChecked());
    EXPECT_FALSE(ui().openFolderAfterConversionBtn->isEnabled());
}

TEST_F(StartUp, SettingsThatCannotBeSavedKeepTheWindowOpenUntilThePersonDecides)
{
    using desktop::QuitChoice;
    start();
    defaults.failures = 2;
    alerts.quitChoices = {QuitChoice::TryAgain, QuitChoice::Stay};
    EXPECT_FALSE(app().saveToQuit());
    ASSERT_EQ(alerts.questions.size(), 2);
    EXPECT_TRUE(alerts.questions[0].contains(QStringLiteral("no space left")));
    EXPECT_EQ(defaults.flushes, 0);

    defaults.failures = 1;
    alerts.quitChoices = {QuitChoice::TryAgain};
    EXPECT_TRUE(app().saveToQuit()) << "the second attempt has saved them";
    EXPECT_EQ(defaults.flushes, 1);

    defaults.failures = 1;
    alerts.quitChoices = {QuitChoice::QuitAnyway};
    EXPECT_TRUE(app().saveToQuit());
    EXPECT_EQ(defaults.flushes, 1);
    EXPECT_EQ(alerts.questions.size(), 4);
    EXPECT_TRUE(app().saveToQuit()) << "without a failure there is no question";
    EXPECT_EQ(alerts.questions.size(), 4);
}

TEST_F(StartUp, ATypedFolderBecomesAWholePath)
{
    start();
    ui().settingTabView->setCurrentIndex(2);
    const QString here = QDir::currentPath();
    const struct
    {
        QString typed;
        QString folder;
    } rows[] = {{QStringLiteral("~/out"), QDir::homePath() + QStringLiteral("/out")},
                {QStringLiteral("  /some/where "), QStringLiteral("/some/where")},
                {QStringLiteral("out"), here + QStringLiteral("/out")}};
    for (const auto& row : rows) {
        type(*ui().outputFolderPath, qPrintable(row.typed));
        QTest::keyClick(ui().outputFolderPath, Qt::Key_Return);
        EXPECT_EQ(app().settings().outputFolderPath, row.folder);
    }
    press(window(), "setCurrentAsDefaultOutputFolderPathBtn");
    ui().outputFolderPath->setFocus();
    QTest::keyClick(ui().outputFolderPath, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(ui().outputFolderPath, Qt::Key_Delete);
    QTest::keyClicks(ui().outputFolderPath, QStringLiteral("/other"));
    QTest::keyClick(ui().outputFolderPath, Qt::Key_Return);
    EXPECT_TRUE(app().settings().isSetCurrentAsDefaultOutputFolderPath) << "emptied only to type another";
}

TEST_F(StartUp, WhatWasChangedBackIsSavedAsWell)
{
    start();
    quit();
    start();
    panels.answers = {QStringList{outFolder()}, QStringList{outFolder()}};
    ui().settingTabView->setCurrentIndex(2);
    press(window(), "outputFolderButton");
    press(window(), "setCurrentAsDefaultOutputFolderPathBtn");
    press(window(), "outputFolderButton"); // saves everything at once
    ui().outputFolderPath->clear();
    quit();
    start();
    EXPECT_EQ(ui().outputFolderPath->text(), QString());
}

TEST_F(StartUp, TheHintLettersPressTheirButtons)
{
    start();
    const struct
    {
        Qt::Key key;
        std::function<bool()> happened;
    } rows[] = {
        {Qt::Key_F, [this] { return panels.opened.size() == 1 && panels.opened.back().multiple; }},
        {Qt::Key_O, [this] { return panels.opened.size() == 2 && panels.opened.back().folders; }},
        {Qt::Key_U, [this] { return ui().inculdeSubfoldersBtn->isChecked(); }},
    };
    for (const auto& row : rows) {
        actions().update(false, false); // a button must keep its letter in other states
        actions().update(true, false);
        QTest::keyClick(&window(), row.key, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor(row.happened)) << char(row.key); // a button acts after a moment
    }
    EXPECT_EQ(panels.opened[0].message, QStringLiteral("Select TIFF or PDF File(s):"));
    EXPECT_EQ(panels.opened[1].message, QStringLiteral("Select folder(s) contains TIFF or PDF File(s):"));
    EXPECT_TRUE(panels.opened[0].types.contains(QStringLiteral("TIFF")));
    EXPECT_EQ(defaults.flushes, 1) << "the choice of subfolders is kept at once";
}

TEST_F(StartUp, NoTwoCommandsShareAShortcut)
{
    start();
    QHash<QKeySequence, QString> owners;
    for (QAction* action : window().findChildren<QAction*>())
        for (const QKeySequence& keys : action->shortcuts()) {
            if (action->shortcutContext() == Qt::WidgetShortcut) continue;
            EXPECT_FALSE(owners.contains(keys))
                << keys.toString().toStdString() << ": " << owners.value(keys).toStdString() << ", "
                << action->text().toStdString();
            owners.insert(keys, action->text());
        }
    EXPECT_GT(owners.size(), 15);
}

TEST_F(StartUp, TheWindowComesBackAsItWasLeft)
{
    start();
    window().resize(1111, 701);
    ui().splitter->setSizes({600, 511});
    QHeaderView* header = ui().mainTableView->horizontalHeader();
    header->resizeSection(FileListModel::NameColumn, 222);
    header->moveSection(header->visualIndex(FileListModel::TypeColumn), 2);
    header->setSortIndicator(FileListModel::PagesColumn, Qt::DescendingOrder);
    ui().stampsTableView->setColumnWidth(StampsModel::DescriptionColumn, 133);
    type(*ui().startNumber, "41");
    press(window(), "inculdeSubfoldersBtn");
    QTest::qWait(1);
    const QList<int> sizes = ui().splitter->sizes();
    quit();

    start();
    EXPECT_EQ(window().size(), QSize(1111, 701));
    EXPECT_EQ(ui().splitter->sizes(), sizes);
    header = ui().mainTableView->horizontalHeader();
    EXPECT_EQ(header->sectionSize(FileListModel::NameColumn), 222);
    EXPECT_EQ(header->visualIndex(FileListModel::TypeColumn), 2);
    EXPECT_EQ(header->sortIndicatorSection(), int(FileListModel::PagesColumn));
    EXPECT_EQ(ui().stampsTableView->columnWidth(StampsModel::DescriptionColumn), 133);
    EXPECT_TRUE(ui().inculdeSubfoldersBtn->isChecked());
    EXPECT_EQ(number().startNumber(), 41) << "what was being typed is taken over before leaving";
    fill({pdf("one.pdf", 1), pdf("three.pdf", 3), pdf("two.pdf", 2)});
    EXPECT_EQ(names(), (QStringList{QStringLiteral("three.pdf"), QStringLiteral("two.pdf"),
                                    QStringLiteral("one.pdf")}))
        << "files come in the order that was left";
}

TEST_F(StartUp, AWindowRecordThatIsNoneIsPassedOver)
{
    store::Record record;
    record.set(QStringLiteral("geometry"), QByteArray("not a geometry"));
    record.set(QStringLiteral("splitter"), 7);
    defaults.values.insert_or_assign(QStringLiteral("WINDOW"), store::RecordValue(record));
    start();
    EXPECT_GE(window().width(), 1024);
    defaults.values.insert_or_assign(QStringLiteral("WINDOW"), store::RecordValue(true));
    start();
    EXPECT_GE(window().height(), 640);
}

TEST_F(StartUp, HelpOpensTheManualOrSaysThatItIsMissing)
{
    start();
    actions().help->trigger();
    EXPECT_EQ(desktop.opened, QStringList{scratch.path(QStringLiteral("help.pdf"))});
    actions().aboutMenuItem->trigger();
    QDialog* about = nullptr;
    for (QDialog* dialog : window().findChildren<QDialog*>())
        if (dialog->isVisible()) about = dialog;
    ASSERT_NE(about, nullptr);
    QTest::keyClick(about, Qt::Key_Escape);
    EXPECT_FALSE(about->isVisible());
}

TEST_F(StartUp, AHiddenWindowComesBack)
{
    start();
    window().hide();
    app().applicationShouldHandleReopen();
    EXPECT_TRUE(window().isVisible());
}

} // namespace
} // namespace quillfern
