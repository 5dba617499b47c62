#include "platform/store/PlistDefaultsStore.h"

#include "platform/store/AtomicFile.h"
#include "platform/store/FileLock.h"
#include "platform/store/PropertyList.h"
#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"
#include "platform/system/FileFacts.h"
#include "platform/system/Folders.h"
#include "platform/system/LogLine.h"

namespace quillfern::store {

namespace {

/// The file behind all links at `path`, or `path` itself where there is none: a store that is a link to a
/// file elsewhere is written there, and the link stays.
FilePath followed(const FilePath& path)
{
    FilePath target = resolvedPath(path);
    return target.isEmpty() ? path : target;
}

/// Moves a file that cannot be used to the first free name beside it.
void setAside(const FilePath& path)
{
    for (int i = 1; i < 1000; ++i) {
        const FilePath aside = path.parent().child(path.name() + QStringLiteral(".unreadable-%1").arg(i));
        if (isNameTaken(aside)) continue;
        if (!renameFile(path, aside))
            throw Failure(QStringLiteral("the unreadable %1 cannot be moved aside").arg(path.readable()));
        logNotice(QStringLiteral("The settings in %1 could not be read; they were kept as %2")
                      .arg(path.readable(), aside.readable()));
        return;
    }
    throw Failure(QStringLiteral("there are too many unreadable copies of %1").arg(path.readable()));
}

/// Takes the permissions of others from a file that exists; the file written in its place gets the same ones.
/// Best effort: only the owner may do so, and some file systems know no permissions.
void narrowToOwner(const FilePath& path)
{
    struct stat status = {};
    if (::stat(path.bytes().constData(), &status) != 0) return;
    constexpr mode_t others = S_IRWXG | S_IRWXO;
    if ((status.st_mode & others) != 0) ::chmod(path.bytes().constData(), status.st_mode & S_IRWXU);
}

} // namespace

PlistDefaultsStore::PlistDefaultsStore(const Folders& folders)
{
    path_ = folders.configuration().child(QStringLiteral("Orvane/Quillfern1.plist"));
    if (fileKind(path_) == FileKind::Missing) return;
    try {
        values_ = readPropertyListFile(path_);
    } catch (const Failure& failure) {
        logLine(
            QStringLiteral("The settings in %1 cannot be read: %2").arg(path_.readable(), failure.reason()));
    }
}

std::optional<RecordValue> PlistDefaultsStore::value(const QString& key) const
{
    const RecordValue* found = values_.find(key);
    return found ? std::optional(*found) : std::nullopt;
}

void PlistDefaultsStore::setValue(const QString& key, RecordValue value)
{
    values_.set(key, value);
    changes_.set(key, std::move(value));
}

void PlistDefaultsStore::flush()
{
    if (path_.isEmpty()) throw Failure(QStringLiteral("there is no folder for configuration files"));
    const FilePath folder = path_.parent();
    if (!makeFolders(folder))
        throw Failure(QStringLiteral("the folder %1 cannot be created").arg(folder.readable()));
    const FileLock lock(folder.child(QStringLiteral(".Quillfern1.lock")));

    const FilePath target = followed(path_);
    Record merged;
    if (fileKind(target) != FileKind::Missing) {
        narrowToOwner(target);
        try {
            merged = readPropertyListFile(target);
        } catch (const Failure&) {
            setAside(target);
        }
    }
    for (const auto& [key, value] : changes_.entries())
        merged.set(key, value);
    const QByteArray list = writePropertyList(merged);
    AtomicFile file(target);
    file.write(list);
    file.makePrivate();
    file.commit();
    values_ = std::move(merged);
    changes_ = Record();
}

} // namespace quillfern::store
