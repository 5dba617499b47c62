#include "batch/PdfProcessor.h"

#include "batch/DocumentInWork.h"
#include "config/PageArea.h"
#include "platform/pdf/PdfDocument.h"
#include "platform/pdf/PdfWriter.h"
#include "platform/system/Cancellation.h"
#include "platform/system/FileIdentity.h"
#include "platform/system/Folders.h"
#include "platform/system/LogLine.h"
#include "stamps/PageCompositor.h"

#include <algorithm>

namespace quillfern {

StampedDocument PdfProcessor::processPDF(const FilePath& source, const FilePath& target,
                                         const QString& password, JobRun& run)
{
    return processDocument("Error in [processPDF:] : %@", source, run,
                           [&](StampedDocument& work) { stamp(work, target, password, run); });
}

namespace {

/// About what a document takes in memory: blocks of the file that are kept, what is known of each page, and
/// the objects of a document that is read whole.
std::int64_t memoryOf(const FilePath& source, int pages, bool isReadWhole)
{
    constexpr std::int64_t mostBlocks = std::int64_t{32} << 20;
    constexpr std::int64_t page = 8 << 10;
    const auto version = fileVersion(source);
    const std::int64_t size = version ? version->size : 0;
    return std::min(size, mostBlocks) + pages * page + (isReadWhole ? size / 4 : 0);
}

} // namespace

bool PdfProcessor::isWrittenAnew() const
{
    return job_.isWrittenAnew || blanksOtherPages(job_);
}

std::unique_ptr<pdf::PdfDocument> PdfProcessor::open(const FilePath& source, const QString& password,
                                                     const JobRun& run) const
{
    const JobOptions& options = job_.options;
    pdf::Passwords passwords{{}, options.unlock};
    if (options.usePasswords) passwords.texts = {password, options.password};
    // A document that will be written anew is read whole first: nothing of it may be lost.
    auto document = pdf::PdfDocument::open(
        source, run.abandoned(), isWrittenAnew() ? pdf::ReadAhead::Everything : pdf::ReadAhead::Pages,
        passwords, codings_);
    if (options.visiblePage) document->setPageArea(pdf::PageArea::Visible);
    return document;
}

void PdfProcessor::stamp(StampedDocument& work, const FilePath& target, const QString& password, JobRun& run)
{
    const FilePath& source = work.source;
    job_.options.pageList.requireReadable();
    const StampValues stamps = filledIn(job_.stamps, fillInsFor(source, run.started));
    const PageCompositor compositor(stamps, shaper_);
    compositor.requireFont(); // before anything is changed
    work.place =
        std::make_unique<DocumentTarget>(source, target, job_.isBackupFile, run.sourceVersion, run.copyRules);
    std::unique_ptr<pdf::PdfDocument> document;
    try {
        document = open(source, password, run);
    } catch (const Cancelled&) {
        throw;
    } catch (const Failure& failure) {
        // The file counts as processed, and no copy is written.
        const Reason reason = whyNotOpened(source, failure.reasons());
        logLine(QStringLiteral("%1: %2").arg(source.readable(), reason.logged));
        work.isShortage = failure.isShortage();
        work.outcome = FileOutcome::without(
            FileStatus::CreatedNothing,
            reason.followedBy(QT_TRANSLATE_NOOP("quillfern::Failure", "No copy was made.")));
        work.outcome.isLocked = dynamic_cast<const pdf::LockedDocument*>(&failure) != nullptr;
        return;
    }
    if (run.memoryNeeded) run.memoryNeeded(memoryOf(source, document->pageCount(), isWrittenAnew()));
    if (job_.options.unlock) document->unlock();
    if (job_.refusesSigned && document->isSigned())
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The document is digitally signed."));
    if (document->loss() && work.place->isReplacedForGood())
        throw Failure(document->loss()->followedBy(QT_TRANSLATE_NOOP(
            "quillfern::Failure", "It was not stamped in place, because there would be no backup.")));
    document->setCreator(getAppTitle());
    const int pages = stampPages(*document, compositor, run);
    document->keepFirstPages(pages);
    work.copy = work.place->newFile(job_.options.index);
    document->save(writer_, *work.copy);
    throwIfCancelled(run.abandoned());
    work.outcome = {FileStatus::Created, document->loss(), pages, run.numbers()};
    work.outcome.isIncomplete = work.outcome.remark.has_value();
    work.outcome.breaksSignature = document->breaksSignature();
    if (work.outcome.breaksSignature)
        work.outcome.add(
            QT_TRANSLATE_NOOP("quillfern::Failure", "The document's digital signature no longer holds."));
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
