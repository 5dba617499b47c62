#include "platform/system/FileAccess.h"

#include "platform/system/Failure.h"
#include "platform/system/NativePath.h"

#include <QFile>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace quillfern {

QString resolvedPath(const QString& path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(nativePath(path).constData(), nullptr),
                                                           &std::free);
    return real ? pathText(QByteArray(real.get())) : QString();
}

bool removeFile(const QString& path)
{
    return ::unlink(nativePath(path).constData()) == 0 || errno == ENOENT;
}

int openRegularFile(const QString& path)
{
    const QString name = readableName(path);
    const int descriptor = ::open(nativePath(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        throw Failure::fromErrno({QT_TRANSLATE_NOOP("quillfern::Failure", "cannot read %1"), {name}}, errno);
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) return descriptor;
    ::close(descriptor);
    throw Failure({QT_TRANSLATE_NOOP("quillfern::Failure", "cannot read %1: not a regular file"), {name}});
}

void openRegularFile(QFile& file, const QString& path)
{
    const int descriptor = openRegularFile(path);
    if (file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) return;
    ::close(descriptor);
    throw Failure({QT_TRANSLATE_NOOP("quillfern::Failure", "cannot read %1: %2"),
                   {readableName(path), file.errorString()}});
}

} // namespace quillfern
