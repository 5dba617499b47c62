#pragma once

#include "platform/drawing/FontFace.h"
#include "platform/pdf/FontProgram.h"
#include "platform/pdf/NewObjects.h"
#include "platform/pdf/SharedCodings.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <cstdint>
#include <map>
#include <memory>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace quillfern::pdf {

/// One face in one document: a composite font (Type 0, Identity-H) whose subset is written when all its
/// glyphs are known, with widths and a map back to text (ISO 32000-1, 9.7 and 9.10.3). A font that shows a
/// figure gets all ten, so that documents with other numbers share the subset.
class EmbeddedFont
{
  public:
    /// `objects` and `codings` must outlive the font.
    EmbeddedFont(NewObjects& objects, SharedCodings& codings, std::shared_ptr<const drawing::FontFace> face);

    [[nodiscard]] bool embeddable() const { return program_.embeddable(); }
    /// The font dictionary, an indirect object; complete after finish().
    [[nodiscard]] QPDFObjectHandle object() const { return object_; }

    /// Notes that `glyph` is shown, standing for `text` (may be empty), and returns whether the font's map to
    /// text maps the glyph to exactly that text; where one glyph has to stand for different texts, the caller
    /// marks the text itself.
    bool use(std::uint32_t glyph, const QString& text);
    [[nodiscard]] std::uint16_t code(std::uint32_t glyph) const { return program_.cid(glyph); }
    /// 1/1000 em.
    [[nodiscard]] double advance(std::uint32_t glyph) const { return program_.advance(glyph); }

    /// True when a subset of the font can be made. To be checked before text is written with the font.
    [[nodiscard]] bool canSubset() const;
    /// Writes the font into the document. Throws Failure when the subset cannot be made.
    void finish();

  private:
    void addFigures();
    [[nodiscard]] QByteArray key() const;
    [[nodiscard]] std::optional<CodedFont> coded() const;
    [[nodiscard]] QByteArray toUnicodeMap() const;
    [[nodiscard]] QPDFObjectHandle widths() const;
    QPDFObjectHandle descriptor(const QByteArray& name, const CodedFont& font);

    NewObjects& objects_;
    SharedCodings& codings_;
    std::shared_ptr<const drawing::FontFace> face_;
    FontProgram program_;
    QPDFObjectHandle object_;
    std::map<std::uint32_t, QString> glyphs_;
};

} // namespace quillfern::pdf
