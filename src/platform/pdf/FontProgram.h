#pragma once

#include "platform/drawing/FontFace.h"

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace quillfern::pdf {

/// What an embedded font needs to know of a face, read from its OpenType tables. Lengths in 1/1000 em.
struct FontMetrics
{
    double boundingBox[4] = {0, 0, 0, 0}; ///< left, bottom, right, top
    double ascent = 0;
    double descent = 0; ///< negative
    double capHeight = 0;
    double italicAngle = 0; ///< degrees, counter-clockwise from upright
    int weight = 400;
};

/// A face as it is embedded in a document: whether it may be embedded, its metrics, the codes of its glyphs,
/// and subsets of it. Bound to the face's thread.
class FontProgram
{
  public:
    explicit FontProgram(std::shared_ptr<const drawing::FontFace> face);

    /// False for a face that carries no outline tables, whose glyphs are pictures, that is a variable
    /// font, or whose licence bits (OS/2 fsType) forbid embedding or subsetting.
    [[nodiscard]] bool embeddable() const { return embeddable_; }
    /// True for PostScript outlines (CFF), false for TrueType ones.
    [[nodiscard]] bool isCff() const { return cff_; }
    [[nodiscard]] const FontMetrics& metrics() const { return metrics_; }
    [[nodiscard]] QByteArray postScriptName() const;

    /// The character identifier that selects `glyph` in the embedded font: the glyph number itself, but in a
    /// CID-keyed font the CID that its charset gives the glyph.
    [[nodiscard]] std::uint16_t cid(std::uint32_t glyph) const;
    /// The advance of `glyph` in 1/1000 em.
    [[nodiscard]] double advance(std::uint32_t glyph) const;

    struct Subset
    {
        QByteArray program;             ///< a TrueType file or a bare CFF table
        std::set<std::uint32_t> glyphs; ///< all that it holds, parts of composed glyphs included
    };
    /// A program with these glyphs under their own numbers, without hints; nothing when it cannot be made.
    [[nodiscard]] std::optional<Subset> subset(const std::set<std::uint32_t>& glyphs) const;

  private:
    void readMetrics();

    std::shared_ptr<const drawing::FontFace> face_;
    bool embeddable_ = false;
    bool cff_ = false;
    FontMetrics metrics_;
    QByteArray hmtx_;
    int longMetrics_ = 0;
    std::vector<std::uint16_t> charset_; ///< CIDs by glyph, only of a CID-keyed font
};

} // namespace quillfern::pdf
