#include "batch/DocumentInWork.h"

#include "platform/system/Cancellation.h"
#include "platform/system/FileAccess.h"
#include "platform/system/FileFacts.h"
#include "platform/system/LogLine.h"

#include <QIODevice>

namespace quillfern {

Reason whyNotOpened(const FilePath& source, const Reason& said)
{
    QByteArray start;
    try {
        start = readRegularFile(source)->read(1024);
    } catch (const Failure&) {
        return said;
    }
    if (start.isEmpty()) return QT_TRANSLATE_NOOP("quillfern::Failure", "The file is empty.");
    if (start.contains("%PDF-")) return said;
    return Reason(QT_TRANSLATE_NOOP("quillfern::Failure", "This is not a PDF document.")).with(said.logged);
}

FileOutcome processDocument(const char* pattern, const FilePath& source, JobRun& run,
                            const std::function<FileOutcome()>& stamp)
{
    if (fileKind(source) == FileKind::Missing)
        return FileOutcome::without(
            FileStatus::Failed, QT_TRANSLATE_NOOP("quillfern::Failure", "The file is not there any more."));
    FileOutcome outcome;
    run.beginUpdate();
    try {
        outcome = stamp();
    } catch (const Cancelled& given) {
        outcome = FileOutcome::without(FileStatus::Cancelled, given.reasons());
    } catch (...) {
        const Reason reason = currentReason();
        logLine(failureLine(pattern, QStringLiteral("%1: %2").arg(source.readable(), reason.logged)));
        outcome = FileOutcome::without(FileStatus::Failed, reason);
    }
    run.cancelUpdate();
    if (outcome.status == FileStatus::Failed) outcome.lostNumbers = run.numbers();
    return outcome;
}

} // namespace quillfern
