#include "batch/PdfProcessor.h"

#include "batch/DocumentInWork.h"
#include "batch/TargetPreparation.h"
#include "config/PageArea.h"
#include "platform/pdf/PdfDocument.h"
#include "platform/pdf/PdfWriter.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Cancellation.h"
#include "platform/system/Folders.h"
#include "platform/system/LogLine.h"
#include "stamps/PageCompositor.h"

namespace quillfern {

FileOutcome PdfProcessor::processPDF(const FilePath& source, const FilePath& target, const QString&,
                                     JobRun& run)
{
    return processDocument("Error in [processPDF:] : %@", source, run,
                           [&] { return stamp(source, target, run); });
}

FileOutcome PdfProcessor::stamp(const FilePath& source, const FilePath& target, JobRun& run)
{
    const FilePath path = prepareTarget(source, target, job_.isBackupFile);
    std::unique_ptr<pdf::PdfDocument> document;
    try {
        document = pdf::PdfDocument::open(source, run.abandoned());
    } catch (const Cancelled&) {
        throw;
    } catch (const Failure& failure) {
        // The file counts as processed, and no copy is written.
        logLine(QStringLiteral("%1 cannot be opened as a PDF document: %2")
                    .arg(source.readable(), failure.reason()));
        return FileOutcome::without(
            FileStatus::CreatedNothing,
            Reason::quoting(QT_TRANSLATE_NOOP("quillfern::Failure", "no output: %1"), failure.reasons()));
    }
    document->setCreator(getAppTitle());
    const int pages = stampPages(*document, run);
    document->keepFirstPages(pages);
    store::AtomicFile file(path);
    document->save(writer_, file);
    file.commit();
    return {FileStatus::Created, document->remark(), pages, run.numbers()};
}

int PdfProcessor::stampPages(pdf::PdfDocument& document, JobRun& run)
{
    const PageCompositor compositor(job_.stamps, shaper_);
    const int count = document.pageCount();
    const std::int64_t total = run.totalPages > 0 ? run.totalPages : count;
    for (int i = 1; i <= count; ++i) {
        if (!run.isUpdating()) return i - 1; // the pages done so far make the document
        if (isInPageRange(job_, i)) {
            if (hasChosenParity(job_, i)) {
                const auto page = document.stampPage(i - 1, shaper_);
                const QRectF area = lengthRect(job_, document.pageSize(i - 1));
                compositor.drawPDFNumber(*page, area, run.stamps(), total);
                page->finish();
                run.numberUsed();
            } else {
                document.blankPage(i - 1);
            }
        }
        run.pageDone();
    }
    return count;
}

} // namespace quillfern
