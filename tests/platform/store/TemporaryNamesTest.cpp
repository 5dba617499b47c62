#include "platform/store/TemporaryNames.h"

#include "support/Tools.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillfern::store {
namespace {

/// The number of a process that has ended.
QByteArray endedProcess()
{
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    int status = 0;
    ::waitpid(child, &status, 0);
    return QByteArray::number(child);
}

TEST(TemporaryNamesTest, OnlyOurOwnOldLeftoversGo)
{
    const Scratch scratch;
    const QByteArray own = temporaryName();
    ASSERT_NE(own, temporaryName());
    const QList<QByteArray> parts = own.split('-'); // ".quillfern", host, process, start, "random.tmp"
    ASSERT_EQ(parts.size(), 5);
    const auto named = [&](const QByteArray& host, const QByteArray& process, const QByteArray& start,
                           const QByteArray& end) {
        return QByteArrayList{parts[0], host, process, start, end}.join('-');
    };
    const QByteArray ended = endedProcess();
    const Rows<const char*, QByteArray, bool, bool> cases = {
        {"of a process that ended", named(parts[1], ended, parts[3], parts[4]), true, true},
        {"of an earlier process of a number", named(parts[1], parts[2], "1", parts[4]), true, true},
        {"written lately", named(parts[1], ended, "7", parts[4]), false, false},
        {"of a running process", own, true, false},
        {"of another machine", named("00000000", ended, parts[3], parts[4]), true, false},
        {"another ending", named(parts[1], ended, parts[3], parts[4] + ".pdf"), true, false},
        {"no random part", named(parts[1], ended, parts[3], "x.tmp"), true, false},
        {"no process", named(parts[1], "", parts[3], parts[4]), true, false},
        {"somebody's file", ".quillfern-notes.tmp", true, false},
    };
    for (const auto& [what, name, isOld, goes] : cases) {
        const QByteArray path = QFile::encodeName(scratch.write(QFile::decodeName(name), "x"));
        const std::time_t then = std::time(nullptr) - (isOld ? 25 : 23) * 60 * 60;
        const std::timespec times[2] = {{then, 0}, {then, 0}};
        ASSERT_EQ(::utimensat(AT_FDCWD, path.constData(), times, 0), 0);
    }
    removeLeftovers(asPath(scratch.path()));
    for (const auto& [what, name, isOld, goes] : cases)
        EXPECT_EQ(QFile::exists(scratch.path(QFile::decodeName(name))), !goes) << what;
}

} // namespace
} // namespace quillfern::store
