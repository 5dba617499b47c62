#include "app/AppFixture.h"
#include "app/JobResultsModel.h"
#include "batch/DocumentInWork.h"
#include "batch/StagedProcessors.h"
#include "platform/system/Cancellation.h"

#include <QAbstractButton>
#include <QLabel>
#include <QProgressBar>
#include <QSemaphore>
#include <QTableView>

namespace quillfern {
namespace {

class JobInWindow : public AppTest
{
  protected:
    void TearDown() override { gate.release(1000); } // no thread may wait for ever
    /// Each file is done only after the test has released the gate once for it, or until the file is given
    /// up.
    void gated()
    {
        filesAtOnce = 1;
        makeProcessors = StagedProcessors::factory([this](const FilePath& source, bool, JobRun& run) {
            return processDocument("%@", source, run, [&](StampedDocument& work) {
                run.pageDone();
                while (!gate.tryAcquire(1, 10))
                    throwIfCancelled(run.abandoned());
                work.outcome.status = FileStatus::Created;
            });
        });
    }
    bool isEnabled(const char* button) { return partOf<QAbstractButton>(*sheet(), button).isEnabled(); }
    QString shown(const char* label) { return partOf<QLabel>(*sheet(), label).text(); }
    QStringList statuses()
    {
        const QAbstractItemModel& model = *partOf<QTableView>(*sheet(), "results").model();
        QStringList list;
        for (int row = 0; row < model.rowCount(); ++row)
            list.append(model.index(row, JobResultsModel::StatusColumn).data().toString());
        return list;
    }
    QSemaphore gate;
};

TEST_F(JobInWindow, AFolderProblemIsToldAndNothingStarts)
{
    start();
    fill({pdf("a.pdf", 1)});
    const Rows<QString, const char*> rows = {
        {QString(), "Please select output folder!"},
        {scratch.path(u"gone"_s), "Output folder missing!\r\nPlease select valid output folder."},
        {scratch.path(u"a.pdf"_s), "Output folder missing!\r\nPlease select valid output folder."},
        {u"/proc/self"_s, "Output folder is non-writable!\r\nPlease select valid output folder."},
    };
    for (const auto& [folder, message] : rows) {
        ui().settingTabView->setCurrentIndex(1);
        ui().outputFolderPath->setText(folder);
        QTest::mouseClick(ui().convertBtn, Qt::LeftButton);
        ASSERT_FALSE(alerts.criticals.isEmpty());
        EXPECT_EQ(alerts.criticals.constLast(), QString::fromUtf8(message));
        EXPECT_EQ(ui().settingTabView->currentIndex(), 2);
        EXPECT_EQ(window().focusWidget(), ui().outputFolderPath);
        EXPECT_EQ(sheet(), nullptr);
        EXPECT_FALSE(app().isProcessing());
        EXPECT_TRUE(ui().convertBtn->isEnabled());
    }
}

TEST_F(JobInWindow, AListIsStampedAndTheSheetTellsWhatBecameOfIt)
{
    start();
    const QString broken = scratch.write(u"broken.pdf"_s, "no document");
    fill({pdf("a.pdf", 2), broken, pdf("b.pdf", 3)});
    addStamp("No {0} of {1}");
    press(window(), "isContinuousNumbering");
    ui().settingTabView->setCurrentIndex(2);
    press(window(), "isClearProcessedFiles");
    actions().checkAll()[1]->trigger();
    ui().mainTableView->selectRow(0);
    actions().checkSelection()[0]->trigger();
    convert();
    EXPECT_EQ(ui().settingTabView->currentIndex(), 0);
    waitForEnd();
    EXPECT_EQ(statuses().join(u','), u"Completed,No Pages,Completed"_s);
    EXPECT_EQ(shown("message"), u"Total 2 files processed successfully."_s);
    EXPECT_EQ(shown("filesDone"), u"3 of 3"_s);
    EXPECT_EQ(shown("pagesDone"), u"5 of 5"_s);
    EXPECT_EQ(sheet()->findChild<QProgressBar*>()->value(), sheet()->findChild<QProgressBar*>()->maximum());
    EXPECT_TRUE(ui().labelTimeTaken->text().endsWith(u" 2/3"_s));
    EXPECT_EQ(desktop.opened, QStringList{outFolder()});
    EXPECT_TRUE(pdfText(outFolder() + u"/b.pdf"_s, 1).contains(u"No 3 of 5"_s));

    press(*sheet(), "viewLogBtn");
    ASSERT_EQ(desktop.opened.size(), 2);
    EXPECT_TRUE(readFile(desktop.opened.constLast()).contains("No Pages"));
    press(*sheet(), "closeProcessBtn");
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_EQ(names(), words("broken.pdf b.pdf")) << "checked files go, whatever became of them";
    EXPECT_TRUE(ui().convertBtn->isEnabled());
    EXPECT_FALSE(app().isProcessing());
    EXPECT_EQ(app().job().process(), nullptr);

    desktop.opened.clear();
    ui().settingTabView->setCurrentIndex(2);
    press(window(), "openFolderAfterConversionBtn");
    convert();
    waitForEnd();
    EXPECT_TRUE(desktop.opened.isEmpty());
    QTest::keyClick(sheet(), Qt::Key_Escape);
    EXPECT_EQ(sheet(), nullptr) << "Escape closes the sheet of a job that has ended";
}

TEST_F(JobInWindow, AFileWithoutOutputIsWarnedOf)
{
    start();
    fill({pdf("a.pdf", 2), pdf("<b>.pdf", 1)});
    addStamp("{0}");
    scratch.write(u"<b>.pdf"_s, "damaged since it was listed");
    convert();
    waitForEnd();
    EXPECT_EQ(statuses(), (QStringList{u"Completed"_s, u"No Output"_s}));
    EXPECT_EQ(shown("message"), u"All files processed successfully."_s);
    EXPECT_EQ(shown("warnings"), u"1 file gave no output: <b>.pdf"_s);
    EXPECT_TRUE(partOf<QLabel>(*sheet(), "warningsIcon").isVisible());
    press(*sheet(), "closeProcessBtn");
    files().remove({1});
    convert();
    waitForEnd();
    EXPECT_FALSE(partOf<QLabel>(*sheet(), "warnings").isVisible());
}

TEST_F(JobInWindow, WhileItRunsTheWindowIsItsAlone)
{
    gated();
    start();
    fill({pdf("a.pdf", 4), pdf("b.pdf", 4), pdf("c.pdf", 4)});
    addStamp("{0}");
    convert();
    waitFor([this] { return sheet() && shown("fileInProcess") == "a.pdf"_L1; }, "the first file");
    EXPECT_TRUE(isEnabled("cancelProcessBtn"));
    EXPECT_FALSE(isEnabled("viewLogBtn"));
    EXPECT_FALSE(isEnabled("closeProcessBtn"));
    EXPECT_FALSE(ui().convertBtn->isEnabled());
    EXPECT_FALSE(actions().addFiles->isEnabled());
    EXPECT_FALSE(drop({pdf("late.pdf", 1)}));
    waitFor([this] { return shown("pagesDone") == "1 of 12"_L1; }, "the first page");
    QTest::keyClick(sheet(), Qt::Key_Escape);
    EXPECT_NE(sheet(), nullptr) << "a running job stays in sight";
    const QAbstractItemModel& stamps = *ui().stampsTableView->model();
    EXPECT_FALSE(
        ui().stampsTableView->model()->setData(stamps.index(0, 0), Qt::Unchecked, Qt::CheckStateRole));

    gate.release();
    waitFor([this] { return shown("fileInProcess") == "b.pdf"_L1; }, "the second file");
    EXPECT_EQ(statuses(), QStringList{u"Completed"_s});
    QTest::keyClick(sheet(), Qt::Key_C, Qt::AltModifier);
    waitFor([this] { return !isEnabled("cancelProcessBtn"); }, "the button takes its time to go down");
    EXPECT_TRUE(shown("message").contains(u"finished first"_s));
    gate.release();
    waitForEnd();
    EXPECT_EQ(statuses().size(), 2) << "the file in work was finished";
    EXPECT_EQ(shown("message"), u"Process cancelled!"_s);
    QTest::keyClick(sheet(), Qt::Key_L, Qt::AltModifier);
    waitFor([this] { return desktop.opened.size() == 2; }, "the folder and the log");
    press(*sheet(), "closeProcessBtn");
    EXPECT_EQ(files().count(), 3);
}

TEST_F(JobInWindow, StopNowGivesUpTheFileInWork)
{
    gated();
    start();
    fill({pdf("a.pdf", 4), pdf("b.pdf", 4)});
    addStamp("{0}");
    for (int round = 0; round < 2; ++round) { // the second job begins with Cancel again
        convert();
        waitFor([this] { return sheet() && shown("pagesDone") == "1 of 8"_L1; }, "the first page");
        auto& button = partOf<QAbstractButton>(*sheet(), "cancelProcessBtn");
        EXPECT_EQ(button.text(), u"Cancel"_s);
        QTest::mouseClick(&button, Qt::LeftButton);
        QTest::mouseClick(&button, Qt::LeftButton);
        EXPECT_EQ(button.text(), u"Stop Now"_s);
        EXPECT_FALSE(button.isEnabled()) << "a double click does not give up the file";
        waitFor([&] { return button.isEnabled(); }, "the button");
        EXPECT_FALSE(app().job().process()->isCompleted());
        QTest::keyClick(sheet(), Qt::Key_S, Qt::AltModifier);
        waitForEnd();
        EXPECT_EQ(statuses(), QStringList{u"Cancelled"_s});
        EXPECT_EQ(shown("message"), u"Process cancelled!"_s);
        press(*sheet(), "closeProcessBtn");
    }
}

TEST_F(JobInWindow, TheSheetCanBeLeftWithTheProgram)
{
    gated();
    start();
    fill({pdf("a.pdf", 1), pdf("b.pdf", 1)});
    int quits = 0;
    QObject::connect(&app(), &QuillfernAppDelegate::quitRequested, [&] { ++quits; });
    convert();
    waitFor([this] { return app().job().process()->totalPagesProcessed() == 1; }, "the first file");
    alerts.answer = false;
    QTest::keyClick(sheet(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(alerts.questions.size(), 1);
    EXPECT_EQ(quits, 0);
    EXPECT_TRUE(app().job().process()->isCombining());
    alerts.answer = true;
    QTest::keyClick(sheet(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(quits, 1);
    EXPECT_FALSE(app().job().process()->isCombining());
}

TEST_F(JobInWindow, LeavingWaitsForTheFileInWorkAndThenGivesItUp)
{
    gated();
    start();
    fill({pdf("a.pdf", 1), pdf("b.pdf", 1)});
    for (const bool isQuick : {true, false}) {
        convert();
        waitFor([this] { return app().job().process()->totalPagesProcessed() == 1; }, "the first file");
        app().applicationShouldTerminate();
        if (isQuick) gate.release();
        EXPECT_TRUE(app().stop(isQuick ? 20'000 : 50));
        EXPECT_EQ(gate.available(), 0);
        EXPECT_EQ(app().job().process()->totalFileProcessed(), 1) << "the second one was not begun";
        EXPECT_EQ(app().job().process()->totalFileCreated(), isQuick ? 1 : 0);
        EXPECT_TRUE(QFile::exists(app().job().process()->log().logFilePath()->text()));
        waitForEnd();
        press(*sheet(), "closeProcessBtn");
        if (isQuick) {
            quit();
            start();
            fill({pdf("a.pdf", 1), pdf("b.pdf", 1)});
        }
    }
}

TEST_F(JobInWindow, ClockTexts)
{
    EXPECT_EQ(clockText(7), u"0:07"_s);
    EXPECT_EQ(clockText(750), u"12:30"_s);
    EXPECT_EQ(clockText(3723), u"1:02:03"_s);
}

} // namespace
} // namespace quillfern
