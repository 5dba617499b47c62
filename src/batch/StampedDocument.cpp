#include "batch/StampedDocument.h"

#include "platform/system/Cancellation.h"
#include "platform/system/LogLine.h"

namespace quillfern {

void StampedDocument::fail()
{
    copy.reset();
    try {
        throw;
    } catch (const Cancelled& given) {
        outcome = FileOutcome::without(FileStatus::Cancelled, given.reasons());
    } catch (...) {
        const Reason reason = currentReason();
        isShortage = isCurrentExceptionShortage();
        logLine(failureLine(failurePattern, QStringLiteral("%1: %2").arg(source.readable(), reason.logged)));
        outcome = FileOutcome::without(FileStatus::Failed, reason);
    }
}

FileOutcome StampedDocument::commit(bool isTargetOfThisJob, const std::stop_token& stop, const CopyMove& move,
                                    const std::function<bool()>& makeRoom)
{
    for (bool isTried = false; copy && !isTried;) {
        isTried = true;
        try {
            const std::optional<Reason> ofBackup = place->commit(*copy, stop, move);
            if (outcome.isWarning())
                logNotice(QStringLiteral("%1: %2").arg(source.readable(), outcome.remark->logged));
            if (ofBackup) outcome.add(*ofBackup);
        } catch (...) {
            if (makeRoom && isCurrentExceptionShortage() && makeRoom())
                isTried = false;
            else
                fail();
        }
    }
    const bool isWithout =
        outcome.status == FileStatus::Failed || outcome.status == FileStatus::CreatedNothing;
    if (place && isWithout && !isTargetOfThisJob) place->removeEarlierCopy();
    if (outcome.status == FileStatus::Failed) outcome.lostNumbers = numbers;
    copy.reset();
    place.reset();
    return outcome;
}

} // namespace quillfern
