#include "app/AppFixture.h"
#include "app/JobResultsModel.h"
#include "platform/system/Cancellation.h"
#include "stamps/TextStamp.h"

#include <QAbstractButton>
#include <QDir>
#include <QLabel>
#include <QProgressBar>
#include <QSemaphore>
#include <QTableView>

namespace quillfern {
namespace {

/// Does `work` for each file instead of stamping the file.
class FakeProcessors final : public DocumentProcessors
{
  public:
    explicit FakeProcessors(std::function<void(JobRun&)> work) : work_(std::move(work)) {}

    StampedDocument processPDF(const FilePath&, const FilePath&, const QString&, JobRun& run) override
    {
        StampedDocument document;
        document.outcome.status = FileStatus::Created;
        try {
            work_(run);
        } catch (const Cancelled&) {
            document.fail();
        }
        return document;
    }
    StampedDocument processTIFF(const FilePath&, const FilePath&, JobRun&, std::int32_t) override
    {
        return {};
    }

  private:
    std::function<void(JobRun&)> work_;
};

class JobInWindow : public AppTest
{
  protected:
    void TearDown() override { gate.release(1000); } // no thread may wait for ever
    /// Each file is done only after the test has released the gate once for it, or until the file is given
    /// up.
    void gated()
    {
        filesAtOnce = 1;
        makeProcessors = [this](const JobConfiguration&) {
            return std::make_unique<FakeProcessors>([this](JobRun& run) {
                run.pageDone();
                while (!gate.tryAcquire(1, 10))
                    throwIfCancelled(run.abandoned());
            });
        };
    }
    void stampWith(const char* format)
    {
        auto stamp = std::make_shared<TextStamp>();
        stamp->number.numberFormat = QString::fromUtf8(format);
        stamp->setMarginAnchor(MarginAnchor::BottomMiddle);
        number().stamps.push_back(stamp);
        number().endUpdate(true);
    }
    void convert()
    {
        ui().outputFolderPath->setText(outFolder());
        QTest::mouseClick(ui().convertBtn, Qt::LeftButton);
        if (sheet()) QApplication::setActiveWindow(sheet());
    }
    bool isEnabled(const char* button)
    {
        return sheet()->findChild<QAbstractButton*>(QString::fromLatin1(button))->isEnabled();
    }
    QString shown(const char* label)
    {
        return sheet()->findChild<QLabel*>(QString::fromLatin1(label))->text();
    }
    QStringList statuses()
    {
        const QAbstractItemModel& model =
            *sheet()->findChild<QTableView*>(QStringLiteral("results"))->model();
        QStringList list;
        for (int row = 0; row < model.rowCount(); ++row)
            list.append(model.index(row, JobResultsModel::StatusColumn).data().toString());
        return list;
    }
    void waitForEnd()
    {
        waitFor([this] { return sheet() && isEnabled("closeProcessBtn"); }, "the job does not end");
    }

