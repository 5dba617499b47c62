#include "batch/TiffProcessor.h"

#include "batch/DocumentInWork.h"
#include "config/PageArea.h"
#include "platform/raster/BilevelPixels.h"
#include "platform/raster/PageFeed.h"
#include "platform/raster/RasterWriter.h"
#include "platform/system/Cancellation.h"
#include "platform/system/Failure.h"
#include "stamps/PageCompositor.h"

#include <vector>

namespace quillfern {

namespace {

/// Converts the page to colour when drawing with `ink` needs that: a page of black and white as soon as
/// anything else is drawn on the page, a grey page when a colour is drawn.
void makeRoomFor(drawing::Ink ink, raster::RasterPage& page)
{
    const bool suffices =
        !page.isGrey() || ink <= (page.isBilevel ? drawing::Ink::BlackAndWhite : drawing::Ink::Grey);
    if (suffices) return;
    page.image.convertTo(QImage::Format_RGB888);
    if (page.image.isNull())
        throw Failure::ofMemory(
            QT_TRANSLATE_NOOP("quillfern::Failure", "There is not enough memory for a page of this size."));
    page.isBilevel = false;
    page.colourProfile.clear(); // the profile was for grey pixels
}

/// How many pixels a page of this size in points has in a point.
QSizeF pixelsPerPoint(const QImage& image, const QSizeF& points)
{
    return {image.width() / points.width(), image.height() / points.height()};
}

/// The resolution that gives a page of so many pixels this size in points.
QSizeF dotsPerInch(const QImage& image, const QSizeF& points)
{
    return {image.width() * pointsPerInch / points.width(), image.height() * pointsPerInch / points.height()};
}

/// The pages of a document to write.
std::vector<int> pagesInRange(const JobConfiguration& job, int count)
{
    std::vector<int> pages;
    for (int i = 1; i <= count; ++i)
        if (isInPageRange(job, i)) pages.push_back(i);
    return pages;
}

} // namespace

StampedDocument TiffProcessor::processTIFF(const FilePath& source, const FilePath& target, JobRun& run,
                                           std::int32_t compression)
{
    return processDocument("Error in [processTIFF:] : %@", source, run,
                           [&](StampedDocument& work) { stamp(work, target, run, compression); });
}

void TiffProcessor::stamp(StampedDocument& work, const FilePath& target, JobRun& run,
                          std::int32_t compression)
{
    job_.options.pageList.requireReadable();
    const StampValues stamps = filledIn(job_.stamps, fillInsFor(work.source, run.started));
    const PageCompositor compositor(stamps, shaper_);
    compositor.requireFont(); // before anything is changed
    work.place = std::make_unique<DocumentTarget>(work.source, target, job_.isBackupFile, run.sourceVersion,
                                                  run.copyRules);
    const auto reader = raster::RasterReader::open(work.source, run.abandoned());
    const int count = reader->pageCount();
    const std::int64_t total = run.totalPages > 0 ? run.totalPages : count;
    const std::vector<int> chosen = pagesInRange(job_, count);
    if (chosen.empty()) {
        work.outcome = FileOutcome::without(
            FileStatus::Failed,
            QT_TRANSLATE_NOOP("quillfern::Failure", "No page of the file lies in the page range."));
        return;
    }
    // One page is stamped while others are decoded and encoded; coding takes a page's memory again.
    constexpr double pagesInMemory = 4;
    if (run.memoryNeeded)
        run.memoryNeeded(static_cast<std::int64_t>(
            reader->nextPageBytes() * std::min(pagesInMemory, 2 + static_cast<double>(chosen.size()))));

    work.copy = work.place->newFile(job_.options.index);
    raster::RasterWriter writer(*work.copy, run.abandoned(), run.threads);
    raster::PageFeed pages(*reader, chosen, run.abandoned());
    for (int i = 1; i <= count && run.isUpdating(); ++i) {
        if (isInPageRange(job_, i)) {
            std::optional<raster::RasterPage> page = pages.next();
            if (!page) break;
            // Every page gets the physical size of the first one; in real size each keeps its own.
            const bool hasOwnSize = job_.options.realSize && !page->points.isEmpty();
            const QSizeF points = hasOwnSize ? page->points : reader->firstPageSize();
            if (hasChosenParity(job_, i)) stampPage(*page, points, compositor, total, run);
            const QSizeF dots = dotsPerInch(page->image, points);
            writer.addPage(std::move(*page), compression, dots);
        }
        run.pageDone();
    }
    if (writer.pageCount() == 0)
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "No page was written."));
    writer.finish();
    throwIfCancelled(run.abandoned());
    work.outcome = {FileStatus::Created, std::nullopt, static_cast<std::int32_t>(writer.pageCount()),
                    run.numbers()};
}

void TiffProcessor::stampPage(raster::RasterPage& page, const QSizeF& points,
                              const PageCompositor& compositor, std::int64_t total, JobRun& run)
{
    const bool inPoints = job_.options.realSize;
    const QSizeF scale = inPoints ? pixelsPerPoint(page.image, points) : QSizeF(1, 1);
    const QRectF area = marginRect(job_, inPoints ? points : QSizeF(page.image.size()));
    const PageStamps stamps = compositor.place(area, run.stamps(), total, scale);
    const drawing::InkProbe probe = compositor.probe(stamps);
    makeRoomFor(probe.ink(), page);
    if (!page.isMono()) {
        compositor.drawPart(page.image, {}, stamps);
    } else if (const QRect rect = raster::patchRect(page.image, probe.bounds()); !rect.isEmpty()) {
        QImage patch = raster::takePatch(page.image, rect, page.isWhiteZero);
        compositor.drawPart(patch, rect.topLeft(), stamps);
        raster::putPatch(patch, rect, page.isWhiteZero, page.image);
    }
    run.numberUsed();
}

} // namespace quillfern
