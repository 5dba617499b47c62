#include "platform/store/PlistDefaultsStore.h"

#include "platform/store/FileLock.h"
#include "platform/store/PropertyList.h"
#include "platform/system/Failure.h"
#include "platform/system/FileFacts.h"
#include "platform/system/NativePath.h"
#include "support/Fakes.h"
#include "support/Tools.h"

#include <QDir>
#include <QFileInfo>
#include <QThread>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillfern::store {
namespace {

const QString storeName = QStringLiteral("Orvane/Quillfern1.plist");

std::optional<QString> textIn(const DefaultsStore& store, const char* key)
{
    const auto value = store.value(QString::fromLatin1(key));
    if (!value || !value->as<QString>()) return std::nullopt;
    return *value->as<QString>();
}

TEST(PlistDefaultsStore, KeepsValuesFromRunToRun)
{
    const Scratch scratch;
    const FakeFolders folders(scratch.path());
    PlistDefaultsStore first(folders);
    EXPECT_FALSE(first.value(QStringLiteral("A")));
    first.setValue(QStringLiteral("A"), QStringLiteral("one"));
    EXPECT_EQ(textIn(first, "A"), QStringLiteral("one"));
    EXPECT_FALSE(isNameTaken(first.path())) << "written before the flush";
    first.flush();
    EXPECT_EQ(first.path(), asPath(scratch.path(storeName)));
    EXPECT_EQ(textIn(PlistDefaultsStore(folders), "A"), QStringLiteral("one"));
    // A password may be in it.
    EXPECT_EQ(QFile::permissions(first.path().text()) & (QFile::ReadGroup | QFile::ReadOther),
              QFile::Permissions());
    EXPECT_EQ(QDir(scratch.path(QStringLiteral("Orvane")))
                  .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              (QStringList{QStringLiteral(".Quillfern1.lock"), QStringLiteral("Quillfern1.plist")}))
        << "something was left behind";
}

TEST(PlistDefaultsStore, TakesItsFileAwayFromOthers)
{
    const Scratch scratch;
    const FakeFolders folders(scratch.path());
    for (const auto& [before, after] : {std::pair(0644U, 0600U), std::pair(0666U, 0600U),
                                        std::pair(0600U, 0600U), std::pair(0440U, 0400U)}) {
        const QByteArray path = nativePath(scratch.write(storeName, writePropertyList(Record())));
        ASSERT_EQ(::chmod(path.constData(), before), 0);
        PlistDefaultsStore store(folders);
        store.setValue(QStringLiteral("A"), QStringLiteral("secret"));
        store.flush();
        struct stat status = {};
        ASSERT_EQ(::stat(path.constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, after) << std::oct << before;
        EXPECT_EQ(textIn(PlistDefaultsStore(folders), "A"), QStringLiteral("secret"));
        QFile::remove(scratch.path(storeName));
    }
}

TEST(PlistDefaultsStore, KeepsWhatAnotherProgramWroteMeanwhile)
{
    const Scratch scratch;
    const FakeFolders folders(scratch.path());
    PlistDefaultsStore mine(folders);
    PlistDefaultsStore theirs(folders);
    theirs.setValue(QStringLiteral("THEIRS"), QStringLiteral("t"));
    theirs.flush();
    mine.setValue(QStringLiteral("MINE"), QStringLiteral("m"));
    mine.flush();
    const PlistDefaultsStore later(folders);
    EXPECT_EQ(textIn(later, "THEIRS"), QStringLiteral("t"));
    EXPECT_EQ(textIn(later, "MINE"), QStringLiteral("m"));
}

TEST(PlistDefaultsStore, SetsAnUnreadableFileAside)
{
    const Scratch scratch;
    const FakeFolders folders(scratch.path());
    const QByteArray spoilt = "<?xml version=\"1.0\"?><plist><dict><key>SETTINGS</key>";
    for (int round = 1; round <= 2; ++round) {
        scratch.write(storeName, spoilt);
        PlistDefaultsStore store(folders);
        EXPECT_FALSE(store.value(QStringLiteral("SETTINGS")));
        EXPECT_EQ(readFile(scratch.path(storeName)), spoilt) << "changed by reading it";
        store.setValue(QStringLiteral("A"), QStringLiteral("new"));
        store.flush();
        EXPECT_EQ(textIn(PlistDefaultsStore(folders), "A"), QStringLiteral("new"));
        EXPECT_EQ(readFile(scratch.path(storeName + QStringLiteral(".unreadable-%1").arg(round))), spoilt);
    }
}

TEST(PlistDefaultsStore, FollowsALink)
{
    const Scratch scratch;
    const FakeFolders folders(scratch.path());
    const QString real = scratch.write(QStringLiteral("elsewhere/q.plist"), writePropertyList(Record()));
    QDir().mkpath(scratch.path(QStringLiteral("Orvane")));
    ASSERT_TRUE(QFile::link(real, scratch.path(storeName)));
    PlistDefaultsStore store(folders);
    store.setValue(QStringLiteral("A"), QStringLiteral("x"));
    store.flush();
    EXPECT_TRUE(QFileInfo(scratch.path(storeName)).isSymLink());
    EXPECT_EQ(readPropertyListFile(asPath(real)).text(QStringLiteral("A")), QStringLiteral("x"));
}

TEST(PlistDefaultsStore, TellsWhenItCannotWrite)
{
    const Scratch scratch;
    scratch.write(QStringLiteral("Orvane"), "a file where the folder should be");
    PlistDefaultsStore blocked{FakeFolders(scratch.path())};
    EXPECT_THROW(blocked.flush(), Failure);
    PlistDefaultsStore homeless{FakeFolders(QString())};
    EXPECT_THROW(homeless.flush(), Failure);
    EXPECT_EQ(readFile(scratch.path(QStringLiteral("Orvane"))), "a file where the folder should be");
}

TEST(PlistDefaultsStore, WaitsForWhoeverHoldsTheLockButNotForEver)
{
    const Scratch scratch;
    const QString path = scratch.path(QStringLiteral("lock"));
    {
        const FileLock held(asPath(path));
        EXPECT_THROW(FileLock(asPath(path), 20), Failure);
    }
    EXPECT_NO_THROW(FileLock(asPath(path), 20));
    EXPECT_THROW(FileLock(asPath(scratch.path(QStringLiteral("no/folder/lock")))), Failure);
}

TEST(PlistDefaultsStore, ProgramsThatWriteAtOnceLeaveAWholeFile)
{
    const Scratch scratch;
    const FakeFolders folders(scratch.path());
    constexpr int programs = 4;
    constexpr int rounds = 25;
    std::vector<pid_t> children;
    for (int program = 0; program < programs; ++program) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            int status = 0;
            try {
                PlistDefaultsStore store(folders);
                for (int round = 1; round <= rounds; ++round) {
                    store.setValue(QStringLiteral("P%1").arg(program), round);
                    store.setValue(QStringLiteral("BULK%1").arg(program), QString(20'000, u'x'));
                    store.flush();
                    // A process that polls for the lock must find it free from time to time.
                    QThread::msleep(10);
                }
            } catch (const Failure&) {
                status = 1;
            }
            ::_exit(status);
        }
        children.push_back(child);
    }
    // A program that reads the store meanwhile finds a whole file.
    int looks = 0;
    for (std::size_t ended = 0; ended < children.size();) {
        if (QFileInfo::exists(scratch.path(storeName))) {
            EXPECT_NO_THROW(static_cast<void>(readPropertyListFile(asPath(scratch.path(storeName)))));
            ++looks;
        }
        int status = 0;
        if (::waitpid(children[ended], &status, WNOHANG) == children[ended]) {
            EXPECT_EQ(status, 0);
            ++ended;
        }
        QThread::msleep(2);
    }
    EXPECT_GT(looks, 0);
    const Record all = readPropertyListFile(asPath(scratch.path(storeName)));
    for (int program = 0; program < programs; ++program)
        EXPECT_EQ(all.integer32(QStringLiteral("P%1").arg(program)), rounds);
}

} // namespace
} // namespace quillfern::store
