#include "batch/DocumentInWork.h"

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

StampedDocument processDocument(const char* pattern, const FilePath& source, JobRun& run,
                                const std::function<void(StampedDocument&)>& stamp)
{
    StampedDocument document;
    document.source = source;
    document.failurePattern = pattern;
    if (fileKind(source) == FileKind::Missing) {
        document.outcome = FileOutcome::without(
            FileStatus::Failed, QT_TRANSLATE_NOOP("quillfern::Failure", "The file is not there any more."));
        return document;
    }
    run.beginUpdate();
    try {
        stamp(document);
        if (document.copy) {
            document.place->prepare(*document.copy, run.abandoned());
            document.place->addHashes(*document.copy, document.outcome, run.abandoned());
        }
    } catch (...) {
        document.fail();
    }
    run.cancelUpdate();
    document.numbers = run.numbers();
    return document;
}

} // namespace quillfern
