#include "platform/store/AtomicFile.h"

#include "platform/system/Failure.h"
#include "platform/system/FileFacts.h"
#include "platform/system/FileIdentity.h"
#include "support/Tools.h"

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
    const QString path = scratch.write(u"kept.txt"_s, "before");
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
    const QString path = scratch.write(u"secret.txt"_s, "a");
    ::chmod(QFile::encodeName(path).constData(), 0640);
    const QString link = scratch.path(u"link.txt"_s);
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
    for (const QString& path : {scratch.path(u"no/folder/file"_s), u"/proc/version"_s})
        EXPECT_THROW(AtomicFile::writeWhole(asPath(path), "x"), Failure) << path.toStdString();
    ASSERT_TRUE(QDir().mkpath(scratch.path(u"folder/full"_s)));
    EXPECT_THROW(AtomicFile::writeWhole(asPath(scratch.path(u"folder"_s)), "x"), Failure);
    EXPECT_EQ(everythingIn(scratch), QStringList{u"folder"_s});
}

TEST(AtomicFileTest, NeverTakesThePlaceOfWhatIsNoFile)
{
    Scratch scratch;
    const QString pipe = scratch.path(u"pipe"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const QString link = scratch.path(u"link"_s);
    ASSERT_TRUE(QFile::link(pipe, link));
    const QString folder = scratch.path(u"folder"_s);
    ASSERT_TRUE(QDir().mkpath(folder));
    const std::pair<QString, const char*> cases[] = {{pipe, "device, pipe or socket"},
                                                     {link, "device, pipe or socket"},
                                                     {u"/dev/null"_s, "device, pipe or socket"},
                                                     {folder, "it is a folder"}};
    for (const auto& [path, words] : cases) {
        const auto open = [file = asPath(path)] { AtomicFile{file}; };
        EXPECT_THAT(open, testing::ThrowsMessage<Failure>(testing::HasSubstr(words)));
    }
    AtomicFile late(asPath(scratch.path(u"late"_s)));
    ASSERT_EQ(::mkfifo(QFile::encodeName(scratch.path(u"late"_s)).constData(), 0600), 0);
    EXPECT_THROW(late.commit(), Failure) << "made while the file was written";
    EXPECT_EQ(fileKind(asPath(pipe)), FileKind::Other);
    EXPECT_EQ(fileKind(asPath(u"/dev/null"_s)), FileKind::Other);
}

TEST(FileIdentityTest, SeesThroughLinksAndDetours)
{
    Scratch scratch;
    const QString file = scratch.write(u"one/file"_s, "x");
    const QString same = scratch.write(u"two/file"_s, "x");
    ASSERT_TRUE(QFile::link(scratch.path(u"one"_s), scratch.path(u"linked"_s)));
    EXPECT_TRUE(isSameFile(asPath(file), asPath(scratch.path(u"linked/file"_s))));
    EXPECT_TRUE(isSameFile(asPath(file), asPath(scratch.path(u"two/../one/./file"_s))));
    EXPECT_FALSE(isSameFile(asPath(file), asPath(same)));
    EXPECT_FALSE(isSameFile(asPath(scratch.path(u"gone"_s)), asPath(scratch.path(u"gone"_s))));
}

TEST(FileIdentityTest, APlaceIsAFolderAndAName)
{
    Scratch scratch;
    const QString file = scratch.write(u"one/file"_s, "x");
    ASSERT_TRUE(QFile::link(scratch.path(u"one"_s), scratch.path(u"linked"_s)));
    ASSERT_TRUE(QFile::link(file, scratch.path(u"one/link"_s)));
    const auto place = [&](const char* name) {
        return filePlace(asPath(scratch.path(QString::fromLatin1(name))));
    };
    EXPECT_TRUE(place("one/file") == place("linked/file"));
    EXPECT_TRUE(place("one/gone") == place("linked/gone"));
    EXPECT_FALSE(place("one/file") == place("one/link")) << "a link is another name";
    EXPECT_FALSE(place("no/folder").has_value());
    ASSERT_EQ(::link(QFile::encodeName(file).constData(),
                     QFile::encodeName(scratch.path(u"one/hard"_s)).constData()),
              0);
    EXPECT_FALSE(place("one/file") == place("one/hard"));
    EXPECT_TRUE(place("one/hard") == place("linked/hard"));
}

} // namespace
} // namespace quillfern::store
