#include "platform/store/KeptFile.h"

#include "platform/store/AtomicFile.h"
#include "platform/store/NewName.h"
#include "platform/store/TemporaryNames.h"
#include "platform/system/Failure.h"

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

} // namespace

FilePath writeKeepingEarlier(const FilePath& path, const QByteArray& bytes)
{
    const FilePath fresh = path.parent().child(QString::fromLatin1(temporaryName()));
    AtomicFile::writeWhole(fresh, bytes);
    int number = 1;
    try {
        while (!takeNewName(fresh.bytes(), AT_FDCWD, numbered(path, number).bytes(), path))
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
