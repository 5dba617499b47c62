// Jobs over several files at once, which must come out as if one file was made after the other.

#include "batch/Process.h"

#include "batch/DocumentInWork.h"
#include "batch/JobWarnings.h"
#include "batch/PdfProcessing.h"
#include "platform/system/Cancellation.h"
#include "support/Fakes.h"
#include "support/PdfBuilder.h"
#include "support/TiffBuilder.h"

#include <QDir>
#include <chrono>
#include <gtest/gtest.h>
#include <map>
#include <pthread.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace quillfern {
namespace {

using namespace std::chrono_literals;

class ParallelJob : public PdfProcessing, public ProcessObserver
{
  protected:
    void SetUp() override
    {
        ASSERT_TRUE(folders.createApplicationUsersFolder(QStringLiteral("Logs")));
        settings.isOpenFolderAfterConversion = false;
        settings.number->stamps.push_back(textStamp(QStringLiteral("N{0}/{1}"), MarginAnchor::BottomLeft));
        settings.number->stamps.back()->setIsSymmetry(true);
        settings.number->setIsContinuousNumbering(true);
    }

    void addFile(const QString& name, const QByteArray& bytes)
    {
        files.push_back(*FileItem::initWithURL(asPath(scratch.write(QStringLiteral("in/") + name, bytes))));
        files.back().setPdfOpenPassword(std::nullopt);
    }
    /// Documents of one to five pages.
    void addDocuments(int count)
    {
        for (int i = 0; i < count; ++i)
            addFile(QStringLiteral("d%1.pdf").arg(i, 2, 10, QLatin1Char('0')), numberedPdf(1 + i * 7 % 5));
    }

    /// Runs the job into the folder `out`, and returns all that can be seen of it: results and warnings in
    /// their order, then the files with their bytes.
    QByteArrayList run(int filesAtOnce, const QString& out = QStringLiteral("out"))
    {
        QDir(scratch.path(out)).removeRecursively();
        QDir().mkpath(scratch.path(out));
        settings.outputFolderPath = scratch.path(out);
        results.clear();
        ProcessServices services{clock, folders, thread, desktop};
        services.filesAtOnce = filesAtOnce;
        if (makeProcessors) services.makeProcessors = makeProcessors;
        process = std::make_unique<Process>(services, planJob(files, settings), *this);
        process->start();
        QByteArrayList seen;
        for (const LogFiles& record : process->log().files)
            seen.append(
                record.filename.toUtf8() + ' ' + statusWord(record.outcome).toUtf8() +
                (record.outcome.remark ? ' ' + record.outcome.remark->logged.toUtf8() : QByteArray()));
        for (const Reason& warning : jobWarnings(process->log().files))
            seen.append(warning.logged.toUtf8());
        seen.append(process->message().toUtf8() + QByteArray::number(process->totalFileProcessed()) + '/' +
                    QByteArray::number(process->totalFileCreated()));
        for (const QString& name : filesIn(out))
            seen.append(name.toUtf8() + '\n' + readFile(scratch.path(out + u'/' + name)));
        return seen;
    }

