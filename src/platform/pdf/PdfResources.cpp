#include "platform/pdf/PdfResources.h"

#include "platform/pdf/PdfImage.h"

#include <QGlyphRun>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace quillfern::pdf {

namespace {

/// Opacities are rounded to thousandths: finer than the eye can see, and than percentages.
int step(double opacity)
{
    return static_cast<int>(std::lround(opacity * 1000));
}

std::string numbered(const char* kind, std::size_t number)
{
    std::string text = kind;
    text += std::to_string(number);
    return text;
}

GlyphPicture paintGlyph(const drawing::FontFace& face, quint32 glyph)
{
    constexpr double pixelsPerEm = 136; // what colour fonts usually hold
    constexpr double margin = 0.5;      // em around the em box, for glyphs that reach out of it
    QRawFont font = face.rawFont();
    font.setPixelSize(pixelsPerEm);
    const QRectF box = font.boundingRect(glyph).adjusted(-1, -1, 1, 1);
    const QRectF inked = box.isEmpty() || box.width() > 4 * pixelsPerEm || box.height() > 4 * pixelsPerEm
                             ? QRectF(-margin, -1 - margin, 1 + 2 * margin, 1 + 2 * margin)
                             : QRectF(box.topLeft() / pixelsPerEm, box.size() / pixelsPerEm);
    QImage image((inked.size() * pixelsPerEm).toSize(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QGlyphRun run;
    run.setRawFont(font);
    run.setGlyphIndexes({glyph});
    run.setPositions({QPointF(0, 0)});
    painter.drawGlyphRun(-inked.topLeft() * pixelsPerEm, run);
    painter.end();
    return {drawing::Picture(image), inked};
}

} // namespace

PdfResources::PdfResources(NewObjects& objects, SharedCodings& codings, bool calibratedColour)
    : objects_(objects), codings_(codings), calibratedColour_(calibratedColour)
{
}

PdfResources::Font* PdfResources::font(const std::shared_ptr<const drawing::FontFace>& face)
{
    const auto found = fonts_.find(face.get());
    if (found != fonts_.end()) return found->second.get();
    std::unique_ptr<Font> entry;
    auto font = std::make_unique<EmbeddedFont>(objects_, codings_, face);
    if (font->embeddable() && font->canSubset()) {
        entry = std::make_unique<Font>();
        entry->resource = {"/Font", numbered("F", fonts_.size()), font->object()};
        entry->font = std::move(font);
        fontsInOrder_.push_back(entry.get());
    }
    faces_[face.get()] = face;
    return fonts_.emplace(face.get(), std::move(entry)).first->second.get();
}

const PdfResource& PdfResources::opacity(double fill, double stroke)
{
    const std::pair key(step(fill), step(stroke));
    const auto found = opacities_.find(key);
    if (found != opacities_.end()) return found->second;
    usesTransparency_ = usesTransparency_ || key.first < 1000 || key.second < 1000;
    auto state = QPDFObjectHandle::newDictionary({{"/Type", QPDFObjectHandle::newName("/ExtGState")},
                                                  {"/ca", QPDFObjectHandle::newReal(fill, 3)},
                                                  {"/CA", QPDFObjectHandle::newReal(stroke, 3)}});
    PdfResource resource{"/ExtGState", numbered("G", opacities_.size()), objects_.add(state)};
    return opacities_.emplace(key, std::move(resource)).first->second;
}

const PdfResource& PdfResources::picture(const drawing::Picture& picture)
{
    const auto found = pictures_.find(picture.key());
    if (found != pictures_.end()) return found->second;
    const PdfImage image = makeImage(objects_, codings_, picture);
    usesTransparency_ = usesTransparency_ || image.hasMask;
    keptPictures_.push_back(picture);
    PdfResource resource{"/XObject", numbered("X", pictures_.size()), image.object};
    return pictures_.emplace(picture.key(), std::move(resource)).first->second;
}

const GlyphPicture& PdfResources::glyphPicture(const std::shared_ptr<const drawing::FontFace>& face,
                                               quint32 glyph)
{
    const std::pair key(face.get(), glyph);
    const auto found = glyphPictures_.find(key);
    if (found != glyphPictures_.end()) return found->second;
    faces_[face.get()] = face;
    return glyphPictures_.emplace(key, paintGlyph(*face, glyph)).first->second;
}

const PdfResource* PdfResources::colourSpace()
{
    if (!calibratedColour_) return nullptr;
    if (!colourSpace_) {
        // sRGB's white point, gamma and primaries (ISO 32000-1, 8.6.5.3).
        colourSpace_ =
            PdfResource{"/ColorSpace", "C0",
                        objects_.add(QPDFObjectHandle::parse(
                            "[/CalRGB << /WhitePoint [0.9505 1 1.089] /Gamma [2.2 2.2 2.2] "
                            "/Matrix [0.4124 0.2126 0.0193 0.3576 0.7152 0.1192 0.1805 0.0722 0.9505] >>]"))};
    }
    return &*colourSpace_;
}

void PdfResources::finish()
{
    for (Font* const entry : fontsInOrder_)
        entry->font->finish();
}

PdfPageResources::PdfPageResources(QPDFObjectHandle resources) : prefix_("/Qf")
{
    if (!resources.isDictionary()) return;
    // Another run's stamps may be on the page already, with our usual names.
    const auto taken = [&] {
        for (const char* category : categories) {
            QPDFObjectHandle names = resources.getKey(category);
            if (!names.isDictionary()) continue;
            for (const std::string& name : names.getKeys())
                if (name.compare(0, prefix_.size(), prefix_) == 0) return true;
        }
        return false;
    };
    choosePrefix(taken);
}

PdfPageResources::PdfPageResources(const std::vector<std::string_view>& names) : prefix_("/Qf")
{
    choosePrefix([&] {
        return std::any_of(names.begin(), names.end(),
                           [this](std::string_view name) { return name.starts_with(prefix_); });
    });
}

void PdfPageResources::choosePrefix(const std::function<bool()>& isTaken)
{
    for (int n = 1; isTaken(); ++n)
        prefix_ = "/Q" + std::to_string(n) + "f";
}

std::string PdfPageResources::nameOf(const PdfResource& resource)
{
    std::string name = prefix_ + resource.suffix;
    used_[resource.category].insert_or_assign(name, resource.object);
    return name;
}

std::string PdfPageResources::signature() const
{
    std::string text;
    for (const auto& [category, names] : used_)
        for (const auto& [name, object] : names)
            text += category + name + ' ';
    return text;
}

void PdfPageResources::addTo(QPDFObjectHandle resources) const
{
    for (const auto& [category, names] : used_) {
        QPDFObjectHandle present = resources.getKey(category);
        QPDFObjectHandle own =
            present.isDictionary() ? present.shallowCopy() : QPDFObjectHandle::newDictionary();
        for (const auto& [name, object] : names)
            own.replaceKey(name, object);
        resources.replaceKey(category, own);
    }
}

} // namespace quillfern::pdf
