// Files that get a new name in a folder below another one, and the hashes of their bytes.

#include "platform/store/AtomicFile.h"

#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"
#include "support/Tools.h"

#include <QCryptographicHash>
#include <unistd.h>

namespace quillfern::store {
namespace {

QByteArray sha256Of(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

TEST(Hashes, AreThoseOfTheWholeFileHoweverItIsWritten)
{
    const Scratch scratch;
    const QByteArray large(3'000'001, 'x');
    const int source = openRegularFile(asPath(scratch.write(u"source"_s, large + "tail")));
    const FilePath target = asPath(scratch.path(u"target"_s));
    // the bytes, and what of them, at the beginning, is a copy
    const Rows<const char*, std::function<void(AtomicFile&)>, QByteArray, QByteArray> cases = {
        {"nothing", [](AtomicFile&) {}, "", ""},
        {"small and large pieces",
         [&](AtomicFile& file) {
             file.write("ab", 2);
             file.write(large);
             file.write("c", 1);
         },
         "ab" + large + "c", ""},
        {"an update behind a copy",
         [&](AtomicFile& file) {
             file.copyFrom(source, large.size());
             file.write("update", 6);
         },
         large + "update", large},
        {"a copy behind something else",
         [&](AtomicFile& file) {
             file.write("%", 1);
             file.copyFrom(source, large.size());
         },
         "%" + large, ""},
        {"a header that comes last, past the object",
         [&](AtomicFile& file) {
             ASSERT_EQ(::lseek(file.descriptor(), 4, SEEK_SET), 4);
             file.write(large);
             ASSERT_EQ(::pwrite(file.descriptor(), "head", 4, 0), 4);
         },
         "head" + large, ""},
    };
    for (const auto& [name, write, bytes, copy] : cases) {
        AtomicFile file(target);
        file.hashBytes();
        write(file);
        EXPECT_EQ(file.sha256(), sha256Of(bytes)) << name;
        const auto copied = file.copiedBytes();
        EXPECT_EQ(copied.has_value(), !copy.isEmpty()) << name;
        EXPECT_TRUE(!copied || (copied->size == copy.size() && copied->sha256 == sha256Of(copy))) << name;
        file.commit();
        EXPECT_EQ(readFile(target.text()), bytes) << name;
    }
    ::close(source);
}

TEST(NewNames, ReplaceOnlyWhereTheyMayAndStayBelowTheirFolder)
{
    const Scratch scratch;
    scratch.write(u"out/a/taken"_s, "earlier");
    scratch.write(u"out/file"_s, "x");
    ASSERT_TRUE(QDir().mkpath(scratch.path(u"elsewhere"_s)));
    ASSERT_TRUE(QFile::link(scratch.path(u"elsewhere"_s), scratch.path(u"out/link"_s)));
    ASSERT_TRUE(QFile::link(scratch.path(u"gone"_s), scratch.path(u"out/dangling"_s)));
    const FilePath out = asPath(scratch.path(u"out"_s));
    // the folders below, the name there, and whether the copy may replace a file
    const Rows<const char*, const char*, bool, const char*> cases = {
        {"", "new", false, "done"},        {"a", "taken", false, "taken"},   {"a", "taken", true, "done"},
        {"b|c d", "new", true, "done"},    {"", "dangling", false, "taken"}, {"", "a", false, "taken"},
        {"", "a", true, "refused"}, // a folder is never replaced
        {"link", "x", true, "refused"},    {"file", "x", true, "refused"},   {"..", "x", true, "refused"},
        {"a/../..", "x", true, "refused"}, {"|", "x", true, "refused"},
    };
    for (const auto& [folders, name, mayReplace, expected] : cases) {
        AtomicFile file(out.child(u"planned"_s), out);
        file.write("copy", 4);
        std::string outcome = "refused";
        try {
            const QString path = QString::fromLatin1(folders);
            const FolderBelow folder(out, path.isEmpty() ? QStringList() : path.split(u'|'));
            outcome = file.commitInto(folder, QString::fromLatin1(name), mayReplace) ? "done" : "taken";
            EXPECT_TRUE(outcome != "done" ||
                        readFile(folder.path().child(QString::fromLatin1(name)).text()) == "copy");
        } catch (const Failure&) {
        }
        EXPECT_EQ(outcome, expected) << folders << " " << name;
        // A name that is taken leaves the file to be given another one.
        EXPECT_TRUE(outcome != "taken" ||
                    file.commitInto(FolderBelow(out, {}), u"other-"_s + QLatin1String(name), false));
    }
    EXPECT_TRUE(QDir(scratch.path(u"elsewhere"_s)).isEmpty());
    EXPECT_FALSE(QFile::exists(scratch.path(u"x"_s)));
    EXPECT_TRUE(QFileInfo(scratch.path(u"out/dangling"_s)).isSymLink());
    EXPECT_EQ(QDir(out.text()).entryList({u".quillfern*"_s}, QDir::Hidden | QDir::Files).size(), 0);
}

} // namespace
} // namespace quillfern::store
