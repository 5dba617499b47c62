#include "filelist/FolderWalk.h"

#include "filelist/FileListSupport.h"
#include "platform/store/AtomicFile.h"

#include <filesystem>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillfern {
namespace {

class WalkedFolder : public testing::Test
{
  protected:
    void make(const QByteArray& name) const
    {
        const QString path = scratch_.path() + u'/' + pathText(name);
        std::filesystem::create_directories(
            std::filesystem::path(nativePath(path).toStdString()).parent_path());
        store::AtomicFile::writeWhole(asPath(path), "x");
    }

    [[nodiscard]] QByteArray at(const char* name) const { return nativePath(scratch_.path()) + '/' + name; }

    /// The paths that a walk finds, relative to the folder.
    [[nodiscard]] QList<QByteArray> found(bool includeSubfolders = true, int stopAfter = 1000) const
    {
        QList<QByteArray> paths;
        FolderWalk walk(
            [&](const FilePath& path) { paths.append(path.bytes().mid(scratch_.path().size() + 1)); },
            [&] { return paths.size() < stopAfter; });
        walk.walk(asPath(scratch_.path()), includeSubfolders);
        return paths;
    }

    Scratch scratch_;
};

using Paths = QList<QByteArray>;

TEST_F(WalkedFolder, TakesAllowedTypesInOrderFilesBeforeSubfolders)
{
    for (const char* name : {"b10.pdf", "B9.PDF", "a.TIFF", "c.Pdf", "notes.txt", "pdf", "sub 10/z.gif",
                             "sub 2/y.jpeg", "sub 2/deep/x.png", "Sub 2.d/w.bmp", "empty/"})
        if (!QByteArray(name).endsWith('/')) make(name);
    QDir().mkpath(scratch_.path(u"folder.pdf"_s));
    EXPECT_EQ(found(false), (Paths{"a.TIFF", "B9.PDF", "b10.pdf"}));
    EXPECT_EQ(found(), (Paths{"a.TIFF", "B9.PDF", "b10.pdf", "sub 2/y.jpeg", "sub 2/deep/x.png",
                              "Sub 2.d/w.bmp", "sub 10/z.gif"}));
}

TEST_F(WalkedFolder, PassesHiddenThingsAndPackagesOver)
{
    for (const char* name : {".hidden.pdf", ".folder/a.pdf", "Notes.app/a.pdf", "Old.PHOTOSLIBRARY/a.pdf",
                             "letter.rtfd/a.pdf", "app/a.pdf", "my.application/b.pdf", "v1.0/c.pdf"})
        make(name);
    EXPECT_EQ(found(), (Paths{"app/a.pdf", "my.application/b.pdf", "v1.0/c.pdf"}));
}

TEST_F(WalkedFolder, LinksToFoldersAreNotFollowedLinksToFilesAreTaken)
{
    const Scratch elsewhere;
    elsewhere.write(u"other.pdf"_s, "x");
    make("sub/a.pdf");
    ASSERT_EQ(::symlink("..", at("sub/loop").constData()), 0);
    ASSERT_EQ(::symlink(nativePath(elsewhere.path()).constData(), at("away.pdf").constData()), 0);
    ASSERT_EQ(::symlink("sub/a.pdf", at("link.pdf").constData()), 0);
    ASSERT_EQ(::symlink("nowhere", at("broken.pdf").constData()), 0);
    ASSERT_EQ(::symlink("self.pdf", at("self.pdf").constData()), 0);
    ASSERT_EQ(::mkfifo(at("pipe.pdf").constData(), 0600), 0);
    // A broken link counts as a file that cannot be read: it is listed instead of being left out silently.
    EXPECT_EQ(found(), (Paths{"broken.pdf", "link.pdf", "self.pdf", "sub/a.pdf"}));
}

TEST_F(WalkedFolder, AFolderThatCannotBeReadIsPassedOver)
{
    make("a.pdf");
    make("locked/b.pdf");
    make("z/c.pdf");
    ASSERT_EQ(::chmod(at("").constData(), 0755), 0);
    ASSERT_EQ(::chmod(at("locked").constData(), 0), 0);
    // The superuser can read every folder, so the walk runs as the user nobody; for other users setfsuid()
    // changes nothing.
    constexpr uid_t nobody = 65534;
    const auto self = static_cast<uid_t>(::setfsuid(nobody));
    const Paths paths = found();
    ::setfsuid(self);
    ::chmod(at("locked").constData(), 0700);
    EXPECT_EQ(paths, (Paths{"a.pdf", "z/c.pdf"}));
}

TEST_F(WalkedFolder, EndsWhenToldAndFindsNothingInNothing)
{
    for (int i = 0; i < 20; ++i)
        make("d" + QByteArray::number(i % 4) + "/f" + QByteArray::number(i) + ".pdf");
    EXPECT_EQ(found(true, 7).size(), 7);
    EXPECT_EQ(found().size(), 20);
    FolderWalk walk([](const FilePath&) { ADD_FAILURE(); }, [] { return true; });
    walk.walk(asPath(scratch_.path(u"gone"_s)), true);
    walk.walk(asPath(scratch_.path(u"d0/f0.pdf"_s)), true);
}

} // namespace
} // namespace quillfern
