// Jobs over several files at once, which must come out as if one file was made after the other.

#include "batch/DocumentInWork.h"
#include "batch/JobFixture.h"
#include "batch/JobWarnings.h"
#include "platform/system/Cancellation.h"
#include "support/TiffBuilder.h"

#include <chrono>
#include <map>
#include <pthread.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace quillfern {
namespace {

using namespace std::chrono_literals;

class ParallelJob : public JobFixture
{
  protected:
    ParallelJob()
    {
        settings.number->stamps.push_back(textStamp(u"N{0}/{1}"_s, MarginAnchor::BottomLeft));
        settings.number->stamps.back()->setIsSymmetry(true);
        settings.number->setIsContinuousNumbering(true);
    }

    /// Documents of one to five pages.
    void addDocuments(int count)
    {
        for (int i = 0; i < count; ++i)
            add(u"in/d%1.pdf"_s.arg(i, 2, 10, QLatin1Char('0')), numberedPdf(1 + i * 7 % 5));
    }

    void emptyOut() const
    {
        for (const QString& old : filesIn(u"out"_s))
            QFile::remove(scratch.path(u"out/"_s + old));
    }

    /// Runs the job anew, and returns all that can be seen of it: results and warnings in their order, then
    /// the files with their bytes.
    QByteArrayList seenOf(int filesAtOnce)
    {
        emptyOut();
        run(filesAtOnce);
        QByteArrayList seen{results.join(u'\n').toUtf8()};
        for (const Reason& warning : jobWarnings(process->log().files))
            seen.append(warning.logged.toUtf8());
        seen.append(process->message().toUtf8() + QByteArray::number(process->totalFileProcessed()) + '/' +
                    QByteArray::number(process->totalFileCreated()));
        for (const QString& name : filesIn(u"out"_s))
            seen.append(name.toUtf8() + '\n' + readFile(scratch.path(u"out/"_s + name)));
        return seen;
    }

    /// The stamp on each page that has one.
    static QStringList numbersOn(const QString& path)
    {
        QStringList words;
        for (const PdfTextPage& page : pdfWords(path))
            for (const PdfWord& word : page.words)
                if (word.text.startsWith(u'N')) words.append(word.text);
        return words;
    }

    void outputFinished(const LogFiles& output) override
    {
        JobFixture::outputFinished(output);
        if (atResult) atResult();
    }

