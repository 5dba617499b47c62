// What a job must never do to a file: neither to its source, nor to a file of somebody else.

#include "batch/JobFixture.h"
#include "platform/system/FileFacts.h"
#include "support/TiffBuilder.h"

#include <array>
#include <barrier>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

namespace quillfern {
namespace {

QByteArray native(const QString& path)
{
    return QFile::encodeName(path);
}

struct stat statusOf(const QString& path)
{
    struct stat status = {};
    EXPECT_EQ(::stat(native(path).constData(), &status), 0) << path.toStdString();
    return status;
}

class FileSafety : public JobFixture
{
  protected:
    void SetUp() override
    {
        addStamp(u"Stamp {0}"_s);
        source = scratch.write(u"in/doc.pdf"_s, original);
        number.setIsBackupFile(true);
    }

    /// Stamps while `meanwhile` happens once, after the first page.
    FileOutcome stampWhile(const QString& target, std::function<void()> meanwhile)
    {
        const JobConfiguration job = number.configuration();
        JobRun run(job, [&] {
            if (meanwhile) std::exchange(meanwhile, nullptr)();
        });
        return makeDocumentProcessors(job)->processPDF(asPath(source), asPath(target), {}, run).commit();
    }

    const QByteArray original = numberedPdf(3);
    QString source;
};

TEST_F(FileSafety, ALinkAtTheTargetIsReplacedAndNotFollowed)
{
    const QString target = scratch.path(u"out/doc.pdf"_s);
    const ino_t inode = statusOf(source).st_ino;
    for (const bool isHard : {false, true}) {
        QFile::remove(target);
        const int linked = isHard ? ::link(native(source).constData(), native(target).constData())
                                  : ::symlink(native(source).constData(), native(target).constData());
        ASSERT_EQ(linked, 0);
        EXPECT_EQ(stamp(source, target).status, FileStatus::Created) << isHard;
        EXPECT_EQ(readFile(source), original) << isHard;
        EXPECT_EQ(statusOf(source).st_ino, inode) << isHard;
        EXPECT_NE(statusOf(target).st_ino, inode) << isHard;
        EXPECT_FALSE(QFileInfo(target).isSymLink()) << isHard;
        EXPECT_TRUE(pdfText(target, 1).contains(u"Stamp"_s)) << isHard;
    }
    EXPECT_EQ(filesIn(u"in"_s), QStringList{u"doc.pdf"_s}) << "no backup either";
}

TEST_F(FileSafety, ASourceThatIsALinkStaysALinkInPlace)
{
    const QString link = scratch.path(u"in/link.pdf"_s);
    ASSERT_TRUE(QFile::link(source, link));
    EXPECT_EQ(stamp(link, link).status, FileStatus::Created);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_TRUE(pdfText(source, 1).contains(u"Stamp"_s));
    EXPECT_EQ(readFile(link + u".bak"_s), original);
    // Its file stands where the copy would go.
    const QString other = scratch.path(u"out/doc.pdf"_s);
    const QByteArray stamped = readFile(source);
    ASSERT_TRUE(QFile::link(source, other));
    EXPECT_EQ(stamp(other, source).status, FileStatus::Created);
    EXPECT_EQ(readFile(other + u".bak"_s), stamped);
}

TEST_F(FileSafety, APipeAtTheTargetStays)
{
    const QString target = scratch.path(u"out/doc.pdf"_s);
    ASSERT_EQ(::mkfifo(native(target).constData(), 0600), 0);
    EXPECT_EQ(stamp(source, target).status, FileStatus::Failed);
    EXPECT_EQ(fileKind(asPath(target)), FileKind::Other);
}

TEST_F(FileSafety, InPlaceAndBackupKeepWhoMayOpenTheFile)
{
    ASSERT_EQ(::chmod(native(source).constData(), 0600), 0);
    // user::rw-, user:61003:r--, group::---, mask::r--, other::---
    const auto list = QByteArray::fromHex("02000000"
                                          "01000600ffffffff"
                                          "020004004bee0000"
                                          "04000000ffffffff"
                                          "10000400ffffffff"
                                          "20000000ffffffff");
    constexpr const char* acl = "system.posix_acl_access";
    if (::setxattr(native(source).constData(), acl, list.constData(), static_cast<std::size_t>(list.size()),
                   0) != 0 ||
        ::setxattr(native(source).constData(), "user.origin", "desk", 4, 0) != 0)
        GTEST_SKIP() << "the file system keeps no access lists or attributes";
    const std::timespec then[2] = {{1'000'000'000, 5}, {1'100'000'000, 7}};
    ASSERT_EQ(::utimensat(AT_FDCWD, native(source).constData(), then, 0), 0);
    ASSERT_EQ(stamp(source, source).status, FileStatus::Created);
    const QString backup = source + u".bak"_s;
    for (const QString& path : {source, backup}) {
        std::array<char, 100> value{};
        const auto size = ::getxattr(native(path).constData(), acl, value.data(), value.size());
        EXPECT_EQ(QByteArray(value.data(), std::max<ssize_t>(size, 0)), list) << path.toStdString();
        EXPECT_EQ(::getxattr(native(path).constData(), "user.origin", value.data(), value.size()), 4);
        EXPECT_EQ(statusOf(path).st_mode & 07777, 0640U) << "the group's bits are the mask";
    }
    EXPECT_EQ(statusOf(backup).st_mtim.tv_sec, 1'100'000'000);
    EXPECT_EQ(statusOf(backup).st_mtim.tv_nsec, 7);
    EXPECT_NE(statusOf(source).st_mtim.tv_sec, 1'100'000'000);
}

TEST_F(FileSafety, CopyAndBackupAreNoMoreOpenThanTheirSource)
{
    const QString target = scratch.path(u"out/doc.pdf"_s);
    const mode_t before = ::umask(022);
    for (const mode_t mode : {0600U, 0640U, 0664U}) {
        ASSERT_EQ(::chmod(native(source).constData(), mode), 0);
        ASSERT_EQ(stamp(source, target).status, FileStatus::Created);
        EXPECT_EQ(statusOf(target).st_mode & 07777, mode & 0644U) << std::oct << mode;
        ASSERT_EQ(stamp(source, source).status, FileStatus::Created);
        for (const QString& path : {source, source + u".bak"_s})
            EXPECT_EQ(statusOf(path).st_mode & 0777 & ~mode, 0U) << std::oct << mode;
    }
    ::umask(before);
}

TEST_F(FileSafety, ReadingLeavesTheDateOfTheLastAccess)
{
    // A date of last access before that of the last change would be renewed by reading.
    const std::timespec then[2] = {{1'000'000'000, 0}, {1'100'000'000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, native(source).constData(), then, 0), 0);
    auto item = FileItem::initWithURL(asPath(source));
    ASSERT_TRUE(item);
    item->setPdfOpenPassword(std::nullopt); // counts the pages
    ASSERT_EQ(stamp(source, scratch.path(u"out/doc.pdf"_s)).status, FileStatus::Created);
    EXPECT_EQ(statusOf(source).st_atim.tv_sec, 1'000'000'000);
}

TEST_F(FileSafety, AFileThatChangesMeanwhileIsLeftAsItIs)
{
    const QByteArray newer = "somebody's newer text";
    const QString other = scratch.write(u"in/other"_s, newer);
    const Rows<const char*, std::function<void()>> changes = {
        {"replaced", [&] { ::rename(native(other).constData(), native(source).constData()); }},
        {"rewritten", [&] { scratch.write(u"in/doc.pdf"_s, newer); }},
        {"rewritten, the date set back",
         [&] {
             const struct stat before = statusOf(source);
             QFile file(source);
             EXPECT_TRUE(file.open(QIODevice::ReadWrite));
             file.write("%PDX");
             file.close();
             const std::timespec times[2] = {before.st_atim, before.st_mtim};
             ::utimensat(AT_FDCWD, native(source).constData(), times, 0);
         }},
        {"removed", [&] { QFile::remove(source); }},
    };
    for (const bool isInPlace : {true, false}) {
        const QString target = isInPlace ? source : scratch.path(u"out/doc.pdf"_s);
        for (const auto& [what, change] : changes) {
            scratch.write(u"in/doc.pdf"_s, original);
            scratch.write(u"in/other"_s, newer);
            QByteArray left;
            const FileOutcome outcome = stampWhile(target, [&] {
                change();
                left = QFile::exists(source) ? readFile(source) : QByteArray();
            });
            EXPECT_EQ(outcome.status, FileStatus::Failed) << what;
            EXPECT_TRUE(outcome.remark && outcome.remark->logged.contains(u"Nothing was written"_s)) << what;
            EXPECT_EQ(QFile::exists(source) ? readFile(source) : QByteArray(), left) << what;
            EXPECT_FALSE(QFile::exists(source + u".bak"_s)) << what;
            EXPECT_TRUE(filesIn(u"out"_s).isEmpty()) << what;
        }
    }
}

TEST_F(FileSafety, ASecondRunInPlaceSaysThatItReplacesTheBackup)
{
    EXPECT_FALSE(stamp(source, source).remark);
    const QByteArray stamped = readFile(source);
    const FileOutcome second = stamp(source, source);
    EXPECT_EQ(second.status, FileStatus::Created);
    ASSERT_TRUE(second.remark);
    EXPECT_EQ(second.remark->logged, u"The earlier backup %1.bak was replaced."_s.arg(source));
    EXPECT_EQ(readFile(source + u".bak"_s), stamped);
}

/// Jobs over real files, in place.
class JobSafety : public FileSafety
{
  protected:
    void SetUp() override
    {
        FileSafety::SetUp();
        settings.outputFolderPath = scratch.path(u"in"_s);
        settings.number->stamps = number.stamps;
        settings.number->setIsBackupFile(true);
    }

    [[nodiscard]] Job plan(const QStringList& paths)
    {
        files.clear();
        for (const QString& path : paths)
            list(path);
        return planJob(files, settings);
    }

    std::vector<FileOutcome> run(const QStringList& paths)
    {
        process = std::make_unique<Process>(services(), plan(paths), *this);
        process->start();
        std::vector<FileOutcome> outcomes;
        for (const LogFiles& file : process->log().files)
            outcomes.push_back(file.outcome);
        return outcomes;
    }

    void outputFinished(const LogFiles&) override {} // of two jobs at once
    void updateTimeTakenLabel(const QString&) override {}
};

TEST_F(JobSafety, OneFileUnderTwoNamesIsStampedOnce)
{
    const QString in = scratch.path(u"in"_s);
    ASSERT_TRUE(QFile::link(in, scratch.path(u"linked"_s)));
    ASSERT_TRUE(QFile::link(source, in + u"/name.pdf"_s));
    const auto hardLink = [&] {
        ::link(native(source).constData(), native(in + u"/hard.pdf"_s).constData());
    };
    for (const QString& second :
         {scratch.path(u"linked/doc.pdf"_s), in + u"/name.pdf"_s, in + u"/hard.pdf"_s}) {
        QFile::remove(source);
        QFile::remove(in + u"/hard.pdf"_s);
        QFile::remove(source + u".bak"_s);
        scratch.write(u"in/doc.pdf"_s, original);
        hardLink();
        const auto outcomes = run({source, second});
        ASSERT_EQ(outcomes.size(), 2U);
        EXPECT_EQ(outcomes[0].status, FileStatus::Created) << second.toStdString();
        EXPECT_EQ(outcomes[1].status, FileStatus::Refused) << second.toStdString();
        ASSERT_TRUE(outcomes[1].remark);
        EXPECT_TRUE(outcomes[1].remark->logged.contains(source)) << outcomes[1].remark->logged.toStdString();
        EXPECT_EQ(pdfText(source, 1).count(u"Stamp"_s), 1) << second.toStdString();
        EXPECT_EQ(readFile(source + u".bak"_s), original) << second.toStdString();
    }
}

TEST_F(JobSafety, ANameThatComesOutOtherwiseThanPlannedOverwritesNoInput)
{
    // The first file is planned as 3.pdf and comes out as 1.pdf, which is an input: another one, or itself.
    for (const bool isItself : {false, true}) {
        for (const ExistingCopies existing : {ExistingCopies::Replace, ExistingCopies::Number}) {
            const QString first = scratch.write(isItself ? u"in/1.pdf"_s : u"in/doc.pdf"_s, numberedPdf(3));
            const QString second = isItself ? source : scratch.write(u"in/1.pdf"_s, numberedPdf(2));
            JobOptions options;
            options.namePattern = u"{last}"_s;
            options.existing = existing;
            settings.number->setOptions(options);
            Job job = plan({first, second});
            ASSERT_EQ(job.outputFiles[0].filename().name(), u"3.pdf"_s);
            const QByteArray shorter = numberedPdf(1);
            scratch.write(first.mid(scratch.path().size() + 1), shorter);
            const QByteArray input = readFile(scratch.path(u"in/1.pdf"_s));
            process = std::make_unique<Process>(services(), std::move(job), *this);
            process->start();
            const LogFiles& record = process->log().files.at(0);
            const bool isReplaced = existing == ExistingCopies::Replace;
            EXPECT_EQ(record.outcome.status, isReplaced ? FileStatus::Failed : FileStatus::Created);
            EXPECT_EQ(record.filename, isReplaced ? u"1.pdf"_s : u"1 (2).pdf"_s);
            EXPECT_EQ(readFile(scratch.path(u"in/1.pdf"_s)), input);
            QFile::remove(scratch.path(u"in/1 (2).pdf"_s));
        }
    }
}

TEST_F(JobSafety, AFileStampedThroughALinkIsNotStampedAgainAsASource)
{
    // in/doc.pdf becomes a link to a file elsewhere, which is stamped in place through the link.
    const QString elsewhere = scratch.write(u"elsewhere/real.pdf"_s, original);
    QFile::remove(source);
    ASSERT_TRUE(QFile::link(elsewhere, source));
    const auto outcomes = run({source, elsewhere});
    EXPECT_EQ(outcomes.at(0).status, FileStatus::Created);
    EXPECT_EQ(outcomes.at(1).status, FileStatus::Refused);
    EXPECT_EQ(pdfText(elsewhere, 1).count(u"Stamp"_s), 1);
    EXPECT_FALSE(QFile::exists(scratch.path(u"in/real.pdf"_s)));
}

TEST_F(JobSafety, ALinkToAnotherInputIsReplacedAndTheInputItselfIsNot)
{
    settings.outputFolderPath = scratch.path(u"out"_s);
    const QString other = scratch.write(u"other/more.pdf"_s, original);
    // The copy of doc.pdf takes the place of a link to more.pdf, which harms nobody.
    ASSERT_TRUE(QFile::link(other, scratch.path(u"out/doc.pdf"_s)));
    const auto outcomes = run({source, other});
    EXPECT_EQ(outcomes.at(0).status, FileStatus::Created);
    EXPECT_EQ(outcomes.at(1).status, FileStatus::Created);
    EXPECT_EQ(readFile(other), original);
    EXPECT_EQ(readFile(source), original);
}

TEST_F(JobSafety, TwoJobsAtOnceLoseNoOriginal)
{
    constexpr int count = 40;
    QStringList paths;
    for (int i = 0; i < count; ++i)
        paths.append(scratch.write(u"in/file%1.pdf"_s.arg(i), original));
    std::array<std::unique_ptr<Process>, 2> jobs;
    std::array<FakeClock, 2> clocks;
    std::barrier together(2);
    std::array<std::thread, 2> workers;
    for (std::size_t i = 0; i < jobs.size(); ++i) {
        jobs[i] = std::make_unique<Process>(ProcessServices{clocks[i], folders, thread, desktop}, plan(paths),
                                            *this);
        workers[i] = std::thread([&, i] {
            together.arrive_and_wait();
            jobs[i]->start();
        });
    }
    for (std::thread& worker : workers)
        worker.join();
    for (int i = 0; i < count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        int created = 0;
        bool isBackupReplaced = false; // by a job that began when the other was done with the file
        for (const auto& job : jobs) {
            const FileOutcome& outcome = job->log().files.at(at).outcome;
            created += outcome.status == FileStatus::Created;
            isBackupReplaced |= outcome.status == FileStatus::Created && outcome.remark;
        }
        EXPECT_EQ(created, isBackupReplaced ? 2 : 1) << i;
        EXPECT_EQ(readFile(paths[i] + u".bak"_s) == original, !isBackupReplaced) << i;
        EXPECT_EQ(pdfText(paths[i], 1).count(u"Stamp"_s), created) << i;
    }
}

} // namespace
} // namespace quillfern
