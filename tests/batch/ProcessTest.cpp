#include "batch/DocumentInWork.h"
#include "batch/JobFixture.h"
#include "batch/JobWarnings.h"

namespace quillfern {
namespace {

class JobTest : public JobFixture
{
  protected:
    /// Runs the job over processors that note their calls, use ten numbers and give what `act` says.
    Process& runScripted()
    {
        calls.clear();
        makeProcessors = StagedProcessors::factory([this](const FilePath& source, bool isTiff, JobRun& run) {
            const QString name = source.name();
            calls.append(u"%1 %2 total %3 from %4"_s.arg(isTiff ? u"tiff" : u"pdf", name)
                             .arg(run.totalPages)
                             .arg(run.numberCounter()));
            for (int page = 0; page < 10; ++page)
                run.numberUsed();
            StampedDocument document;
            document.outcome.status = act(name) ? FileStatus::Created : FileStatus::Failed;
            return document;
        });
        return run(1);
    }

    Process& runReal()
    {
        settings.number->stamps = {std::make_shared<TextStamp>()};
        return run(0);
    }

    QStringList warnings() const
    {
        QStringList texts;
        for (const Reason& warning : jobWarnings(process->log().files))
            texts.append(warning.shown);
        return texts;
    }

    QStringList calls;
    std::function<bool(const QString& name)> act = [](const QString&) { return true; };
};

TEST_F(JobTest, HandsEveryFileToItsProcessorAndCountsPages)
{
    add(u"a.pdf"_s, 3);
    add(u"b.PdF"_s, 2);
    add(u"c.tif"_s, 4); // by its extension, whatever it holds
    settings.number->setStartNumber(5);
    const Process& done = runScripted();
    EXPECT_EQ(calls, QStringList({u"pdf a.pdf total 3 from 5"_s, u"pdf b.PdF total 2 from 5"_s,
                                  u"tiff c.tif total 4 from 5"_s}));
    EXPECT_EQ(done.message(), u"All files processed successfully."_s);
    EXPECT_EQ(done.totalFileSelected(), 3);
    EXPECT_TRUE(done.isCompleted());
    EXPECT_FALSE(done.isCombining());
    EXPECT_EQ(labels.front(), u"Total Time Taken : In Process... 1/3"_s);
    EXPECT_EQ(labels.back(), u"Total Time Taken :  3/3"_s) << "under a second";
    settings.number->setIsContinuousNumbering(true);
    runScripted();
    EXPECT_EQ(calls, QStringList({u"pdf a.pdf total 9 from 5"_s, u"pdf b.PdF total 9 from 15"_s,
                                  u"tiff c.tif total 9 from 25"_s}));
}

TEST_F(JobTest, FailuresAreToldApart)
{
    add(u"good.pdf"_s, 1);
    add(u"fails.pdf"_s, 2);
    add(u"empty.pdf"_s, 0);
    act = [](const QString& name) { return name != "fails.pdf"_L1; };
    const Process& done = runScripted();
    EXPECT_EQ(done.message(), u"Total 1 files processed successfully."_s);
    EXPECT_EQ(results, (QStringList{u"good.pdf Completed"_s, u"fails.pdf Failed"_s, results.value(2)}));
    EXPECT_TRUE(results.value(2).startsWith(u"empty.pdf No Pages "_s)) << "and why";
    EXPECT_EQ(done.totalFileProcessed(), 2);
    EXPECT_EQ(done.totalFileCreated(), 1);
    EXPECT_EQ(done.log().files[1].pages, 2);
    EXPECT_EQ(done.log().files[2].pages, 0);
    EXPECT_EQ(done.log().files[2].targetPath, scratch.path(u"out"_s));
}

TEST_F(JobTest, AnExceptionBecomesTheStatusAndTheJobGoesOn)
{
    add(u"bad.pdf"_s, 1);
    add(u"good.pdf"_s, 1);
    act = [](const QString& name) {
        if (name == "bad.pdf"_L1) throw Failure(u"the moon is full"_s);
        return true;
    };
    const Process& done = runScripted();
    EXPECT_EQ(results,
              (QStringList{u"bad.pdf the moon is full the moon is full"_s, u"good.pdf Completed"_s}));
    EXPECT_EQ(done.message(), u"Quillfern unable able to process some of the files!\r\n"
                              "Please check log for more information."_s);
    EXPECT_TRUE(readFile(done.log().logFilePath()->text()).contains("the moon is full"));
}

TEST_F(JobTest, AbandoningGivesUpTheFileAndLeavesNothingOfIt)
{
    settings.number->stamps = {std::make_shared<TextStamp>()};
    makeProcessors = StagedProcessors::factory([this](const auto&...) {
        process->abandon();
        return std::nullopt;
    });
    const QString picture = scratch.writePicture(u"a.png"_s, {400, 300});
    for (const QString& path : {scratch.write(u"a.pdf"_s, numberedPdf(3)), picture}) {
        files.clear();
        list(path);
        add(u"z.pdf"_s, 1);
        run(1);
        ASSERT_EQ(process->log().files.size(), 1U);
        EXPECT_EQ(process->log().files[0].outcome.status, FileStatus::Cancelled) << path.toStdString();
        EXPECT_EQ(process->message(), u"Process cancelled!"_s);
        EXPECT_TRUE(filesIn(u"out"_s).isEmpty()) << path.toStdString();
    }
}

TEST_F(JobTest, OpensTheFolderOnlyWhenSomethingWasCreated)
{
    settings.isOpenFolderAfterConversion = true;
    add(u"a.pdf"_s, 1);
    act = [](const QString&) { return false; };
    runScripted();
    EXPECT_TRUE(desktop.opened.isEmpty());
    act = [](const QString&) { return true; };
    Process& done = runScripted();
    EXPECT_EQ(desktop.opened, QStringList{scratch.path(u"out"_s)});
    done.viewLog();
    EXPECT_EQ(desktop.opened.back(), done.log().logFilePath()->text());
}

TEST_F(JobTest, TwoInputsOfOneNameOverwriteEachOtherAndSaySo)
{
    add(u"one/doc.pdf"_s, 1);
    add(u"two/doc.pdf"_s, 2);
    runReal();
    EXPECT_EQ(results[0], u"doc.pdf Completed"_s);
    EXPECT_EQ(results[1],
              u"doc.pdf Completed This copy replaces the copy of %1."_s.arg(scratch.path(u"one/doc.pdf"_s)));
    EXPECT_EQ(warnings(), QStringList{u"1 file replaced the copy of another file of its name: doc.pdf"_s});
    EXPECT_EQ(pdfWords(scratch.path(u"out/doc.pdf"_s)).size(), 2U);
}

TEST_F(JobTest, AFileThatIsNoDocumentAnyMoreCountsAndIsWarnedOf)
{
    add(u"one/doc.pdf"_s, 1);
    add(u"two/doc.pdf"_s, 2);
    add(u"other.pdf"_s, 1);
    scratch.write(u"two/doc.pdf"_s, "damaged since it was listed");
    scratch.write(u"other.pdf"_s, "likewise");
    const QString old = scratch.write(u"out/other.pdf"_s, numberedPdf(1));
    const Process& done = runReal();
    EXPECT_EQ(done.message(), u"All files processed successfully."_s);
    EXPECT_EQ(done.totalFileCreated(), 3);
    EXPECT_EQ(readFile(done.log().logFilePath()->text()).count("Status=\"Completed\""), 3);
    EXPECT_EQ(done.log().files[1].outcome.status, FileStatus::CreatedNothing);
    EXPECT_TRUE(results[1].endsWith(u" No copy was made."_s)) << results[1].toStdString();
    EXPECT_EQ(warnings(), QStringList{u"2 files gave no output: doc.pdf, other.pdf"_s});
    EXPECT_EQ(pdfWords(scratch.path(u"out/doc.pdf"_s)).size(), 1U) << "the first one's copy stays";
    EXPECT_FALSE(QFile::exists(old)) << "a copy of an earlier job would pass for one of this job";
}

TEST_F(JobTest, NumbersOfAFileThatFailsMidwayAreNamed)
{
    for (const QString& name : words("a.pdf b.pdf c.pdf"))
        add(name, 3);
    settings.number->setStartNumber(101);
    settings.number->setNumberSteps(10);
    makeProcessors = StagedProcessors::factory([](const FilePath& source, bool, JobRun& run) {
        return processDocument("Error in [processPDF:] : %@", source, run, [&](StampedDocument& work) {
            for (int page = 0; page < 3; ++page)
                run.numberUsed();
            if (source.name() == "b.pdf"_L1) throw Failure(u"The page is torn."_s);
            work.outcome = {FileStatus::Created, std::nullopt, 3, run.numbers()};
        });
    });
    for (const bool isContinuous : {true, false}) {
        settings.number->setIsContinuousNumbering(isContinuous);
        run(1);
        const QString lost = u"The numbers 131 to 151 appear in no file."_s;
        EXPECT_EQ(results[1], u"b.pdf Failed The page is torn."_s + (isContinuous ? u' ' + lost : QString()));
        EXPECT_EQ(warnings(), isContinuous ? QStringList{lost} : QStringList{});
        EXPECT_EQ(process->log().files[2].outcome.numbers->first, isContinuous ? 161 : 101) << "they run on";
    }
}

TEST_F(JobTest, AnotherFileOfTheListIsNeverOverwritten)
{
    for (const bool sourceFirst : {true, false}) {
        files.clear();
        if (sourceFirst) add(u"out/doc.pdf"_s, 3); // in the output folder itself: processed in place
        add(u"other/doc.pdf"_s, 1);
        if (!sourceFirst) add(u"out/doc.pdf"_s, 3);
        runReal();
        const int other = sourceFirst ? 1 : 0;
        EXPECT_TRUE(results[other].contains(u"would overwrite another file of the list"_s)) << sourceFirst;
        EXPECT_EQ(results[1 - other], u"doc.pdf Completed"_s);
        const auto pages = pdfWords(scratch.path(u"out/doc.pdf"_s));
        ASSERT_EQ(pages.size(), 3U) << "the copy of the document that lives there";
        EXPECT_EQ(pages[2].words.size(), 4U) << "stamped once: 3 of 3, and its own word";
    }
}

} // namespace
} // namespace quillfern
