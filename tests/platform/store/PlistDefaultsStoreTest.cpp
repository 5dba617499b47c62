#include "platform/store/PlistDefaultsStore.h"

#include "platform/store/FileLock.h"
#include "platform/store/PropertyList.h"
#include "platform/system/Failure.h"
#include "platform/system/FileFacts.h"
#include "platform/system/NativePath.h"
#include "support/Fakes.h"
#include "support/Tools.h"

#include <QThread>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillfern::store {
namespace {

const QString storeName = u"Orvane/Quillfern1.plist"_s;

class PlistDefaults : public testing::Test
{
  protected:
    const Scratch scratch;
    const FakeFolders folders{scratch.path()};
};

std::optional<QString> textIn(const DefaultsStore& store, const char* key)
{
    const auto value = store.value(QString::fromLatin1(key));
    if (!value || !value->as<QString>()) return std::nullopt;
    return *value->as<QString>();
}

TEST_F(PlistDefaults, KeepsValuesFromRunToRun)
{
    PlistDefaultsStore first(folders);
    EXPECT_FALSE(first.value(u"A"_s));
    first.setValue(u"A"_s, u"one"_s);
    EXPECT_EQ(textIn(first, "A"), u"one"_s);
    EXPECT_FALSE(isNameTaken(first.path())) << "written before the flush";
    first.flush();
    EXPECT_EQ(first.path(), asPath(scratch.path(storeName)));
    EXPECT_EQ(textIn(PlistDefaultsStore(folders), "A"), u"one"_s);
    // A password may be in it.
    EXPECT_EQ(QFile::permissions(first.path().text()) & (QFile::ReadGroup | QFile::ReadOther),
              QFile::Permissions());
    EXPECT_EQ(
        QDir(scratch.path(u"Orvane"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        (QStringList{u".Quillfern1.lock"_s, u"Quillfern1.plist"_s}))
        << "something was left behind";
}

TEST_F(PlistDefaults, TakesItsFileAwayFromOthers)
{
    for (const auto& [before, after] : {std::pair(0644U, 0600U), std::pair(0666U, 0600U),
                                        std::pair(0600U, 0600U), std::pair(0440U, 0400U)}) {
        const QByteArray path = nativePath(scratch.write(storeName, writePropertyList(Record())));
        ASSERT_EQ(::chmod(path.constData(), before), 0);
        PlistDefaultsStore store(folders);
        store.setValue(u"A"_s, u"secret"_s);
        store.flush();
        struct stat status = {};
        ASSERT_EQ(::stat(path.constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, after) << std::oct << before;
        EXPECT_EQ(textIn(PlistDefaultsStore(folders), "A"), u"secret"_s);
        QFile::remove(scratch.path(storeName));
    }
}

TEST_F(PlistDefaults, SetsAnUnreadableFileAside)
{
    const QByteArray spoilt = "<?xml version=\"1.0\"?><plist><dict><key>SETTINGS</key>";
    for (int round = 1; round <= 2; ++round) {
        scratch.write(storeName, spoilt);
        PlistDefaultsStore store(folders);
        EXPECT_FALSE(store.value(u"SETTINGS"_s));
        EXPECT_EQ(readFile(scratch.path(storeName)), spoilt) << "changed by reading it";
        store.setValue(u"A"_s, u"new"_s);
        store.flush();
        EXPECT_EQ(textIn(PlistDefaultsStore(folders), "A"), u"new"_s);
        EXPECT_EQ(readFile(scratch.path(storeName + u".unreadable-%1"_s.arg(round))), spoilt);
    }
}

TEST_F(PlistDefaults, FollowsALink)
{
    const QString real = scratch.write(u"elsewhere/q.plist"_s, writePropertyList(Record()));
    QDir().mkpath(scratch.path(u"Orvane"_s));
    ASSERT_TRUE(QFile::link(real, scratch.path(storeName)));
    PlistDefaultsStore store(folders);
    store.setValue(u"A"_s, u"x"_s);
    store.flush();
    EXPECT_TRUE(QFileInfo(scratch.path(storeName)).isSymLink());
    EXPECT_EQ(readPropertyListFile(asPath(real)).text(u"A"_s), u"x"_s);
}

TEST_F(PlistDefaults, TellsWhenItCannotWrite)
{
    scratch.write(u"Orvane"_s, "a file where the folder should be");
    PlistDefaultsStore blocked{FakeFolders(scratch.path())};
    EXPECT_THROW(blocked.flush(), Failure);
    PlistDefaultsStore homeless{FakeFolders(QString())};
    EXPECT_THROW(homeless.flush(), Failure);
    EXPECT_EQ(readFile(scratch.path(u"Orvane"_s)), "a file where the folder should be");
}

TEST_F(PlistDefaults, WaitsForWhoeverHoldsTheLockButNotForEver)
{
    const QString path = scratch.path(u"lock"_s);
    {
        const FileLock held(asPath(path));
        EXPECT_THROW(FileLock(asPath(path), 20), Failure);
    }
    EXPECT_NO_THROW(FileLock(asPath(path), 20));
    EXPECT_THROW(FileLock(asPath(scratch.path(u"no/folder/lock"_s))), Failure);
}

TEST_F(PlistDefaults, ProgramsThatWriteAtOnceLeaveAWholeFile)
{
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
                    store.setValue(u"P%1"_s.arg(program), round);
                    store.setValue(u"BULK%1"_s.arg(program), QString(20'000, u'x'));
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
        EXPECT_EQ(all.integer32(u"P%1"_s.arg(program)), rounds);
}

} // namespace
} // namespace quillfern::store
