#include "batch/StampFindings.h"

#include "config/PageArea.h"
#include "platform/drawing/FontCatalog.h"
#include "stamps/ImageStamp.h"
#include "stamps/PageCompositor.h"
#include "stamps/TextStamp.h"

#include <algorithm>

namespace quillfern {

namespace {

bool isEmpty(const IStampItem& stamp)
{
    if (const auto* text = dynamic_cast<const TextStamp*>(&stamp))
        return text->number.numberFormat.value_or(QString()).isEmpty();
    const auto* picture = dynamic_cast<const ImageStamp*>(&stamp);
    return picture && !picture->cacheImage();
}

bool isPartly(std::int64_t opacity)
{
    return opacity > 0 && opacity < 100;
}

/// The height of the letters as they are named, or the shorter side of a picture.
double nominalSize(const IStampItem& stamp)
{
    if (const auto* text = dynamic_cast<const TextStamp*>(&stamp)) return text->font.fontSize;
    const auto* picture = dynamic_cast<const ImageStamp*>(&stamp);
    return picture ? static_cast<double>(std::min(picture->stampImageWidth, picture->stampImageHeight)) : 0;
}

double areaOf(const QRectF& rect)
{
    return rect.isEmpty() ? 0 : rect.width() * rect.height();
}

} // namespace

std::vector<JobFinding> stampFindings(const StampValues& stamps)
{
    std::vector<JobFinding> findings;
    bool isAnyInUse = false;
    const drawing::FontCatalog catalog;
    for (std::size_t i = 0; i < stamps.size(); ++i) {
        const IStampItem& stamp = *stamps[i];
        if (!stamp.isSelected()) continue;
        isAnyInUse = true;
        if (isEmpty(stamp))
            findings.push_back(makeFinding(FindingKind::EmptyStamp, {}, {QString::number(i + 1)}));
        const auto* text = dynamic_cast<const TextStamp*>(&stamp);
        // The default font is an alias on most machines, and nobody named it: nothing is said of it.
        if (!text || text->font.fontName == PDFFont().fontName) continue;
        const QString wanted = text->font.fontName.value_or(QString());
        const QString used = catalog.resolveFamily(wanted);
        if (used.compare(wanted, Qt::CaseInsensitive) != 0)
            findings.push_back(makeFinding(FindingKind::FontNotInstalled, {}, {wanted, used}));
    }
    if (!isAnyInUse) findings.push_back(makeFinding(FindingKind::NoStamp, {}));
    return findings;
}

bool drawTransparently(const StampValues& stamps)
{
    return std::any_of(stamps.begin(), stamps.end(), [](const auto& stamp) {
        if (!stamp->isSelected()) return false;
        if (const auto* text = dynamic_cast<const TextStamp*>(stamp.get()))
            return isPartly(text->textOpacity) || (text->outlineWidth > 0 && isPartly(text->outlineOpacity));
        const auto* picture = dynamic_cast<const ImageStamp*>(stamp.get());
        return picture && picture->cacheImage() &&
               (isPartly(picture->stampImageOpacity) || picture->cacheImage()->image().hasAlphaChannel());
    });
}

StampFit::StampFit(const JobConfiguration& job, std::int64_t number, std::int64_t pages)
    : job_(job), number_(number), pages_(pages)
{
}

StampFit::Faults StampFit::faultsOn(const StampedPage& page)
{
    const auto key = std::tuple(page.size.width(), page.size.height(), page.pointsPerUnit, page.isOfPixels);
    const auto found = known_.find(key);
    return found != known_.end() ? found->second : known_.emplace(key, look(page)).first->second;
}

StampFit::Faults StampFit::look(const StampedPage& page)
{
    constexpr double smallest = 4;  // points, in print
    constexpr double softEdges = 2; // units that the bounds of marks may be larger than the marks
    const QRectF whole(QPointF(0, 0), page.size);
    const QRectF area = page.isOfPixels ? marginRect(job_, page.size) : lengthRect(job_, page.size);
    Faults faults;
    for (const auto& stamp : job_.stamps) {
        if (!stamp->isSelected()) continue;
        const StampValues alone = {stamp};
        const PageStamps placed{area, {1, 1}, number_, pages_, {stamp->marginAnchor()}};
        const QRectF bounds = PageCompositor(alone, shaper_).probe(placed).bounds();
        if (bounds.isEmpty()) continue;
        const bool isLarger =
            bounds.width() > whole.width() + softEdges || bounds.height() > whole.height() + softEdges;
        if (isLarger)
            faults.isTooLarge = true;
        else if (areaOf(bounds.intersected(whole)) < areaOf(bounds) / 2)
            faults.isOffPage = true;
        if (nominalSize(*stamp) * page.pointsPerUnit < smallest) faults.isTooSmall = true;
    }
    return faults;
}

} // namespace quillfern