    QSemaphore gate;
};

TEST_F(JobInWindow, AFolderProblemIsToldAndNothingStarts)
{
    start();
    fill({pdf("a.pdf", 1)});
    const struct
    {
        QString folder;
        const char* message;
    } rows[] = {
        {QString(), "Please select output folder!"},
        {scratch.path(QStringLiteral("gone")),
         "Output folder missing!\r\nPlease select valid output folder."},
        {scratch.path(QStringLiteral("a.pdf")),
         "Output folder missing!\r\nPlease select valid output folder."},
        {QStringLiteral("/proc/self"),
         "Output folder is non-writable!\r\nPlease select valid output folder."},
    };
    for (const auto& row : rows) {
        ui().settingTabView->setCurrentIndex(1);
        ui().outputFolderPath->setText(row.folder);
        QTest::mouseClick(ui().convertBtn, Qt::LeftButton);
        ASSERT_FALSE(alerts.criticals.isEmpty());
        EXPECT_EQ(alerts.criticals.constLast(), QString::fromUtf8(row.message));
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
    const QString broken = scratch.write(QStringLiteral("broken.pdf"), "no document");
    fill({pdf("a.pdf", 2), broken, pdf("b.pdf", 3)});
    stampWith("No {0} of {1}");
    press(window(), "isContinuousNumbering");
    ui().settingTabView->setCurrentIndex(2);
    press(window(), "isClearProcessedFiles");
    actions().checkAll()[1]->trigger();
    ui().mainTableView->selectRow(0);
    actions().checkSelection()[0]->trigger();
    convert();
    EXPECT_EQ(ui().settingTabView->currentIndex(), 0);
    waitForEnd();
    EXPECT_EQ(statuses().join(u','), QStringLiteral("Completed,No Pages,Completed"));
    EXPECT_EQ(shown("message"), QStringLiteral("Total 2 files processed successfully."));
    EXPECT_EQ(shown("filesDone"), QStringLiteral("3 of 3"));
    EXPECT_EQ(shown("pagesDone"), QStringLiteral("5 of 5"));
    EXPECT_EQ(sheet()->findChild<QProgressBar*>()->value(), sheet()->findChild<QProgressBar*>()->maximum());
    EXPECT_TRUE(ui().labelTimeTaken->text().endsWith(QStringLiteral(" 2/3")));
    EXPECT_EQ(desktop.opened, QStringList{outFolder()});
    EXPECT_TRUE(pdfText(outFolder() + QStringLiteral("/b.pdf"), 1).contains(QStringLiteral("No 3 of 5")));

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
    stampWith("{0}");
    scratch.write(QStringLiteral("<b>.pdf"), "damaged since it was listed");
    convert();
    waitForEnd();
    EXPECT_EQ(statuses(), (QStringList{QStringLiteral("Completed"), QStringLiteral("No Output")}));
    EXPECT_EQ(shown("message"), QStringLiteral("All files processed successfully."));
    EXPECT_EQ(shown("warnings"), QStringLiteral("1 file gave no output: <b>.pdf"));
    EXPECT_TRUE(sheet()->findChild<QLabel*>(QStringLiteral("warningsIcon"))->isVisible());
    press(*sheet(), "closeProcessBtn");
    files().remove({1});
    convert();
    waitForEnd();
    EXPECT_FALSE(sheet()->findChild<QLabel*>(QStringLiteral("warnings"))->isVisible());
}

TEST_F(JobInWindow, WhileItRunsTheWindowIsItsAlone)
{
    gated();
    start();
    fill({pdf("a.pdf", 4), pdf("b.pdf", 4), pdf("c.pdf", 4)});
    stampWith("{0}");
    convert();
    waitFor([this] { return sheet() && shown("fileInProcess") == QLatin1String("a.pdf"); }, "the first file");
    EXPECT_TRUE(isEnabled("cancelProcessBtn"));
    EXPECT_FALSE(isEnabled("viewLogBtn"));
    EXPECT_FALSE(isEnabled("closeProcessBtn"));
    EXPECT_FALSE(ui().convertBtn->isEnabled());
    EXPECT_FALSE(actions().addFiles->isEnabled());
    EXPECT_FALSE(drop({pdf("late.pdf", 1)}));
    waitFor([this] { return shown("pagesDone") == QLatin1String("1 of 12"); }, "the first page");
    QTest::keyClick(sheet(), Qt::Key_Escape);
    EXPECT_NE(sheet(), nullptr) << "a running job stays in sight";
    const QAbstractItemModel& stamps = *ui().stampsTableView->model();
    EXPECT_FALSE(
        ui().stampsTableView->model()->setData(stamps.index(0, 0), Qt::Unchecked, Qt::CheckStateRole));

    gate.release();
    waitFor([this] { return shown("fileInProcess") == QLatin1String("b.pdf"); }, "the second file");
    EXPECT_EQ(statuses(), QStringList{QStringLiteral("Completed")});
    QTest::keyClick(sheet(), Qt::Key_C, Qt::AltModifier);
    waitFor([this] { return !isEnabled("cancelProcessBtn"); }, "the button takes its time to go down");
    EXPECT_TRUE(shown("message").contains(QStringLiteral("finished first")));
    gate.release();
    waitForEnd();
    EXPECT_EQ(statuses().size(), 2) << "the file in work was finished";
    EXPECT_EQ(shown("message"), QStringLiteral("Process cancelled!"));
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
    stampWith("{0}");
    for (int round = 0; round < 2; ++round) { // the second job begins with Cancel again
        convert();
        waitFor([this] { return sheet() && shown("pagesDone") == QLatin1String("1 of 8"); },
                "the first page");
        auto& button = *sheet()->findChild<QAbstractButton*>(QStringLiteral("cancelProcessBtn"));
        EXPECT_EQ(button.text(), QStringLiteral("Cancel"));
        QTest::mouseClick(&button, Qt::LeftButton);
        QTest::mouseClick(&button, Qt::LeftButton);
        EXPECT_EQ(button.text(), QStringLiteral("Stop Now"));
        EXPECT_FALSE(button.isEnabled()) << "a double click does not give up the file";
        waitFor([&] { return button.isEnabled(); }, "the button");
        EXPECT_FALSE(app().job().process()->isCompleted());
        QTest::keyClick(sheet(), Qt::Key_S, Qt::AltModifier);
        waitForEnd();
        EXPECT_EQ(statuses(), QStringList{QStringLiteral("Cancelled")});
        EXPECT_EQ(shown("message"), QStringLiteral("Process cancelled!"));
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
    EXPECT_EQ(clockText(7), QStringLiteral("0:07"));
    EXPECT_EQ(clockText(750), QStringLiteral("12:30"));
    EXPECT_EQ(clockText(3723), QStringLiteral("1:02:03"));
}

} // namespace
} // namespace quillfern
