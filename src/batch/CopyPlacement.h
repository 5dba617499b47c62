#pragma once

#include "batch/Collisions.h"
#include "batch/DocumentTarget.h"
#include "batch/Job.h"
#include "batch/StampedDocument.h"
#include "platform/system/FilePath.h"

#include <QHash>
#include <cstddef>
#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

namespace quillfern {

/// Where the copies of one job go and what becomes of what stands there, as the job's options want. In a job
/// without options every copy goes to the planned target and replaces what is there.
class CopyPlacement
{
  public:
    /// `written` are the copies of the job so far, and the input of each. Both must outlive this object.
    CopyPlacement(const Job& job, const QHash<FilePath, FilePath>& written) : job_(job), written_(written) {}

    /// findCollisions() of the job. For one that replaces nothing, whose files cannot collide, which of the
    /// copies are there already and will be skipped.
    [[nodiscard]] std::vector<Collision> collisions(const std::function<bool()>& goOn) const;

    // For the threads that work on files.

    [[nodiscard]] CopyRules rules() const;
    /// The outcome of a file that is not stamped, because its copy is there.
    [[nodiscard]] static FileOutcome skipped();

    // At a file's turn.

    /// Commits a document that was stamped for the planned `target`, and sets `target` to where the copy is.
    /// `makeRoom` as in StampedDocument::commit().
    [[nodiscard]] FileOutcome commit(StampedDocument& document, std::size_t index, FilePath& target,
                                     const std::stop_token& stop,
                                     const std::function<bool()>& makeRoom) const;

  private:
    void move(store::AtomicFile& file, const FilePath& planned, const CopyName& name, FilePath& target) const;
    void requireNoInput(const FilePath& target) const;

    const Job& job_;
    const QHash<FilePath, FilePath>& written_;
    mutable std::optional<InputPlaces> inputs_; ///< made when a name comes out otherwise than planned
};

} // namespace quillfern
