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
    // A job that replaces the file between two looks would make one place seem two, but its folder and name
    // stay the same.
    const auto isEntry = [&](const FilePath& path) {
        return path == target || (path.name() == target.name() && isSameFile(path.parent(), target.parent()));
    };
    const FilePath resolved = resolvedPath(source);
    if (isEntry(source) || isEntry(resolved)) return true;
    const auto place = filePlace(target);
    return place && (place == filePlace(source) || place == filePlace(resolved));
}

DocumentTarget::DocumentTarget(const FilePath& source, const FilePath& target, bool isBackupFile,
                               const std::optional<FileVersion>& expected, CopyRules rules)
    : source_(source), path_(target), rules_(std::move(rules)),
      isInPlace_(rules_.mayReplace && quillfern::isInPlace(source, target)), isBackupFile_(isBackupFile)
{
    if (isInPlace_) {
        path_ = resolvedPath(source);
        const auto present = fileVersion(source);
        if (expected && present && !present->hasBytesOf(*expected))
            throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure",
                                            "Another program or another job has changed the file since this "
                                            "job began. The file was left as it is."));
    } else if (rules_.mayReplace) {
        store::AtomicFile::requireReplaceable(target);
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

void DocumentTarget::removeEarlierCopy() const
{
    if (isInPlace_ || !rules_.mayReplace) return;
    if (!rules_.workFolder.isEmpty()) {
        // A link below the output folder may lead the path out of it.
        const QByteArray folder = resolvedPath(path_.parent()).bytes() + '/';
        if (!folder.startsWith(resolvedPath(rules_.workFolder).bytes() + '/')) return;
    }
    removeFile(path_);
}

std::unique_ptr<store::AtomicFile> DocumentTarget::newFile(bool isHashed) const
{
    const bool isBeside = isInPlace_ || rules_.workFolder.isEmpty();
    auto file = std::make_unique<store::AtomicFile>(path_, isBeside ? path_.parent() : rules_.workFolder);
    if (isHashed) file->hashBytes();
    return file;
}

void DocumentTarget::addHashes(store::AtomicFile& file, FileOutcome& outcome,
                               const std::stop_token& stop) const
{
    if (!file.isHashed()) return;
    const auto& copied = file.copiedBytes();
    outcome.copySha256 = file.sha256(stop);
    outcome.sourceSha256 = copied && copied->size == version_->size
                               ? copied->sha256
                               : store::Sha256::ofFile(descriptor_, version_->size, stop);
}

void DocumentTarget::prepare(store::AtomicFile& file, const std::stop_token& stop)
{
    requireSameSource(); // without a descriptor there is no version either
    const auto attributes = store::FileAttributes::of(descriptor_);
    if (isInPlace_)
        file.takeAttributes(attributes);
    else
        file.limitAccess(attributes.access());
    file.flush();
    if (isInPlace_ && isBackupFile_) prepareBackup(stop);
    throwIfCancelled(stop);
}

std::optional<Reason> DocumentTarget::commit(store::AtomicFile& file, const std::stop_token& stop,
                                             const CopyMove& move)
{
    requireSameSource(); // and so the attributes are still the source's
    file.prepareCommit();
    if (isInPlace_) {
        // A second job that waits here finds another file under the name afterwards.
        store::lockOpenFile(descriptor_, source_, patience, stop);
        requireSameSource();
        if (backup_) commitBackup(stop);
    }
    // Once the earlier backup is replaced nothing is given up any more.
    if (!isInPlace_ || !isBackupFile_) throwIfCancelled(stop);
    try {
        requireSameSource();
        move ? move(file) : file.commit();
    } catch (const Failure& failure) {
        if (!remark_) throw;
        throw Failure(failure.reasons().followedBy(*remark_)); // the earlier backup is gone all the same
    }
    return remark_;
}

namespace {

FilePath backupPath(const FilePath& source)
{
    return source.parent().child(source.name() + QStringLiteral(".bak"));
}

} // namespace

void DocumentTarget::prepareBackup(const std::stop_token& stop)
{
    backup_ = std::make_unique<store::AtomicFile>(backupPath(source_));
    // requireSameSource() has seen that there is a version.
    backup_->copyFrom(descriptor_, version_->size, stop);
    backup_->takeAttributes(store::FileAttributes::of(descriptor_), true);
    backup_->flush();
}

void DocumentTarget::commitBackup(const std::stop_token& stop)
{
    const FilePath path = backupPath(source_);
    backup_->prepareCommit();
    throwIfCancelled(stop);
    requireSameSource(); // or the backup would hold what was not stamped
    const bool replaces = isNameTaken(path);
    backup_->commit();
    backup_.reset();
    if (!replaces) return;
    remark_ = Reason(QT_TRANSLATE_NOOP("quillfern::Failure", "The earlier backup %1 was replaced."),
                     {path.readable()});
    logNotice(QStringLiteral("%1: %2").arg(source_.readable(), remark_->logged));
}

} // namespace quillfern