    [[nodiscard]] QStringList filesIn(const QString& folder) const
    {
        return QDir(scratch.path(folder)).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
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

    void updateTimeTakenLabel(const QString&) override {}
    void outputFinished(const LogFiles& output) override
    {
        results.append(output.filename);
        if (atResult) atResult();
    }

    FakeFolders folders{scratch.path()};
    FakeClock clock;
    SameThread thread;
    FakeDesktop desktop;
    Settings settings;
    std::vector<FileItem> files;
    QStringList results;
    std::function<void()> atResult;
    DocumentProcessorsFactory makeProcessors;
    std::unique_ptr<Process> process;
};

TEST_F(ParallelJob, GivesWhatASequentialJobGives)
{
    addDocuments(7);
    QImage page(60, 40, QImage::Format_RGB888);
    page.fill(Qt::white);
    const QString scan = scratch.path(QStringLiteral("scan.tif"));
    TiffBuilder(scan).page(page).page(page);
    addFile(QStringLiteral("scan.tif"), readFile(scan));
    addFile(QStringLiteral("other/d01.pdf"), numberedPdf(2)); // replaces an earlier copy
    addFile(QStringLiteral("none.pdf"), "no document");       // no pages
    addFile(QStringLiteral("gone.pdf"), numberedPdf(3));      // fails
    addFile(QStringLiteral("torn.pdf"), numberedPdf(4));      // no document any more
    addFile(QStringLiteral("less.pdf"), numberedPdf(5));      // has fewer pages than were counted
    scratch.write(QStringLiteral("in/torn.pdf"), "torn");
    scratch.write(QStringLiteral("in/less.pdf"), numberedPdf(1));
    QFile::remove(scratch.path(QStringLiteral("in/gone.pdf")));
    addFile(QStringLiteral("last.pdf"), numberedPdf(3));
    addFile(QStringLiteral("last2.pdf"), numberedPdf(3));
    for (const PageRange range : {PageRange::AllPages, PageRange::OddPages}) {
        settings.number->setPageRange(range);
        for (const bool isContinuous : {true, false}) {
            settings.number->setIsContinuousNumbering(isContinuous);
            const QByteArrayList expected = run(1);
            EXPECT_EQ(results.size(), static_cast<int>(files.size()));
            for (const int workers : {2, 8}) {
                const QByteArrayList actual = run(workers);
                ASSERT_EQ(actual.size(), expected.size());
                for (int i = 0; i < actual.size(); ++i)
                    EXPECT_EQ(actual[i] == expected[i], true)
                        << workers << " workers: " << actual[i].left(120).constData() << "\nnot "
                        << expected[i].left(120).constData();
            }
        }
    }
    EXPECT_EQ(numbersOn(scratch.path(QStringLiteral("out/last2.pdf"))),
              QStringList({QStringLiteral("N1/3"), QStringLiteral("N2/3")}));
}

TEST_F(ParallelJob, InPlaceWithBackupKeepsEveryOriginal)
{
    addDocuments(24);
    settings.number->setIsBackupFile(true);
    std::map<QString, QByteArray> originals;
    for (const FileItem& item : files)
        originals[item.name()] = readFile(item.filePath().text());
    ProcessServices services{clock, folders, thread, desktop};
    services.filesAtOnce = 6;
    settings.outputFolderPath = scratch.path(QStringLiteral("in"));
    process = std::make_unique<Process>(services, planJob(files, settings), *this);
    process->start();
    EXPECT_EQ(process->message(), QStringLiteral("All files processed successfully."));
    EXPECT_EQ(filesIn(QStringLiteral("in")).size(), 48);
    int expected = 1;
    for (const auto& [name, bytes] : originals) {
        const QString path = scratch.path(QStringLiteral("in/") + name);
        EXPECT_EQ(readFile(path + QStringLiteral(".bak")), bytes) << name.toStdString();
        for (const QString& word : numbersOn(path))
            EXPECT_EQ(word, QStringLiteral("N%1/71").arg(expected++)) << name.toStdString();
    }
}

/// The real processors, with something that happens before each file.
class DisturbedProcessors final : public DocumentProcessors
{
  public:
    using Disturb = std::function<void(const FilePath& source, JobRun& run)>;
    DisturbedProcessors(std::unique_ptr<DocumentProcessors> real, Disturb disturb)
        : real_(std::move(real)), disturb_(std::move(disturb))
    {
    }
    StampedDocument processPDF(const FilePath& source, const FilePath& target, const QString& password,
                               JobRun& run) override
    {
        try {
            disturb_(source, run);
        } catch (...) {
            StampedDocument document;
            document.source = source;
            document.place = std::make_unique<DocumentTarget>(source, target, false, std::nullopt);
            document.fail();
            return document;
        }
        return real_->processPDF(source, target, password, run);
    }
    StampedDocument processTIFF(const FilePath& source, const FilePath& target, JobRun& run,
                                std::int32_t compression) override
    {
        return real_->processTIFF(source, target, run, compression);
    }

    static DocumentProcessorsFactory factory(Disturb disturb)
    {
        return [disturb = std::move(disturb)](const JobConfiguration& job, const auto& codings) {
            return std::make_unique<DisturbedProcessors>(makeDocumentProcessors(job, codings), disturb);
        };
    }

