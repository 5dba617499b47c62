#include "platform/system/FilePath.h"

#include "platform/system/NativePath.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace quillfern {

namespace {

using SystemText = std::unique_ptr<char, decltype(&std::free)>;

/// Turns an absolute path (without "." and without "/" at its end; "" for the root) into that of its parent,
/// as the system resolves a ".."; appends "/.." where the system does not say.
void climb(QByteArray& path)
{
    if (path.isEmpty()) return; // the root is its own parent
    struct stat status = {};
    const bool known = ::lstat(path.constData(), &status) == 0;
    const bool missing = !known && (errno == ENOENT || errno == ENOTDIR);
    QByteArray target = path;
    if (known && S_ISLNK(status.st_mode)) {
        const SystemText real(::realpath(path.constData(), nullptr), &std::free);
        target = real ? QByteArray(real.get()) : QByteArray();
    }
    if (path.endsWith("/..") || target.isEmpty() || (!known && !missing))
        path += "/..";
    else
        path = target.left(target.lastIndexOf('/'));
}

QByteArray cleaned(const QByteArray& absolute)
{
    QByteArray path;
    path.reserve(absolute.size());
    for (qsizetype from = 0; from < absolute.size();) {
        qsizetype end = absolute.indexOf('/', from);
        if (end < 0) end = absolute.size();
        const QByteArrayView part = QByteArrayView(absolute).sliced(from, end - from);
        from = end + 1;
        if (part == "..")
            climb(path);
        else if (!part.isEmpty() && part != ".")
            path.append('/').append(part);
    }
    return path.isEmpty() ? QByteArray("/") : path;
}

QByteArray currentFolder()
{
    const SystemText folder(::getcwd(nullptr, 0), &std::free);
    return folder ? QByteArray(folder.get()) : QByteArray();
}

} // namespace

FilePath FilePath::fromBytes(const QByteArray& bytes)
{
    FilePath path;
    if (bytes.isEmpty() || bytes.contains('\0')) return path;
    path.bytes_ = cleaned(bytes.startsWith('/') ? bytes : currentFolder() + '/' + bytes);
    return path;
}

FilePath FilePath::fromText(const QString& text)
{
    return fromBytes(nativePath(text));
}

FilePath FilePath::fromUrl(const QUrl& url)
{
    if (!url.isLocalFile()) return {};
    QByteArray bytes = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    const QString host = url.host();
    if (!host.isEmpty() && host != QLatin1String("localhost")) bytes.prepend("//" + host.toUtf8());
    return bytes.startsWith('/') ? fromBytes(bytes) : FilePath();
}

QString FilePath::text() const
{
    return pathText(bytes_);
}

QString FilePath::readable() const
{
    return printable(readableName(text()));
}

QUrl FilePath::url() const
{
    if (bytes_.isEmpty()) return {};
    if (QByteArrayView(bytes_).isValidUtf8()) return QUrl::fromLocalFile(QString::fromUtf8(bytes_));
    return QUrl::fromEncoded("file://" + bytes_.toPercentEncoding("/"), QUrl::StrictMode);
}

QString FilePath::name() const
{
    return pathText(bytes_.mid(bytes_.lastIndexOf('/') + 1));
}

QString FilePath::stem() const
{
    const QString whole = name();
    const qsizetype dot = whole.lastIndexOf(u'.');
    return dot > 0 ? whole.left(dot) : whole;
}

FilePath FilePath::parent() const
{
    if (bytes_.endsWith("/..")) return child(QStringLiteral(".."));
    FilePath folder;
    folder.bytes_ = bytes_.left(std::max<qsizetype>(bytes_.lastIndexOf('/'), isEmpty() ? 0 : 1));
    return folder;
}

FilePath FilePath::child(const QString& name) const
{
    return isEmpty() ? FilePath() : fromBytes(bytes_ + '/' + nativePath(name));
}

QString FilePath::extensionOf(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.mid(dot + 1) : QString();
}

QList<FilePath> filePaths(const QList<QUrl>& urls)
{
    QList<FilePath> paths;
    for (const QUrl& url : urls)
        if (FilePath path = FilePath::fromUrl(url); !path.isEmpty()) paths.append(std::move(path));
    return paths;
}

} // namespace quillfern
