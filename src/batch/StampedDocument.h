#pragma once

#include "batch/DocumentTarget.h"
#include "batch/FileOutcome.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/FilePath.h"

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace quillfern {

/// A document that a processor is done with: a copy that is on the disk but has no name yet, or the outcome
/// of a document that got no copy. Nothing that has a name has changed so far; an object that is destroyed
/// without commit() leaves nothing behind. One thread at a time.
struct StampedDocument
{
    FilePath source;
    const char* failurePattern = "%@";       ///< of the log line for a failure, with "%@" for the reason
    FileOutcome outcome;                     ///< Created as long as the copy can be committed
    std::unique_ptr<DocumentTarget> place;   ///< none when nothing may be touched
    std::unique_ptr<store::AtomicFile> copy; ///< none when there is no copy
    /// The numbers on the pages that were stamped, whatever became of the document.
    std::optional<NumbersUsed> numbers;
    /// Something was short that other documents in work may have held.
    bool isShortage = false;

    /// Moves the copy into place, and returns what has become of the document. Without a copy, an earlier
    /// job's copy at the target is removed, but never one of this job (`isTargetOfThisJob`), and none for a
    /// document that was given up. When something is short, `makeRoom` is called, and as long as it returns
    /// true the move is tried again. To be called once.
    [[nodiscard]] FileOutcome commit(bool isTargetOfThisJob = false, const std::stop_token& stop = {},
                                     const CopyMove& move = {}, const std::function<bool()>& makeRoom = {});

    /// Makes a failed outcome of the exception now being handled, and writes it to the system log.
    void fail();
};

} // namespace quillfern
