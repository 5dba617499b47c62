#pragma once

#include <QByteArray>
#include <QPainterPath>
#include <QRawFont>
#include <unordered_map>

namespace quillfern::drawing {

/// One installed font file's face, independent of size: glyph outlines and advances in units of the em (1.0
/// is the font size), y down from the baseline. Bound to the thread that made it, as QRawFont is.
class FontFace
{
  public:
    /// `font` at any pixel size; the face keeps it at one pixel per font unit.
    explicit FontFace(const QRawFont& font);

    /// Equal for two font objects that stand for the same face. The font engine creates several objects for
    /// one face (one for each script), but a document should embed the face only once.
    [[nodiscard]] static QByteArray identityOf(const QRawFont& font);

    [[nodiscard]] const QRawFont& rawFont() const { return font_; }
    [[nodiscard]] double unitsPerEm() const { return unitsPerEm_; }
    [[nodiscard]] QByteArray table(const char* tag) const { return font_.fontTable(tag); }

    /// The glyph's outline; empty for a blank glyph and for one that exists as a bitmap only.
    [[nodiscard]] const QPainterPath& outline(quint32 glyph) const;
    /// True when the glyph has no outline but a picture (a colour emoji).
    [[nodiscard]] bool isPicture(quint32 glyph) const;

  private:
    QRawFont font_;
    double unitsPerEm_;
    bool hasPictures_;
    mutable std::unordered_map<quint32, QPainterPath> outlines_;
};

} // namespace quillfern::drawing
