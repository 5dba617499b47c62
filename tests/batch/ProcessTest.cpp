#include "batch/Process.h"

#include "batch/DocumentInWork.h"
#include "batch/JobWarnings.h"
#include "platform/system/Failure.h"
#include "stamps/TextStamp.h"
#include "support/Fakes.h"
#include "support/Paths.h"
#include "support/PdfBuilder.h"
#include "support/Tools.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>
#include <set>
#include <thread>

namespace quillfern {
namespace {

/// Records the calls of the processors, and gives each file the outcome that the test has set.
struct Script
{
    std::vector<std::string> calls;
    std::function<bool(const QString& name)> act = [](const QString&) { return true; };
};

class ScriptedProcessors final : public DocumentProcessors
{
  public:
    explicit ScriptedProcessors(Script& script) : script_(script) {}

    StampedDocument processPDF(const FilePath& source, const FilePath&, const QString& password,
                               JobRun& run) override
    {
        EXPECT_TRUE(password.isEmpty());
        return note("pdf", source, run);
    }
    StampedDocument processTIFF(const FilePath& source, const FilePath&, JobRun& run, std::int32_t) override
    {
        return note("tiff", source, run);
    }

  private:
    StampedDocument note(const std::string& way, const FilePath& source, JobRun& run)
    {
        const QString name = source.name();
        script_.calls.push_back(way + ' ' + name.toStdString() + " total " + std::to_string(run.totalPages) +
                                " from " + std::to_string(run.numberCounter()));
        for (int page = 0; page < 10; ++page)
            run.numberUsed();
        StampedDocument document;
        document.outcome.status = script_.act(name) ? FileStatus::Created : FileStatus::Failed;
        return document;
    }

    Script& script_;
};

/// The real processors, in a job that is given up as soon as the first file is in work.
class AbandonedProcessors final : public DocumentProcessors
{
  public:
    AbandonedProcessors(const JobConfiguration& job, Process& process)
        : real_(makeDocumentProcessors(job)), process_(process)
    {
    }

    StampedDocument processPDF(const FilePath& source, const FilePath& target, const QString& password,
                               JobRun& run) override
    {
        process_.abandon();
        return real_->processPDF(source, target, password, run);
    }
    StampedDocument processTIFF(const FilePath& source, const FilePath& target, JobRun& run,
                                std::int32_t compression) override
    {
        process_.abandon();
        return real_->processTIFF(source, target, run, compression);
    }

  private:
    std::unique_ptr<DocumentProcessors> real_;
    Process& process_;
};

class JobTest : public testing::Test, public ProcessObserver
{
  protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(scratch.path(QStringLiteral("out"))));
        ASSERT_TRUE(folders.createApplicationUsersFolder(QStringLiteral("Logs")));
        settings.outputFolderPath = scratch.path(QStringLiteral("out"));
        settings.isOpenFolderAfterConversion = false;
    }

    void add(const QString& path, int pages)
    {
        scratch.write(path, pages > 0 ? numberedPdf(pages) : QByteArray("not a document"));
        auto item = FileItem::initWithURL(asPath(scratch.path(path)));
        ASSERT_TRUE(item);
        item->setPdfOpenPassword(std::nullopt);
        EXPECT_EQ(item->pages(), pages) << path.toStdString();
        files.push_back(std::move(*item));
    }

    ProcessServices services(bool scripted = true)
    {
        ProcessServices result{clock, folders, thread, desktop};
        if (scripted) {
            result.filesAtOnce = 1;
            result.makeProcessors = [this](const JobConfiguration&, const auto&) {
                return std::make_unique<ScriptedProcessors>(script);
            };
        }
        return result;
    }

    Process& run(bool scripted = true)
    {
        process = std::make_unique<Process>(services(scripted), planJob(files, settings), *this);
        process->start();
        return *process;
    }

