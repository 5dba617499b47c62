#pragma once

#include "batch/FileOutcome.h"
#include "platform/system/Failure.h"
#include "platform/system/FileIdentity.h"
#include "platform/system/FilePath.h"

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace quillfern {

namespace store {
class AtomicFile;
}

/// Whether a document written to `target` takes the place of its source: the target's folder and name are
/// those of the source, or of the file that the source is a link to. A link at the target that leads to the
/// source is another place, and so is a hard link.
[[nodiscard]] bool isInPlace(const FilePath& source, const FilePath& target);

/// How a copy comes to its name where the job's options decide it.
struct CopyRules
{
    bool mayReplace = true; ///< false: what stands at the target stays, and is never the place to stamp in
    /// Where the copy is written before it has its name; empty: in the target's folder, which is there then.
    FilePath workFolder = {};
};

/// Gives a finished file its name, or leaves it without one. Throws Failure.
using CopyMove = std::function<void(store::AtomicFile&)>;

/// The way of one stamped document to its target, and what keeps its source from harm. Made before the source
/// is read; prepare() when the whole document is written, which changes nothing that has a name; commit()
/// when its turn has come, or removeEarlierCopy() when there is no document. One thread at a time.
///
/// In place, the new file takes over owner, permissions and attributes of the source, and with `isBackupFile`
/// the source as it was stamped is copied beside itself under its name with "bak" appended before it is
/// replaced. Elsewhere an earlier copy is replaced.
class DocumentTarget
{
  public:
    /// `expected` is the version that the source had when the job began; in place, a source that was written
    /// to since is refused. Throws Failure then, or when the target is a folder, device or pipe.
    DocumentTarget(const FilePath& source, const FilePath& target, bool isBackupFile,
                   const std::optional<FileVersion>& expected, CopyRules rules = {});
    ~DocumentTarget();
    DocumentTarget(const DocumentTarget&) = delete;
    DocumentTarget& operator=(const DocumentTarget&) = delete;

    /// Where the document goes: in place, the file that a link leads to.
    [[nodiscard]] const FilePath& path() const { return path_; }
    [[nodiscard]] bool isInPlace() const { return isInPlace_; }
    /// A new file for the document, still without a name; with `isHashed`, its bytes are hashed.
    [[nodiscard]] std::unique_ptr<store::AtomicFile> newFile(bool isHashed) const;

    /// Whether nothing will be left of the source as it was.
    [[nodiscard]] bool isReplacedForGood() const { return isInPlace_ && !isBackupFile_; }

    /// Brings the document, which was written for path(), and the backup to the disk, nameless. Throws
    /// Failure when the source has become another since this object was made, and when no backup can be
    /// made; throws Cancelled.
    void prepare(store::AtomicFile& file, const std::stop_token& stop);
    /// The hashes of the source as it was read and of the prepared document, for a file that is hashed.
    /// Throws Failure and Cancelled.
    void addHashes(store::AtomicFile& file, FileOutcome& outcome, const std::stop_token& stop) const;
    /// Moves the prepared document into place, by `move` where there is one. Throws as prepare() does, and
    /// nothing but the backup is changed then; it can be called again. Returns what is to be said of the
    /// copy.
    [[nodiscard]] std::optional<Reason> commit(store::AtomicFile& file, const std::stop_token& stop,
                                               const CopyMove& move = {});

    /// Removes what stands at a target that is not the source's own place: the copy of an earlier job would
    /// pass for one of this job.
    void removeEarlierCopy() const;

  private:
    void requireSameSource() const;
    void prepareBackup(const std::stop_token& stop);
    void commitBackup(const std::stop_token& stop);

    FilePath source_;
    FilePath path_;
    CopyRules rules_;
    bool isInPlace_;
    bool isBackupFile_;
    int descriptor_ = -1; ///< of the source; -1 when it cannot be opened
    std::optional<FileVersion> version_;
    std::unique_ptr<store::AtomicFile> backup_; ///< prepared and not committed
    std::optional<Reason> remark_;              ///< on the backup that was committed
};

} // namespace quillfern
