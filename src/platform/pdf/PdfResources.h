#pragma once

#include "platform/drawing/FontFace.h"
#include "platform/drawing/Picture.h"
#include "platform/pdf/EmbeddedFont.h"

#include <QRectF>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillfern::pdf {

/// Something that content streams use by name: its category in a resource dictionary, the part of its name
/// that distinguishes it from our other resources, and the object.
struct PdfResource
{
    std::string category; ///< "/Font", "/ExtGState", "/XObject", "/ColorSpace"
    std::string suffix;
    QPDFObjectHandle object;
};

/// A picture of one glyph that exists only as a picture, and the box in em it fills from the glyph's origin.
struct GlyphPicture
{
    drawing::Picture picture;
    QRectF box;
};

/// What the stamps of one document share: each font, picture and graphics state is one object, however many
/// pages show it. Bound to one thread.
class PdfResources
{
  public:
    /// With `calibratedColour`, colours other than greys are written in a calibrated space, for documents
    /// whose archival claim allows no plain RGB.
    PdfResources(NewObjects& objects, SharedCodings& codings, bool calibratedColour);

    struct Font
    {
        PdfResource resource;
        std::unique_ptr<EmbeddedFont> font;
    };
    /// The font for a face, or null when it cannot be embedded and has to be drawn as outlines.
    [[nodiscard]] Font* font(const std::shared_ptr<const drawing::FontFace>& face);
    /// The graphics state with these opacities, 0 to 1.
    [[nodiscard]] const PdfResource& opacity(double fill, double stroke);
    [[nodiscard]] const PdfResource& picture(const drawing::Picture& picture);
    [[nodiscard]] const GlyphPicture& glyphPicture(const std::shared_ptr<const drawing::FontFace>& face,
                                                   quint32 glyph);
    /// The space for colours other than greys; nothing when plain RGB will do.
    [[nodiscard]] const PdfResource* colourSpace();

    /// True once anything translucent was asked for.
    [[nodiscard]] bool usesTransparency() const { return usesTransparency_; }

    /// Writes what could only be known at the end (the font subsets). Call once, before saving.
    void finish();

  private:
    NewObjects& objects_;
    SharedCodings& codings_;
    bool calibratedColour_;
    bool usesTransparency_ = false;
    std::map<const drawing::FontFace*, std::shared_ptr<const drawing::FontFace>> faces_; ///< keeps them alive
    std::map<const drawing::FontFace*, std::unique_ptr<Font>> fonts_;
    std::vector<Font*> fontsInOrder_; ///< of their first use, so that the same marks give the same document
    std::map<std::pair<int, int>, PdfResource> opacities_;
    std::map<qint64, PdfResource> pictures_;
    std::vector<drawing::Picture> keptPictures_; ///< a key is unique only while its picture lives
    std::map<std::pair<const drawing::FontFace*, quint32>, GlyphPicture> glyphPictures_;
    std::optional<PdfResource> colourSpace_;
};

/// The resources that the stamps of one page use, under names that nothing on that page has.
class PdfPageResources
{
  public:
    /// `resources` is the page's present resource dictionary, or null.
    explicit PdfPageResources(QPDFObjectHandle resources);
    /// For a page whose resources have these names, with their slashes.
    explicit PdfPageResources(const std::vector<std::string_view>& names);

    static constexpr std::array<const char*, 4> categories{"/Font", "/ExtGState", "/XObject", "/ColorSpace"};

    /// The name under which the page's stamps use `resource`, with its slash.
    std::string nameOf(const PdfResource& resource);
    [[nodiscard]] bool empty() const { return used_.empty(); }
    /// What is used, by category and name.
    [[nodiscard]] const std::map<std::string, std::map<std::string, QPDFObjectHandle>>& used() const
    {
        return used_;
    }
    /// Equal for pages that use the same resources under the same names.
    [[nodiscard]] std::string signature() const;
    /// Adds what is used to a resource dictionary that is a page's own; its inner dictionaries are copied
    /// first.
    void addTo(QPDFObjectHandle resources) const;

  private:
    void choosePrefix(const std::function<bool()>& isTaken);

    std::string prefix_;
    std::map<std::string, std::map<std::string, QPDFObjectHandle>> used_; ///< by category and name
};

} // namespace quillfern::pdf