    void updateTimeTakenLabel(const QString& text) override { labels.append(text); }
    void outputFinished(const LogFiles& output) override
    {
        const auto& remark = output.outcome.remark;
        results.append(output.filename + u' ' + statusWord(output.outcome) +
                       (remark ? u' ' + remark->shown : QString()));
    }

    QStringList warnings() const
    {
        QStringList texts;
        for (const Reason& warning : jobWarnings(process->log().files))
            texts.append(warning.shown);
        return texts;
    }

    Scratch scratch;
    FakeFolders folders{scratch.path()};
    FakeClock clock;
    SameThread thread;
    FakeDesktop desktop;
    Settings settings;
    std::vector<FileItem> files;
    Script script;
    QStringList labels;
    QStringList results;
    std::unique_ptr<Process> process;
};

TEST_F(JobTest, HandsEveryFileToItsProcessorAndCountsPagesPerFile)
{
    add(QStringLiteral("a.pdf"), 3);
    add(QStringLiteral("b.PdF"), 2);
    add(QStringLiteral("c.tif"), 4); // by its extension, whatever it holds
    settings.number->setStartNumber(5);
    const Process& done = run();
    EXPECT_EQ(script.calls, (std::vector<std::string>{"pdf a.pdf total 3 from 5", "pdf b.PdF total 2 from 5",
                                                      "tiff c.tif total 4 from 5"}));
    EXPECT_EQ(done.message(), QStringLiteral("All files processed successfully."));
    EXPECT_EQ(done.totalFileSelected(), 3);
    EXPECT_TRUE(done.isCompleted());
    EXPECT_FALSE(done.isCombining());
    EXPECT_EQ(labels.front(), QStringLiteral("Total Time Taken : In Process... 1/3"));
    EXPECT_EQ(labels.back(), QStringLiteral("Total Time Taken :  3/3")) << "under a second";
}

TEST_F(JobTest, ContinuousNumberingCountsTheWholeListAndRunsOn)
{
    add(QStringLiteral("a.pdf"), 3);
    add(QStringLiteral("b.pdf"), 2);
    settings.number->setIsContinuousNumbering(true);
    run();
    EXPECT_EQ(script.calls,
              (std::vector<std::string>{"pdf a.pdf total 5 from 1", "pdf b.pdf total 5 from 11"}));
}

TEST_F(JobTest, FailuresAreToldApart)
{
    add(QStringLiteral("good.pdf"), 1);
    add(QStringLiteral("fails.pdf"), 2);
    add(QStringLiteral("empty.pdf"), 0);
    script.act = [](const QString& name) { return name != QLatin1String("fails.pdf"); };
    const Process& done = run();
    EXPECT_EQ(done.message(), QStringLiteral("Total 1 files processed successfully."));
    EXPECT_EQ(results, (QStringList{QStringLiteral("good.pdf Completed"), QStringLiteral("fails.pdf Failed"),
                                    results.value(2)}));
    EXPECT_TRUE(results.value(2).startsWith(QStringLiteral("empty.pdf No Pages "))) << "and why";
    EXPECT_EQ(done.totalFileProcessed(), 2);
    EXPECT_EQ(done.totalFileCreated(), 1);
    EXPECT_EQ(done.log().files[1].pages, 2);
    EXPECT_EQ(done.log().files[2].pages, 0);
    EXPECT_EQ(done.log().files[2].targetPath, scratch.path(QStringLiteral("out")));
}

TEST_F(JobTest, AnExceptionBecomesTheStatusAndTheJobGoesOn)
{
    add(QStringLiteral("bad.pdf"), 1);
    add(QStringLiteral("good.pdf"), 1);
    script.act = [](const QString& name) {
        if (name == QLatin1String("bad.pdf")) throw Failure(QStringLiteral("the moon is full"));
        return true;
    };
    const Process& done = run();
    EXPECT_EQ(results, (QStringList{QStringLiteral("bad.pdf the moon is full the moon is full"),
                                    QStringLiteral("good.pdf Completed")}));
    EXPECT_EQ(done.message(), QStringLiteral("Quillfern unable able to process some of the files!\r\n"
                                             "Please check log for more information."));
    EXPECT_TRUE(readFile(done.log().logFilePath()->text()).contains("the moon is full"));
}

