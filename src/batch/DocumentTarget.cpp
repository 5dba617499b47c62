#include "batch/DocumentTarget.h"

#include "platform/store/AtomicFile.h"
#include "platform/store/FileLock.h"
#include "platform/system/Cancellation.h"
#include "platform/system/FileAccess.h"
#include "platform/system/FileFacts.h"
#include "platform/system/LogLine.h"

#include <unistd.h>

namespace quillfern {

namespace {

/// Another run holds a source for the time of its own commit, which may copy a large backup.
constexpr int patience = 60'000; // milliseconds

} // namespace

bool isInPlace(const FilePath& source, const FilePath& target)
{
    // A job that replaces the file between two looks at one path would make it seem two places.
    if (target == source || target == resolvedPath(source)) return true;
    const auto place = filePlace(target);
    return place && (place == filePlace(source) || place == filePlace(resolvedPath(source)));
}

DocumentTarget::DocumentTarget(const FilePath& source, const FilePath& target, bool isBackupFile,
                               const std::optional<FileVersion>& expected, bool isTargetOfThisJob)
    : source_(source), path_(target), isInPlace_(isInPlace(source, target)), isBackupFile_(isBackupFile)
{
    if (isInPlace_) {
        path_ = resolvedPath(source);
        const auto present = fileVersion(source);
        if (expected && present && !present->hasBytesOf(*expected))
            throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure",
                                            "Another program or another job has changed the file since this "
                                            "job began. The file was left as it is."));
    } else {
        store::AtomicFile::requireReplaceable(target);
        if (!isTargetOfThisJob) removeFile(target);
    }
    try {
        descriptor_ = openRegularFile(source);
        version_ = fileVersion(descriptor_);
    } catch (const Failure&) {
        // Whoever reads the document says why.
    }
}

DocumentTarget::~DocumentTarget()
{
    if (descriptor_ >= 0) ::close(descriptor_); // and the lock goes
}

void DocumentTarget::requireSameSource() const
{
    const auto present = fileVersion(source_);
    if (!present && fileKind(source_) == FileKind::Missing)
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure",
                                        "Another program has removed or renamed the file while it was "
                                        "stamped. Nothing was written."));
    // In place it is the file itself that is replaced, wherever a link to the file may lead by now.
    const bool isThere = !isInPlace_ || fileVersion(path_) == version_;
    if (!version_ || present != version_ || !isThere)
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure",
                                        "Another program or another job has changed the file while it was "
                                        "stamped. Nothing was written."));
}

std::optional<Reason> DocumentTarget::commit(store::AtomicFile& file, const std::stop_token& stop)
{
    requireSameSource(); // without a descriptor there is no version either
    const auto attributes = store::FileAttributes::of(descriptor_);
    if (isInPlace_)
        file.takeAttributes(attributes);
    else
        file.limitAccess(attributes.access());
    file.prepareCommit();
    std::optional<Reason> remark;
    if (isInPlace_) {
        // A second job that waits here finds another file under the name afterwards.
        store::lockOpenFile(descriptor_, source_, patience, stop);
        requireSameSource();
        if (isBackupFile_) remark = makeBackup(stop);
    }
    // Once the earlier backup is replaced nothing is given up any more.
    if (!isInPlace_ || !isBackupFile_) throwIfCancelled(stop);
    try {
        requireSameSource();
        file.commit();
    } catch (const Failure& failure) {
        if (!remark) throw;
        throw Failure(failure.reasons().followedBy(*remark)); // the earlier backup is gone all the same
    }
    return remark;
}

std::optional<Reason> DocumentTarget::makeBackup(const std::stop_token& stop) const
{
    const FilePath path = source_.parent().child(source_.name() + QStringLiteral(".bak"));
    store::AtomicFile backup(path);
    backup.copyFrom(descriptor_, version_->size,
                    stop); // requireSameSource() has seen that there is a version
    backup.takeAttributes(store::FileAttributes::of(descriptor_), true);
    backup.prepareCommit();
    throwIfCancelled(stop);
    requireSameSource(); // or the backup would hold what was not stamped
    const bool replaces = isNameTaken(path);
    backup.commit();
    if (!replaces) return std::nullopt;
    Reason remark(QT_TRANSLATE_NOOP("quillfern::Failure", "The earlier backup %1 was replaced."),
                  {path.readable()});
    logNotice(QStringLiteral("%1: %2").arg(source_.readable(), remark.logged));
    return remark;
}

} // namespace quillfern
