#include "platform/store/AtomicFile.h"

#include "platform/system/Failure.h"
#include "platform/system/FileIdentity.h"
#include "support/Tools.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quillfern::store {
namespace {

QStringList everythingIn(const Scratch& scratch)
{
    return QDir(scratch.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

TEST(AtomicFileTest, AppearsWholeOrNotAtAll)
{
    Scratch scratch;
    const QString path = scratch.write(QStringLiteral("kept.txt"), "before");
    QByteArray large(3'000'000, 'x');
    {
        AtomicFile file(asPath(path));
        file.write(large);
        file.write("end", 3);
        EXPECT_EQ(readFile(path), QByteArray("before")) << "not before the commit";
    }
    EXPECT_EQ(readFile(path), QByteArray("before")) << "never without one";
    EXPECT_EQ(everythingIn(scratch).size(), 1);
    {
        AtomicFile file(asPath(path));
        file.write(large);
        file.write("end", 3);
        file.commit();
    }
    EXPECT_EQ(readFile(path), large + "end");
    EXPECT_EQ(everythingIn(scratch).size(), 1);
}

TEST(AtomicFileTest, KeepsPermissionsAndReplacesLinks)
{
    Scratch scratch;
    const QString path = scratch.write(QStringLiteral("secret.txt"), "a");
    ::chmod(QFile::encodeName(path).constData(), 0640);
    const QString link = scratch.path(QStringLiteral("link.txt"));
    ASSERT_TRUE(QFile::link(path, link));
    AtomicFile::writeWhole(asPath(path), "b");
    struct stat status = {};
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
    EXPECT_TRUE(isSameFile(asPath(path), asPath(link)));
    AtomicFile::writeWhole(asPath(link), "c");
    EXPECT_FALSE(isSameFile(asPath(path), asPath(link)));
    EXPECT_EQ(readFile(path), QByteArray("b")) << "a link at the target's name leads to somebody else's file";
}

TEST(AtomicFileTest, RefusesWhatCannotBeWritten)
{
    Scratch scratch;
    for (const QString& path :
         {scratch.path(QStringLiteral("no/folder/file")), QStringLiteral("/proc/version")})
        EXPECT_THROW(AtomicFile::writeWhole(asPath(path), "x"), Failure) << path.toStdString();
    ASSERT_TRUE(QDir().mkpath(scratch.path(QStringLiteral("folder/full"))));
    EXPECT_THROW(AtomicFile::writeWhole(asPath(scratch.path(QStringLiteral("folder"))), "x"), Failure);
    EXPECT_EQ(everythingIn(scratch), QStringList{QStringLiteral("folder")});
}

TEST(AtomicFileTest, CopiesWhole)
{
    Scratch scratch;
    const QByteArray bytes(2'500'000, 'y');
    const QString source = scratch.write(QStringLiteral("a"), bytes);
    copyFileAtomically(asPath(source), asPath(scratch.path(QStringLiteral("b"))));
    EXPECT_EQ(readFile(scratch.path(QStringLiteral("b"))), bytes);
    EXPECT_THROW(copyFileAtomically(asPath(scratch.path(QStringLiteral("gone"))), asPath(source)), Failure);
    EXPECT_EQ(readFile(source), bytes);
}

TEST(FileIdentityTest, SeesThroughLinksAndDetours)
{
    Scratch scratch;
    const QString file = scratch.write(QStringLiteral("one/file"), "x");
    const QString same = scratch.write(QStringLiteral("two/file"), "x");
    ASSERT_TRUE(QFile::link(scratch.path(QStringLiteral("one")), scratch.path(QStringLiteral("linked"))));
    EXPECT_TRUE(isSameFile(asPath(file), asPath(scratch.path(QStringLiteral("linked/file")))));
    EXPECT_TRUE(isSameFile(asPath(file), asPath(scratch.path(QStringLiteral("two/../one/./file")))));
    EXPECT_FALSE(isSameFile(asPath(file), asPath(same)));
    EXPECT_FALSE(isSameFile(asPath(scratch.path(QStringLiteral("gone"))),
                            asPath(scratch.path(QStringLiteral("gone")))));
}

} // namespace
} // namespace quillfern::store
