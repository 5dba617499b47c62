#pragma once

#include "platform/system/Failure.h"
#include "platform/system/FileIdentity.h"
#include "platform/system/FilePath.h"

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

/// The way of one stamped document to its target, and what keeps its source from harm. Made before the source
/// is read; commit() when the whole document is written. One thread.
///
/// A target that is not the source's own place is removed when the object is made, unless this job has
/// written the target itself. In place, the new file takes over owner, permissions and attributes of the
/// source, and with `isBackupFile` the source as it was stamped is copied beside itself under its name with
/// "bak" appended before it is replaced.
class DocumentTarget
{
  public:
    /// `expected` is the version that the source had when the job began; in place, a source that was written
    /// to since is refused. Throws Failure then, or when the target is a folder, device or pipe.
    DocumentTarget(const FilePath& source, const FilePath& target, bool isBackupFile,
                   const std::optional<FileVersion>& expected, bool isTargetOfThisJob = false);
    ~DocumentTarget();
    DocumentTarget(const DocumentTarget&) = delete;
    DocumentTarget& operator=(const DocumentTarget&) = delete;

    /// Where to write: in place, the file that a link leads to.
    [[nodiscard]] const FilePath& path() const { return path_; }

    /// Whether nothing will be left of the source as it was.
    [[nodiscard]] bool isReplacedForGood() const { return isInPlace_ && !isBackupFile_; }

    /// Moves the document, which was written to path(), into place. Throws Failure, and nothing is changed,
    /// when the source has become another since this object was made, and when no backup can be made; throws
    /// Cancelled. Returns what is to be said of the copy.
    [[nodiscard]] std::optional<Reason> commit(store::AtomicFile& file, const std::stop_token& stop);

  private:
    void requireSameSource() const;
    [[nodiscard]] std::optional<Reason> makeBackup(const std::stop_token& stop) const;

    FilePath source_;
    FilePath path_;
    bool isInPlace_;
    bool isBackupFile_;
    int descriptor_ = -1; ///< of the source; -1 when it cannot be opened
    std::optional<FileVersion> version_;
};

} // namespace quillfern
