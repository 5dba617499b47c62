#include "platform/store/FolderBelow.h"

#include "platform/system/Failure.h"
#include "platform/system/NativePath.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillfern::store {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

} // namespace

FolderBelow::FolderBelow(const FilePath& root, const QStringList& names)
    : path_(root), descriptor_(::open(root.bytes().constData(), folderFlags))
{
    if (descriptor_ < 0)
        throw Failure::fromErrno(
            {QT_TRANSLATE_NOOP("quillfern::Failure", "The folder %1 cannot be opened."), {root.readable()}},
            errno);
    try {
        for (const QString& name : names)
            enter(name);
    } catch (...) {
        ::close(descriptor_);
        throw;
    }
}

FolderBelow::~FolderBelow()
{
    ::close(descriptor_);
}

void FolderBelow::enter(const QString& name)
{
    const QByteArray bytes = nativePath(name);
    const FilePath next = path_.child(name);
    if (bytes.isEmpty() || bytes == "." || bytes == ".." || bytes.contains('/') || bytes.contains('\0'))
        throw Failure({QT_TRANSLATE_NOOP("quillfern::Failure", "%1 is not below the output folder."),
                       {printable(readableName(path_.text() + u'/' + name))}});
    if (::mkdirat(descriptor_, bytes.constData(), 0777) != 0 && errno != EEXIST)
        throw Failure::fromErrno(
            {QT_TRANSLATE_NOOP("quillfern::Failure", "The folder %1 cannot be made."), {next.readable()}},
            errno);
    const int entered = ::openat(descriptor_, bytes.constData(), folderFlags | O_NOFOLLOW);
    if (entered < 0 && (errno == ELOOP || errno == ENOTDIR))
        throw Failure({QT_TRANSLATE_NOOP("quillfern::Failure",
                                         "%1 is a link or a file, where a folder for copies has to be."),
                       {next.readable()}});
    if (entered < 0)
        throw Failure::fromErrno(
            {QT_TRANSLATE_NOOP("quillfern::Failure", "The folder %1 cannot be opened."), {next.readable()}},
            errno);
    ::close(descriptor_);
    descriptor_ = entered;
    path_ = next;
}

} // namespace quillfern::store
