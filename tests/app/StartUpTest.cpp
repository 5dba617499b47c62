#include "app/AppFixture.h"

#include <QHeaderView>

namespace quillfern {
namespace {

using StartUp = StartedApp;

TEST_F(StartUp, WithoutAFolderThereIsNothingToRememberOrOpen)
{
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
    defaults.failures = 2;
    alerts.quitChoices = {QuitChoice::TryAgain, QuitChoice::Stay};
    EXPECT_FALSE(app().saveToQuit());
    ASSERT_EQ(alerts.questions.size(), 2);
    EXPECT_TRUE(alerts.questions[0].contains(u"no space left"_s));
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
    ui().settingTabView->setCurrentIndex(2);
    const QString here = QDir::currentPath();
    const Rows<QString, QString> rows = {{u"~/out"_s, QDir::homePath() + u"/out"_s},
                                         {u"  /some/where "_s, u"/some/where"_s},
                                         {u"out"_s, here + u"/out"_s}};
    for (const auto& [typed, folder] : rows) {
        type(*ui().outputFolderPath, qPrintable(typed));
        QTest::keyClick(ui().outputFolderPath, Qt::Key_Return);
        EXPECT_EQ(app().settings().outputFolderPath, folder);
    }
    press(window(), "setCurrentAsDefaultOutputFolderPathBtn");
    ui().outputFolderPath->setFocus();
    QTest::keyClick(ui().outputFolderPath, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(ui().outputFolderPath, Qt::Key_Delete);
    QTest::keyClicks(ui().outputFolderPath, u"/other"_s);
    QTest::keyClick(ui().outputFolderPath, Qt::Key_Return);
    EXPECT_TRUE(app().settings().isSetCurrentAsDefaultOutputFolderPath) << "emptied only to type another";
}

TEST_F(StartUp, WhatWasChangedBackIsSavedAsWell)
{
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

TEST_F(StartUp, NoTwoCommandsShareAShortcut)
{
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
    EXPECT_EQ(names(), words("three.pdf two.pdf one.pdf")) << "files come in the order that was left";
}

TEST_F(StartUp, AWindowRecordThatIsNoneIsPassedOver)
{
    store::Record record;
    record.set(u"geometry"_s, QByteArray("not a geometry"));
    record.set(u"splitter"_s, 7);
    defaults.values.insert_or_assign(u"WINDOW"_s, store::RecordValue(record));
    start();
    EXPECT_GE(window().width(), 1024);
    defaults.values.insert_or_assign(u"WINDOW"_s, store::RecordValue(true));
    start();
    EXPECT_GE(window().height(), 640);
}

TEST_F(StartUp, HelpOpensTheManual)
{
    actions().help->trigger();
    EXPECT_EQ(desktop.opened, QStringList{scratch.path(u"help.pdf"_s)});
}

} // namespace
} // namespace quillfern