TEST_F(JobTest, CancellingFinishesTheFileAndWritesTheLog)
{
    for (const char* name : {"a.pdf", "b.pdf", "c.pdf"})
        add(QString::fromLatin1(name), 1);
    script.act = [this](const QString& name) {
        if (name == QLatin1String("b.pdf")) process->stop();
        return true;
    };
    const Process& done = run();
    EXPECT_EQ(results.size(), 2);
    EXPECT_EQ(done.message(), QStringLiteral("Process cancelled!"));
    EXPECT_EQ(readFile(done.log().logFilePath()->text()).count("Completed"), 2);
}

TEST_F(JobTest, AbandoningGivesUpTheFileAndLeavesNothingOfIt)
{
    settings.number->stamps.push_back(std::make_shared<TextStamp>());
    QImage page(400, 300, QImage::Format_RGB32);
    page.fill(Qt::white);
    ASSERT_TRUE(page.save(scratch.path(QStringLiteral("a.png"))));
    for (const char* name : {"a.pdf", "a.png"}) {
        files.clear();
        const QString path = QString::fromLatin1(name);
        if (path.endsWith(QLatin1String("png"))) {
            files.push_back(*FileItem::initWithURL(asPath(scratch.path(path))));
            files.back().setPdfOpenPassword(std::nullopt);
        } else {
            add(path, 3);
        }
        add(QStringLiteral("z.pdf"), 1);
        ProcessServices given = services(false);
        given.filesAtOnce = 1;
        given.makeProcessors = [this](const JobConfiguration& job, const auto&) {
            return std::make_unique<AbandonedProcessors>(job, *process);
        };
        process = std::make_unique<Process>(given, planJob(files, settings), *this);
        process->start();
        ASSERT_EQ(process->log().files.size(), 1U);
        EXPECT_EQ(process->log().files[0].outcome.status, FileStatus::Cancelled) << name;
        EXPECT_EQ(process->message(), QStringLiteral("Process cancelled!"));
        EXPECT_TRUE(QDir(scratch.path(QStringLiteral("out"))).isEmpty()) << name;
    }
}

TEST_F(JobTest, OpensTheFolderOnlyWhenSomethingWasCreated)
{
    settings.isOpenFolderAfterConversion = true;
    add(QStringLiteral("a.pdf"), 1);
    script.act = [](const QString&) { return false; };
    run();
    EXPECT_TRUE(desktop.opened.isEmpty());
    script.act = [](const QString&) { return true; };
    Process& done = run();
    EXPECT_EQ(desktop.opened, QStringList{scratch.path(QStringLiteral("out"))});
    done.viewLog();
    EXPECT_EQ(desktop.opened.back(), done.log().logFilePath()->text());
}

TEST_F(JobTest, TwoInputsOfOneNameOverwriteEachOtherAndSaySo)
{
    settings.number->stamps.push_back(std::make_shared<TextStamp>());
    add(QStringLiteral("one/doc.pdf"), 1);
    add(QStringLiteral("two/doc.pdf"), 2);
    run(false);
    EXPECT_EQ(results[0], QStringLiteral("doc.pdf Completed"));
    EXPECT_EQ(results[1], QStringLiteral("doc.pdf Completed This copy replaces the copy of %1.")
                              .arg(scratch.path(QStringLiteral("one/doc.pdf"))));
    EXPECT_EQ(warnings(),
              QStringList{QStringLiteral("1 file replaced the copy of another file of its name: doc.pdf")});
    EXPECT_EQ(pdfWords(scratch.path(QStringLiteral("out/doc.pdf"))).size(), 2U);
}

