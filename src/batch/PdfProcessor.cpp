#include "batch/PdfProcessor.h"

#include "batch/PageSelection.h"
#include "batch/TargetPreparation.h"
#include "config/Margins.h"
#include "platform/pdf/PdfDocument.h"
#include "platform/pdf/PdfWriter.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/FileFacts.h"
#include "platform/system/Folders.h"
#include "platform/system/Guarded.h"
#include "stamps/PageCompositor.h"

namespace quillfern {

bool PdfProcessor::processPDF(const FilePath& source, const FilePath& target, const QString&,
                              std::int64_t totalPages)
{
    problem_.clear();
    if (fileKind(source) == FileKind::Missing) {
        problem_ = Reason(QT_TRANSLATE_NOOP("quillfern::Failure", "the file is not there any more")).shown;
        return false;
    }
    bool done = false;
    try {
        done = stamp(source, target, totalPages);
    } catch (...) {
        const Reason reason = currentReason();
        problem_ = reason.shown;
        logLine(failureLine("Error in [processPDF:] : %@", reason.logged));
    }
    number_.cancelUpdate();
    return done;
}

bool PdfProcessor::stamp(const FilePath& source, const FilePath& target, std::int64_t totalPages)
{
    const FilePath path = prepareTarget(source, target, number_.isBackupFile);
    number_.beginUpdate();
    std::unique_ptr<PdfDocument> document;
    try {
        document = PdfDocument::open(source);
    } catch (const Failure& failure) {
        // Counts as processed, and nothing is written.
        problem_ =
            Reason(QT_TRANSLATE_NOOP("quillfern::Failure", "no output: %1"), {failure.reasons().shown})
                .shown;
        logLine(QStringLiteral("%1 cannot be opened as a PDF document: %2")
                    .arg(source.readable(), failure.reason()));
        return true;
    }
    document->setCreator(getAppTitle());
    document->keepFirstPages(stampPages(*document, totalPages));
    AtomicFile file(path);
    document->save(writer_, file);
    file.commit();
    return true;
}

int PdfProcessor::stampPages(PdfDocument& document, std::int64_t totalPages)
{
    const PageCompositor compositor(number_.stamps, shaper_);
    const Margins margins(number_);
    const int count = document.pageCount();
    const std::int64_t total = totalPages > 0 ? totalPages : count;
    for (int i = 1; i <= count; ++i) {
        if (!number_.isUpdating()) return i - 1; // told to stop: the pages done so far make the document
        if (isInPageRange(number_, i)) {
            if (hasChosenParity(number_, i)) {
                const auto page = document.stampPage(i - 1, shaper_);
                const QRectF area = margins.lengthRect(document.pageSize(i - 1));
                compositor.drawPDFNumber(*page, area, number_.numberCounter, total);
                page->finish();
                number_.numberCounter += number_.numberSteps();
            } else {
                document.blankPage(i - 1);
            }
        }
        if (progress_) progress_();
    }
    return count;
}

} // namespace quillfern
