#include "platform/store/KeptFile.h"

#include "platform/store/AtomicFile.h"
#include "platform/store/TemporaryNames.h"
#include "platform/system/Failure.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace quillfern::store {

namespace {

FilePath numbered(const FilePath& path, int number)
{
    if (number == 1) return path;
    QString name = path.stem() + QStringLiteral("-%1").arg(number);
    if (!path.extension().isEmpty()) name += u'.' + path.extension();
    return path.parent().child(name);
}

/// Gives the file the name unless another file has it. In one step, so that two programs never take one name.
bool takeName(const QByteArray& from, const QByteArray& to)
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0) return true;
    if (errno == EEXIST) return false;
    // Some network file systems only know links.
    if (::link(from.constData(), to.constData()) == 0) {
        ::unlink(from.constData());
        return true;
    }
    if (errno == EEXIST) return false;
    throw Failure::fromErrno(QStringLiteral("%1 cannot be written.").arg(FilePath::fromBytes(to).readable()),
                             errno);
}

} // namespace

FilePath writeKeepingEarlier(const FilePath& path, const QByteArray& bytes)
{
    const FilePath fresh = path.parent().child(QString::fromLatin1(temporaryName()));
    AtomicFile::writeWhole(fresh, bytes);
    int number = 1;
    try {
        while (!takeName(fresh.bytes(), numbered(path, number).bytes()))
            ++number;
    } catch (const Failure&) {
        ::unlink(fresh.bytes().constData());
        throw;
    }
    if (number == 1) return path;
    const FilePath aside = numbered(path, number);
    const bool exchanged = ::renameat2(AT_FDCWD, aside.bytes().constData(), AT_FDCWD,
                                       path.bytes().constData(), RENAME_EXCHANGE) == 0;
    return exchanged ? path : aside;
}

} // namespace quillfern::store
