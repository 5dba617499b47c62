// Files that get a new name in a folder below another one, and the hashes of their bytes.

#include "platform/store/AtomicFile.h"

#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"
#include "support/Tools.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>
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
    const int source = openRegularFile(asPath(scratch.write(QStringLiteral("source"), large + "tail")));
    const FilePath target = asPath(scratch.path(QStringLiteral("target")));
    struct Case
    {
        const char* name;
        std::function<void(AtomicFile&)> write;
        QByteArray bytes;
        QByteArray copied; ///< what the file begins with as a copy
    };
    const std::vector<Case> cases = {
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
    for (const Case& c : cases) {
        AtomicFile file(target);
        file.hashBytes();
        c.write(file);
        EXPECT_EQ(file.sha256(), sha256Of(c.bytes)) << c.name;
        const auto copied = file.copiedBytes();
        EXPECT_EQ(copied.has_value(), !c.copied.isEmpty()) << c.name;
        if (copied) {
            EXPECT_EQ(copied->size, c.copied.size()) << c.name;
            EXPECT_EQ(copied->sha256, sha256Of(c.copied)) << c.name;
        }
        file.commit();
        EXPECT_EQ(readFile(target.text()), c.bytes) << c.name;
    }
    ::close(source);
}

TEST(NewNames, ReplaceOnlyWhereTheyMayAndStayBelowTheirFolder)
{
    const Scratch scratch;
    scratch.write(QStringLiteral("out/a/taken"), "earlier");
    scratch.write(QStringLiteral("out/file"), "x");
    ASSERT_TRUE(QDir().mkpath(scratch.path(QStringLiteral("elsewhere"))));
    ASSERT_TRUE(
        QFile::link(scratch.path(QStringLiteral("elsewhere")), scratch.path(QStringLiteral("out/link"))));
    ASSERT_TRUE(
        QFile::link(scratch.path(QStringLiteral("gone")), scratch.path(QStringLiteral("out/dangling"))));
    const FilePath out = asPath(scratch.path(QStringLiteral("out")));
    struct Case
    {
        QStringList folders;
        const char* name;
        bool mayReplace;
        const char* outcome;
    };
    const std::vector<Case> cases = {
        {{}, "new", false, "done"},
        {{QStringLiteral("a")}, "taken", false, "taken"},
        {{QStringLiteral("a")}, "taken", true, "done"},
        {{QStringLiteral("b"), QStringLiteral("c d")}, "new", true, "done"},
        {{}, "dangling", false, "taken"},
        {{}, "a", false, "taken"},
        {{}, "a", true, "refused"}, // a folder is never replaced
        {{QStringLiteral("link")}, "x", true, "refused"},
        {{QStringLiteral("file")}, "x", true, "refused"},
        {{QStringLiteral("..")}, "x", true, "refused"},
        {{QStringLiteral("a/../..")}, "x", true, "refused"},
        {{QString()}, "x", true, "refused"},
    };
    for (const Case& c : cases) {
        AtomicFile file(out.child(QStringLiteral("planned")), out);
        file.write("copy", 4);
        std::string outcome;
        try {
            const FolderBelow folder(out, c.folders);
            outcome = file.commitInto(folder, QString::fromLatin1(c.name), c.mayReplace) ? "done" : "taken";
            if (outcome == "done") {
                EXPECT_EQ(readFile(folder.path().child(QString::fromLatin1(c.name)).text()), "copy");
            }
        } catch (const Failure&) {
            outcome = "refused";
        }
        EXPECT_EQ(outcome, c.outcome) << c.folders.join(u'/').toStdString() << " " << c.name;
        if (outcome == "taken") { // and another name will do
            EXPECT_TRUE(file.commitInto(FolderBelow(out, {}),
                                        QStringLiteral("other-") + QLatin1String(c.name), false));
        }
    }
    EXPECT_TRUE(QDir(scratch.path(QStringLiteral("elsewhere"))).isEmpty());
    EXPECT_FALSE(QFile::exists(scratch.path(QStringLiteral("x"))));
    EXPECT_TRUE(QFileInfo(scratch.path(QStringLiteral("out/dangling"))).isSymLink());
    EXPECT_EQ(QDir(out.text()).entryList({QStringLiteral(".quillfern*")}, QDir::Hidden | QDir::Files).size(),
              0);
}

} // namespace
} // namespace quillfern::store
