#include "batch/TiffProcessor.h"

#include "batch/PageSelection.h"
#include "batch/TargetPreparation.h"
#include "config/Margins.h"
#include "platform/raster/BilevelPixels.h"
#include "platform/raster/PageFeed.h"
#include "platform/raster/RasterWriter.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/FileFacts.h"
#include "platform/system/Guarded.h"
#include "stamps/PageCompositor.h"

#include <algorithm>

namespace quillfern {

namespace {

/// Gives the page the pixels that drawing in `ink` needs. A page of black and white becomes one of colour as
/// soon as anything else is drawn on it, a grey page when a colour is.
void makeRoomFor(Ink ink, RasterPage& page)
{
    const bool suffices = !page.isGrey() || ink <= (page.isBilevel ? Ink::BlackAndWhite : Ink::Grey);
    if (suffices) return;
    page.image.convertTo(QImage::Format_RGB888);
    if (page.image.isNull())
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "not enough memory for a page"));
    page.isBilevel = false;
    page.colourProfile.clear(); // it was one for grey
}

/// The resolution that gives a page of so many pixels the physical size of the document's first page.
QSizeF dotsPerInch(const QImage& image, const QSizeF& points)
{
    return {image.width() * pointsPerInch / points.width(), image.height() * pointsPerInch / points.height()};
}

} // namespace

bool TiffProcessor::processTIFF(const FilePath& source, const FilePath& target, std::int64_t totalPages,
                                std::int32_t compression)
{
    problem_.clear();
    if (fileKind(source) == FileKind::Missing) {
        problem_ = Reason(QT_TRANSLATE_NOOP("quillfern::Failure", "the file is not there any more")).shown;
        return false;
    }
    bool done = false;
    try {
        done = stamp(source, target, totalPages, compression);
    } catch (...) {
        const Reason reason = currentReason();
        problem_ = reason.shown;
        logLine(failureLine("Error in [processTIFF:] : %@", reason.logged));
    }
    number_.cancelUpdate();
    return done;
}

bool TiffProcessor::stamp(const FilePath& source, const FilePath& target, std::int64_t totalPages,
                          std::int32_t compression)
{
    const FilePath path = prepareTarget(source, target, number_.isBackupFile);
    number_.beginUpdate();
    const auto reader = RasterReader::open(source);
    const int count = reader->pageCount();
    const std::int64_t total = totalPages > 0 ? totalPages : count;
    const auto first = std::clamp<std::int64_t>(number_.startPage(), 1, std::int64_t{count} + 1);
    const auto last = number_.endPage() == 0 ? count : std::min<std::int64_t>(number_.endPage(), count);
    if (first > last) {
        problem_ =
            Reason(QT_TRANSLATE_NOOP("quillfern::Failure", "no page of the file lies in the page range"))
                .shown;
        return false;
    }

    const PageCompositor compositor(number_.stamps, shaper_);
    AtomicFile file(path);
    RasterWriter writer(file);
    PageFeed pages(*reader, static_cast<int>(first), static_cast<int>(last));
    for (int i = 1; i <= count && number_.isUpdating(); ++i) {
        if (i >= first && i <= last) {
            std::optional<RasterPage> page = pages.next();
            if (!page) break;
            if (hasChosenParity(number_, i)) stampPage(*page, compositor, total);
            const QSizeF dots = dotsPerInch(page->image, reader->firstPageSize());
            writer.addPage(std::move(*page), compression, dots);
        }
        if (progress_) progress_();
    }
    if (writer.pageCount() == 0) return false;
    writer.finish();
    file.commit();
    return true;
}

void TiffProcessor::stampPage(RasterPage& page, const PageCompositor& compositor, std::int64_t total)
{
    const QRectF area = Margins(number_).marginRect(QSizeF(page.image.size()));
    const PageStamps stamps = compositor.place(area, number_.numberCounter, total);
    const InkProbe probe = compositor.probe(stamps);
    makeRoomFor(probe.ink(), page);
    if (!page.isMono()) {
        compositor.drawPart(page.image, {}, stamps);
    } else if (const QRect rect = patchRect(page.image, probe.bounds()); !rect.isEmpty()) {
        QImage patch = takePatch(page.image, rect, page.isWhiteZero);
        compositor.drawPart(patch, rect.topLeft(), stamps);
        putPatch(patch, rect, page.isWhiteZero, page.image);
    }
    number_.numberCounter += number_.numberSteps();
}

} // namespace quillfern