TEST_F(JobTest, AFileThatIsNoDocumentAnyMoreCountsAndIsWarnedOf)
{
    settings.number->stamps.push_back(std::make_shared<TextStamp>());
    add(QStringLiteral("one/doc.pdf"), 1);
    add(QStringLiteral("two/doc.pdf"), 2);
    add(QStringLiteral("other.pdf"), 1);
    scratch.write(QStringLiteral("two/doc.pdf"), "damaged since it was listed");
    scratch.write(QStringLiteral("other.pdf"), "likewise");
    const QString old = scratch.write(QStringLiteral("out/other.pdf"), numberedPdf(1));
    const Process& done = run(false);
    EXPECT_EQ(done.message(), QStringLiteral("All files processed successfully."));
    EXPECT_EQ(done.totalFileCreated(), 3);
    EXPECT_EQ(readFile(done.log().logFilePath()->text()).count("Status=\"Completed\""), 3);
    EXPECT_EQ(done.log().files[1].outcome.status, FileStatus::CreatedNothing);
    EXPECT_TRUE(results[1].endsWith(QStringLiteral(" No copy was made."))) << results[1].toStdString();
    EXPECT_EQ(warnings(), QStringList{QStringLiteral("2 files gave no output: doc.pdf, other.pdf")});
    EXPECT_EQ(pdfWords(scratch.path(QStringLiteral("out/doc.pdf"))).size(), 1U)
        << "the first one's copy stays";
    EXPECT_FALSE(QFile::exists(old)) << "a copy of an earlier job would pass for one of this job";
}

/// Uses three numbers of every file, and fails in the second file.
class FailingMidway final : public DocumentProcessors
{
  public:
    StampedDocument processPDF(const FilePath& source, const FilePath&, const QString&, JobRun& run) override
    {
        return processDocument("Error in [processPDF:] : %@", source, run, [&](StampedDocument& work) {
            for (int page = 0; page < 3; ++page)
                run.numberUsed();
            if (source.name() == QLatin1String("b.pdf")) throw Failure(QStringLiteral("The page is torn."));
            work.outcome = {FileStatus::Created, std::nullopt, 3, run.numbers()};
        });
    }
    StampedDocument processTIFF(const FilePath&, const FilePath&, JobRun&, std::int32_t) override
    {
        return {};
    }
};

TEST_F(JobTest, NumbersOfAFileThatFailsMidwayAreNamed)
{
    for (const char* name : {"a.pdf", "b.pdf", "c.pdf"})
        add(QString::fromLatin1(name), 3);
    settings.number->setStartNumber(101);
    settings.number->setNumberSteps(10);
    for (const bool isContinuous : {true, false}) {
        results.clear();
        settings.number->setIsContinuousNumbering(isContinuous);
        ProcessServices given = services();
        given.makeProcessors = [](const auto&...) { return std::make_unique<FailingMidway>(); };
        process = std::make_unique<Process>(given, planJob(files, settings), *this);
        process->start();
        const QString lost = QStringLiteral("The numbers 131 to 151 appear in no file.");
        EXPECT_EQ(results[1], QStringLiteral("b.pdf Failed The page is torn.") +
                                  (isContinuous ? u' ' + lost : QString()));
        EXPECT_EQ(warnings(), isContinuous ? QStringList{lost} : QStringList{});
        EXPECT_EQ(process->log().files[2].outcome.numbers->first, isContinuous ? 161 : 101) << "they run on";
    }
}

