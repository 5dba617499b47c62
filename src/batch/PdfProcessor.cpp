#include "batch/PdfProcessor.h"

#include "batch/DocumentInWork.h"
#include "batch/DocumentTarget.h"
#include "config/PageArea.h"
#include "platform/pdf/PdfDocument.h"
#include "platform/pdf/PdfWriter.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Cancellation.h"
#include "platform/system/Folders.h"
#include "platform/system/LogLine.h"
#include "stamps/PageCompositor.h"

namespace quillfern {

FileOutcome PdfProcessor::processPDF(const FilePath& source, const FilePath& target, const QString& password,
                                     JobRun& run)
{
    return processDocument("Error in [processPDF:] : %@", source, run,
                           [&] { return stamp(source, target, password, run); });
}

std::unique_ptr<pdf::PdfDocument> PdfProcessor::open(const FilePath& source, const QString& password,
                                                     const JobRun& run) const
{
    const JobOptions& options = job_.options;
    // A document that will be written anew is read whole first: nothing of it may be lost.
    const bool isWrittenAnew = job_.isWrittenAnew || blanksOtherPages(job_);
    pdf::Passwords passwords{{}, options.unlock};
    if (options.usePasswords) passwords.texts = {password, options.password};
    auto document =
        pdf::PdfDocument::open(source, run.abandoned(),
                               isWrittenAnew ? pdf::ReadAhead::Everything : pdf::ReadAhead::Pages, passwords);
    if (options.visiblePage) document->setPageArea(pdf::PageArea::Visible);
    return document;
}

FileOutcome PdfProcessor::stamp(const FilePath& source, const FilePath& target, const QString& password,
                                JobRun& run)
{
    job_.options.pageList.requireReadable();
    const StampValues stamps = filledIn(job_.stamps, fillInsFor(source, run.started));
    const PageCompositor compositor(stamps, shaper_);
    compositor.requireFont(); // before anything is changed
    DocumentTarget place(source, target, job_.isBackupFile, run.sourceVersion, run.isTargetOfThisJob);
    std::unique_ptr<pdf::PdfDocument> document;
    try {
        document = open(source, password, run);
    } catch (const Cancelled&) {
        throw;
    } catch (const Failure& failure) {
        // The file counts as processed, and no copy is written.
        const Reason reason = whyNotOpened(source, failure.reasons());
        logLine(QStringLiteral("%1: %2").arg(source.readable(), reason.logged));
        FileOutcome outcome = FileOutcome::without(
            FileStatus::CreatedNothing,
            reason.followedBy(QT_TRANSLATE_NOOP("quillfern::Failure", "No copy was made.")));
        outcome.isLocked = dynamic_cast<const pdf::LockedDocument*>(&failure) != nullptr;
        return outcome;
    }
    if (job_.options.unlock) document->unlock();
    if (job_.refusesSigned && document->isSigned())
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The document is digitally signed."));
    if (document->loss() && place.isReplacedForGood())
        throw Failure(document->loss()->followedBy(QT_TRANSLATE_NOOP(
            "quillfern::Failure", "It was not stamped in place, because there would be no backup.")));
    document->setCreator(getAppTitle());
    const int pages = stampPages(*document, compositor, run);
    document->keepFirstPages(pages);
    store::AtomicFile file(place.path());
    document->save(writer_, file);
    throwIfCancelled(run.abandoned());
    FileOutcome outcome{FileStatus::Created, document->loss(), pages, run.numbers()};
    outcome.isIncomplete = outcome.remark.has_value();
    const std::optional<Reason> ofBackup = place.commit(file, run.abandoned());
    outcome.breaksSignature = document->breaksSignature();
    if (outcome.breaksSignature)
        outcome.add(
            QT_TRANSLATE_NOOP("quillfern::Failure", "The document's digital signature no longer holds."));
    if (outcome.isWarning())
        logNotice(QStringLiteral("%1: %2").arg(source.readable(), outcome.remark->logged));
    if (ofBackup) outcome.add(*ofBackup);
    return outcome;
}

int PdfProcessor::stampPages(pdf::PdfDocument& document, const PageCompositor& compositor, JobRun& run)
{
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
            } else if (blanksOtherPages(job_)) {
                document.blankPage(i - 1);
            }
        }
        run.pageDone();
    }
    return count;
}

} // namespace quillfern