    std::function<void()> atResult;
};

TEST_F(ParallelJob, GivesWhatASequentialJobGives)
{
    addDocuments(7);
    const QString scan = scratch.path(u"in/scan.tif"_s);
    const QImage page(scratch.writePicture(u"page.png"_s, {60, 40}));
    TiffBuilder(scan).page(page).page(page);
    list(scan);
    add(u"in/other/d01.pdf"_s, numberedPdf(2)); // replaces an earlier copy
    add(u"in/none.pdf"_s, "no document");       // no pages
    add(u"in/gone.pdf"_s, numberedPdf(3));      // fails
    add(u"in/torn.pdf"_s, numberedPdf(4));      // no document any more
    add(u"in/less.pdf"_s, numberedPdf(5));      // has fewer pages than were counted
    scratch.write(u"in/torn.pdf"_s, "torn");
    scratch.write(u"in/less.pdf"_s, numberedPdf(1));
    QFile::remove(scratch.path(u"in/gone.pdf"_s));
    add(u"in/last.pdf"_s, numberedPdf(3));
    add(u"in/last2.pdf"_s, numberedPdf(3));
    for (const PageRange range : {PageRange::AllPages, PageRange::OddPages}) {
        settings.number->setPageRange(range);
        for (const bool isContinuous : {true, false}) {
            settings.number->setIsContinuousNumbering(isContinuous);
            const QByteArrayList expected = seenOf(1);
            EXPECT_EQ(results.size(), static_cast<int>(files.size()));
            for (const int workers : {2, 8}) {
                const QByteArrayList actual = seenOf(workers);
                ASSERT_EQ(actual.size(), expected.size());
                for (int i = 0; i < actual.size(); ++i)
                    EXPECT_TRUE(actual[i] == expected[i])
                        << workers << " workers: " << actual[i].left(120).constData() << "\nnot "
                        << expected[i].left(120).constData();
            }
        }
    }
    EXPECT_EQ(numbersOn(scratch.path(u"out/last2.pdf"_s)), QStringList({u"N1/3"_s, u"N2/3"_s}));
}

TEST_F(ParallelJob, InPlaceWithBackupKeepsEveryOriginal)
{
    addDocuments(24);
    settings.number->setIsBackupFile(true);
    std::map<QString, QByteArray> originals;
    for (const FileItem& item : files)
        originals[item.name()] = readFile(item.filePath().text());
    settings.outputFolderPath = scratch.path(u"in"_s);
    EXPECT_EQ(run(6).message(), u"All files processed successfully."_s);
    EXPECT_EQ(filesIn(u"in"_s).size(), 48);
    int expected = 1;
    for (const auto& [name, bytes] : originals) {
        const QString path = scratch.path(u"in/"_s + name);
        EXPECT_EQ(readFile(path + u".bak"_s), bytes) << name.toStdString();
        for (const QString& word : numbersOn(path))
            EXPECT_EQ(word, u"N%1/71"_s.arg(expected++)) << name.toStdString();
    }
}

TEST_F(ParallelJob, ACancelKeepsWhatWasCommittedAndDropsTheRest)
{
    addDocuments(12);
    for (const int workers : {1, 4})
        for (const bool isAbandoned : {false, true}) {
            makeProcessors = {};
            for (const int after : {1, 5, 12}) {
                atResult = [&] {
                    if (results.size() == after) isAbandoned ? process->abandon() : process->stop();
                };
                emptyOut();
                EXPECT_EQ(run(workers).message(), u"Process cancelled!"_s);
                EXPECT_EQ(results.size(), after);
                EXPECT_EQ(filesIn(u"out"_s), QStringList(results).replaceInStrings(u" Completed"_s, u""_s));
                EXPECT_EQ(readFile(process->log().logFilePath()->text()).count("Completed"), after);
                EXPECT_EQ(process->pagesInWork(), 0) << "dropped work counts no page";
            }
            // While the turn waits for its file: the file is finished, or given up.
            atResult = {};
            makeProcessors = StagedProcessors::factory([&](const FilePath& source, bool, JobRun& run) {
                if (source.name() != "d03.pdf"_L1) return std::nullopt;
                while (results.size() < 3) // its turn
                    std::this_thread::sleep_for(1ms);
                isAbandoned ? process->abandon() : process->stop();
                while (isAbandoned && !run.abandoned().stop_requested())
                    std::this_thread::sleep_for(1ms);
                return std::nullopt;
            });
            emptyOut();
            run(workers);
            EXPECT_EQ(results.size(), 4);
            EXPECT_EQ(filesIn(u"out"_s).size(), isAbandoned ? 3 : 4);
            EXPECT_EQ(process->log().files.back().outcome.status,
                      isAbandoned ? FileStatus::Cancelled : FileStatus::Created);
        }
}

TEST_F(ParallelJob, WorkThatFailedForWantOfRoomIsDoneAgainAlone)
{
    addDocuments(9);
    std::atomic<int> inWork = 0;
    std::atomic<int> refused = 0;
    std::atomic<bool> wasThere = false;
    const QString earlier = scratch.path(u"out/d06.pdf"_s);
    atResult = [&] {
        if (results.size() == 1) scratch.write(u"out/d06.pdf"_s, "earlier");
    };
    makeProcessors = StagedProcessors::factory([&](const FilePath& source, bool, JobRun& run) {
        const int others = inWork++;
        std::this_thread::sleep_for(10ms);
        const bool isFull = others > 0 || inWork > 1;
        --inWork;
        // One file fits beside no other, one fits in no case.
        const bool isLarge = source.name() == "d04.pdf"_L1;
        if (!(isLarge && isFull) && source.name() != "d06.pdf"_L1) return std::optional<StampedDocument>();
        ++refused;
        wasThere = QFile::exists(earlier);
        return std::optional(processDocument("%@", source, run, [&](StampedDocument& work) {
            const FilePath target = asPath(scratch.path(u"out/"_s + source.name()));
            work.place = std::make_unique<DocumentTarget>(source, target, false, std::nullopt);
            throw Failure::fromErrno(Reason("The disk is small."), ENOSPC);
        }));
    });
    run(4);
    EXPECT_TRUE(wasThere) << "until it is known that there is no other copy";
    EXPECT_EQ(filesIn(u"out"_s).size(), 8);
    EXPECT_FALSE(QFile::exists(earlier));
    EXPECT_EQ(process->log().files[4].outcome.status, FileStatus::Created);
    EXPECT_EQ(process->log().files[6].outcome.status, FileStatus::Failed);
    EXPECT_GE(refused, 2);
    EXPECT_EQ(numbersOn(scratch.path(u"out/d07.pdf"_s)).constFirst(), u"N17/26"_s)
        << "no numbers are used up by what was not begun";
}

/// While it lives at most so many more files can be open.
class FewOpenFiles
{
  public:
    explicit FewOpenFiles(rlim_t more)
    {
        const int lowest = ::dup(0);
        ::close(lowest);
        EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &before_), 0);
        const rlimit few = {static_cast<rlim_t>(lowest) + more, before_.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    }
    ~FewOpenFiles() { ::setrlimit(RLIMIT_NOFILE, &before_); }