  private:
    std::unique_ptr<DocumentProcessors> real_;
    Disturb disturb_;
};

TEST_F(ParallelJob, ACancelKeepsWhatWasCommittedAndDropsTheRest)
{
    addDocuments(12);
    for (const bool isAbandoned : {false, true}) {
        for (const int after : {1, 5, 12}) {
            atResult = [&] {
                if (results.size() == after) isAbandoned ? process->abandon() : process->stop();
            };
            run(4);
            EXPECT_EQ(results.size(), after);
            EXPECT_EQ(filesIn(QStringLiteral("out")), results) << "and nothing besides";
            EXPECT_EQ(process->message(), QStringLiteral("Process cancelled!"));
            EXPECT_EQ(process->pagesInWork(), 0) << "dropped work counts no page";
        }
    }
    // While the turn waits for its file: the file is finished, or given up.
    for (const bool isAbandoned : {false, true}) {
        atResult = {};
        makeProcessors = DisturbedProcessors::factory([&](const FilePath& source, JobRun& run) {
            if (source.name() != QLatin1String("d03.pdf")) return;
            while (results.size() < 3) // its turn
                std::this_thread::sleep_for(1ms);
            isAbandoned ? process->abandon() : process->stop();
            while (isAbandoned && !run.abandoned().stop_requested())
                std::this_thread::sleep_for(1ms);
        });
        run(4);
        EXPECT_EQ(results.size(), 4);
        EXPECT_EQ(filesIn(QStringLiteral("out")).size(), isAbandoned ? 3 : 4);
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
    const QString earlier = scratch.path(QStringLiteral("out/d06.pdf"));
    atResult = [&] {
        if (results.size() == 1) scratch.write(QStringLiteral("out/d06.pdf"), "earlier");
    };
    makeProcessors = DisturbedProcessors::factory([&](const FilePath& source, JobRun&) {
        const int others = inWork++;
        std::this_thread::sleep_for(10ms);
        const bool isFull = others > 0 || inWork > 1;
        --inWork;
        // One file fits beside no other, one fits in no case.
        const bool isLarge = source.name() == QLatin1String("d04.pdf");
        if ((isLarge && isFull) || source.name() == QLatin1String("d06.pdf")) {
            ++refused;
            wasThere = QFile::exists(earlier);
            throw Failure::fromErrno(Reason("The disk is small."), ENOSPC);
        }
    });
    run(4);
    EXPECT_TRUE(wasThere) << "until it is known that there is no other copy";
    EXPECT_EQ(filesIn(QStringLiteral("out")).size(), 8);
    EXPECT_FALSE(QFile::exists(earlier));
    EXPECT_EQ(process->log().files[4].outcome.status, FileStatus::Created);
    EXPECT_EQ(process->log().files[6].outcome.status, FileStatus::Failed);
    EXPECT_GE(refused, 2);
    EXPECT_EQ(numbersOn(scratch.path(QStringLiteral("out/d07.pdf"))).constFirst(), QStringLiteral("N17/26"))
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
    const QString scan = scratch.path(QStringLiteral("scan.tif"));
    TiffBuilder(scan).page(page).page(page).page(page);
    addDocuments(20);
    addFile(QStringLiteral("scan.tif"), readFile(scan));
    addFile(QStringLiteral("last.pdf"), numberedPdf(2));
    JobOptions options;
    options.keepFolders = true; // the move to a name opens folders
    settings.number->setOptions(options);
    const QByteArrayList expected = run(1);
    for (const rlim_t more : {14, 20, 30}) {
        const FewOpenFiles few(more);
        EXPECT_TRUE(run(8) == expected) << more;
    }
    const NoThreads none;
    EXPECT_TRUE(run(8) == expected);
}

TEST_F(ParallelJob, OfFilesOfOneNameTheFirstIsStampedWhenNoneIsReplaced)
{
    addDocuments(4);
    for (int i = 0; i < 4; ++i)
        addFile(QStringLiteral("other/d0%1.pdf").arg(i), numberedPdf(2));
    addFile(QStringLiteral("last.pdf"), numberedPdf(1));
    JobOptions options;
    options.existing = ExistingCopies::Skip;
    settings.number->setOptions(options);
    const QByteArrayList expected = run(1);
    EXPECT_TRUE(run(8) == expected);
    EXPECT_TRUE(process->log().files.at(4).outcome.lostNumbers) << "they were not given to the next file";
}

TEST_F(ParallelJob, ProcessorsThatCannotBeMadeEndTheJobWithAWord)
{
    addDocuments(3);
    makeProcessors = [](const auto&...) -> std::unique_ptr<DocumentProcessors> {
        throw Failure(QStringLiteral("No processors today."));
    };
    run(3);
    EXPECT_TRUE(process->isCompleted());
    EXPECT_TRUE(process->message().contains(QStringLiteral("unable able to process")));
    EXPECT_TRUE(filesIn(QStringLiteral("out")).isEmpty());
}

} // namespace
} // namespace quillfern