TEST_F(JobTest, AnotherFileOfTheListIsNeverOverwritten)
{
    settings.number->stamps.push_back(std::make_shared<TextStamp>());
    for (const bool sourceFirst : {true, false}) {
        files.clear();
        results.clear();
        if (sourceFirst)
            add(QStringLiteral("out/doc.pdf"), 3); // in the output folder itself: processed in place
        add(QStringLiteral("other/doc.pdf"), 1);
        if (!sourceFirst) add(QStringLiteral("out/doc.pdf"), 3);
        run(false);
        const int other = sourceFirst ? 1 : 0;
        EXPECT_TRUE(results[other].contains(QStringLiteral("would overwrite another file of the list")))
            << sourceFirst;
        EXPECT_EQ(results[1 - other], QStringLiteral("doc.pdf Completed"));
        const auto pages = pdfWords(scratch.path(QStringLiteral("out/doc.pdf")));
        ASSERT_EQ(pages.size(), 3U) << "the copy of the document that lives there";
        EXPECT_EQ(pages[2].words.size(), 4U) << "stamped once: 3 of 3, and its own word";
    }
}

TEST_F(JobTest, RunsOnAWorkerWhileOthersRead)
{
    settings.number->stamps.push_back(std::make_shared<TextStamp>());
    for (int i = 0; i < 8; ++i)
        add(QStringLiteral("doc%1.pdf").arg(i), 20);
    process = std::make_unique<Process>(services(false), planJob(files, settings), *this);
    std::thread worker([&] { process->start(); });
    std::set<std::string> seen;
    while (!process->isCompleted())
        seen.insert(process->outputFileInProcess().toStdString() + process->timeTaken().toStdString() +
                    process->message().toStdString());
    worker.join();
    EXPECT_FALSE(seen.empty());
    EXPECT_EQ(process->totalFileCreated(), 8);
    EXPECT_EQ(process->totalPagesProcessed(), 160);
}

/// Stamps the documents of one job and gives what their pages show.
QStringList stampedWords(const Scratch& scratch, const QString& name, std::int64_t startNumber)
{
    const int pages = 60;
    const QString source = scratch.write(name + QStringLiteral("/in.pdf"), numberedPdf(pages));
    Numbering number;
    number.setStartNumber(startNumber);
    for (const bool isFacing : {false, true}) {
        auto stamp = std::make_shared<TextStamp>();
        stamp->number.numberFormat = name + (isFacing ? QStringLiteral("-side") : QStringLiteral("-{0}/{1}"));
        stamp->setMarginAnchor(isFacing ? MarginAnchor::BottomLeft : MarginAnchor::TopMiddle);
        stamp->setIsSymmetry(isFacing);
        number.stamps.push_back(stamp);
    }
    const JobConfiguration job = number.configuration();
    const auto processors = makeDocumentProcessors(job);
    JobRun run(job);
    QStringList shown;
    for (int round = 0; round < 3; ++round) {
        const QString target = scratch.path(name + QStringLiteral("/out%1.pdf").arg(round));
        EXPECT_EQ(processors->processPDF(asPath(source), asPath(target), {}, run).commit().status,
                  FileStatus::Created);
        for (const PdfTextPage& page : pdfWords(target))
            for (const PdfWord& word : page.words)
                if (word.text.startsWith(name))
                    shown.append(word.text + (word.box.center().x() < page.width / 2 ? u'<' : u'>'));
    }
    return shown;
}

TEST(TwoJobs, RunAtOnceWithoutTouchingEachOther)
{
    const Scratch scratch;
    const QStringList alone = stampedWords(scratch, QStringLiteral("alone"), 1000);
    ASSERT_EQ(alone.size(), 360);
    EXPECT_TRUE(alone.constLast().startsWith(QLatin1String("alone-side"))) << alone.constLast().toStdString();
    QStringList first;
    QStringList second;
    std::thread other([&] { second = stampedWords(scratch, QStringLiteral("other"), 1000); });
    first = stampedWords(scratch, QStringLiteral("first"), 1);
    other.join();
    EXPECT_EQ(QStringList(second).replaceInStrings(QStringLiteral("other"), QStringLiteral("alone")), alone);
    EXPECT_EQ(first.size(), alone.size());
    EXPECT_TRUE(first.contains(QStringLiteral("first-180/60>")) ||
                first.contains(QStringLiteral("first-180/60<")))
        << "the number ran on through its own three documents";
}

} // namespace
} // namespace quillfern
