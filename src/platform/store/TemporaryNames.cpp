#include "platform/store/TemporaryNames.h"

#include "platform/system/FolderEntries.h"

#include <QCryptographicHash>
#include <QRandomGenerator>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace quillfern::store {

namespace {

QByteArray hostMark()
{
    char name[256] = {};
    ::gethostname(name, sizeof name - 1);
    return QCryptographicHash::hash(name, QCryptographicHash::Sha256).first(4).toHex();
}

/// When a process began, in ticks since the machine did; empty where there is no such process or the system
/// does not say.
QByteArray startOf(qlonglong process)
{
    const QByteArray path = "/proc/" + QByteArray::number(process) + "/stat";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.constData(), "re"),
                                                               &std::fclose);
    if (!file) return {};
    char text[1024];
    const QByteArray facts(text, static_cast<qsizetype>(std::fread(text, 1, sizeof text, file.get())));
    // The program's name stands in parentheses and may hold blanks and parentheses itself.
    constexpr int startAfterName = 20;
    return facts.mid(facts.lastIndexOf(')') + 1).split(' ').value(startAfterName);
}

bool isNumber(const QByteArray& text)
{
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool isHex(const QByteArray& text, qsizetype size)
{
    const auto isDigit = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); };
    return text.size() == size && std::all_of(text.begin(), text.end(), isDigit);
}

constexpr const char* prefix = ".quillfern-";
constexpr const char* suffix = ".tmp";

/// Whether the name is one of ours, from this machine, and its process has ended.
bool isAbandoned(const QByteArray& name)
{
    if (!name.startsWith(prefix) || !name.endsWith(suffix)) return false;
    const auto length = name.size() - qstrlen(prefix) - qstrlen(suffix);
    const QList<QByteArray> parts =
        name.mid(static_cast<qsizetype>(qstrlen(prefix)), static_cast<qsizetype>(length)).split('-');
    if (parts.size() != 4 || parts[0] != hostMark() || !isNumber(parts[1]) || !isNumber(parts[2]) ||
        !isHex(parts[3], 16))
        return false;
    bool ok = false;
    const qlonglong process = parts[1].toLongLong(&ok);
    if (!ok || process <= 0) return false;
    const QByteArray start = startOf(process);
    if (!start.isEmpty()) return start != parts[2];
    return ::kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH;
}

} // namespace

QByteArray temporaryName()
{
    const qlonglong process = ::getpid();
    QByteArray start = startOf(process);
    if (start.isEmpty()) start = "0";
    const QByteArray random = QByteArray::number(QRandomGenerator::system()->generate64(), 16);
    return prefix + hostMark() + '-' + QByteArray::number(process) + '-' + start + '-' +
           random.rightJustified(16, '0') + suffix;
}

void removeLeftovers(const FilePath& folder)
{
    constexpr std::time_t day = 24 * 60 * 60;
    const std::time_t now = std::time(nullptr);
    for (const FolderEntry& entry : folderEntries(folder, [] { return true; })) {
        if (!entry.isFile || !entry.name.startsWith(QLatin1String(prefix))) continue;
        const FilePath path = folder.child(entry.name);
        struct stat status = {};
        if (::lstat(path.bytes().constData(), &status) != 0 || !S_ISREG(status.st_mode) ||
            status.st_uid != ::geteuid() || now - status.st_mtime < day)
            continue;
        if (isAbandoned(entry.name.toLatin1())) ::unlink(path.bytes().constData());
    }
}

} // namespace quillfern::store