  private:
    rlimit before_ = {};
};

/// No address space has room for the stack of a thread that is made while it lives.
class NoThreads
{
  public:
    NoThreads() { setStack(std::size_t{1} << 52); }
    ~NoThreads() { setStack(std::size_t{8} << 20); }

  private:
    static void setStack(std::size_t size)
    {
        pthread_attr_t attributes;
        ::pthread_attr_init(&attributes);
        ::pthread_attr_setstacksize(&attributes, size);
        EXPECT_EQ(::pthread_setattr_default_np(&attributes), 0);
    }
};

TEST_F(ParallelJob, FewOpenFilesAndNoThreadsAreEnough)
{
    QImage page(60, 40, QImage::Format_RGB888);
    page.fill(Qt::white);
    const QString scan = scratch.path(u"scan.tif"_s);
    TiffBuilder(scan).page(page).page(page).page(page);
    addDocuments(20);
    add(u"in/scan.tif"_s, readFile(scan));
    add(u"in/last.pdf"_s, numberedPdf(2));
    JobOptions options;
    options.keepFolders = true; // the move to a name opens folders
    settings.number->setOptions(options);
    const QByteArrayList expected = seenOf(1);
    for (const rlim_t more : {14, 20, 30}) {
        const FewOpenFiles few(more);
        EXPECT_TRUE(seenOf(8) == expected) << more;
    }
    const NoThreads none;
    EXPECT_TRUE(seenOf(8) == expected);
}

TEST_F(ParallelJob, OfFilesOfOneNameTheFirstIsStampedWhenNoneIsReplaced)
{
    addDocuments(4);
    for (int i = 0; i < 4; ++i)
        add(u"in/other/d0%1.pdf"_s.arg(i), numberedPdf(2));
    add(u"in/last.pdf"_s, numberedPdf(1));
    JobOptions options;
    options.existing = ExistingCopies::Skip;
    settings.number->setOptions(options);
    const QByteArrayList expected = seenOf(1);
    EXPECT_TRUE(seenOf(8) == expected);
    EXPECT_TRUE(process->log().files.at(4).outcome.lostNumbers) << "they were not given to the next file";
}

TEST_F(ParallelJob, ProcessorsThatCannotBeMadeEndTheJobWithAWord)
{
    addDocuments(3);
    makeProcessors = [](const auto&...) -> std::unique_ptr<DocumentProcessors> {
        throw Failure(u"No processors today."_s);
    };
    run(3);
    EXPECT_TRUE(process->isCompleted());
    EXPECT_TRUE(process->message().contains(u"unable able to process"_s));
    EXPECT_TRUE(filesIn(u"out"_s).isEmpty());
}

} // namespace
} // namespace quillfern
