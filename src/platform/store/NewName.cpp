#include "platform/store/NewName.h"

#include "platform/system/Failure.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace quillfern::store {

bool takeNewName(const QByteArray& from, int folder, const QByteArray& to, const FilePath& path)
{
    if (::renameat2(AT_FDCWD, from.constData(), folder, to.constData(), RENAME_NOREPLACE) == 0) return true;
    if (errno == EEXIST) return false;
    // Some network file systems only know links.
    if (::linkat(AT_FDCWD, from.constData(), folder, to.constData(), 0) == 0) {
        ::unlink(from.constData());
        return true;
    }
    if (errno == EEXIST) return false;
    throw Failure::fromErrno(
        {QT_TRANSLATE_NOOP("quillfern::Failure", "%1 cannot be written."), {path.readable()}}, errno);
}

} // namespace quillfern::store
