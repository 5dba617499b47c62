#pragma once

#include "platform/drawing/FontCatalog.h"
#include "platform/drawing/FontFace.h"
#include "platform/drawing/FontSpec.h"
#include "platform/drawing/ShapedText.h"

#include <QByteArray>
#include <QHash>
#include <QRawFont>
#include <QString>
#include <memory>
#include <vector>

namespace quillfern::drawing {

/// Turns texts into glyphs: bidirectional, with font substitution, ligatures and marks, as the platform's
/// text layout does it. Line feeds start a new line; lines are centred on each other; other control
/// characters count as blanks.
///
/// A running number changes on every page while its template stays: the shaper keeps what it has shaped, and
/// for fonts whose figures are all of one width it lays a text out once per number of digits and then only
/// exchanges the figures. Bound to the thread that made it, and so is everything it returns.
class TextShaper
{
  public:
    TextShaper();
    ~TextShaper();
    TextShaper(const TextShaper&) = delete;
    TextShaper& operator=(const TextShaper&) = delete;

    /// Throws Failure when no font is installed.
    [[nodiscard]] std::shared_ptr<const ShapedText> shape(const QString& text, const FontSpec& font);

    /// The number of full layouts so far, which the caching keeps low.
    [[nodiscard]] int layoutCount() const { return layoutCount_; }

  private:
    struct FontEntry;

    FontEntry& entryFor(const FontSpec& font);
    std::shared_ptr<const FontFace> faceFor(const QRawFont& font);
    ShapedText layOut(const QString& text, FontEntry& entry);
    std::shared_ptr<const ShapedText> withExchangedDigits(const QString& text, FontEntry& entry);
    bool figuresAreTabular(FontEntry& entry);
    bool buildPattern(const QString& pattern, FontEntry& entry);

    FontCatalog catalog_;
    std::vector<std::unique_ptr<FontEntry>> entries_;
    QHash<QByteArray, std::shared_ptr<const FontFace>> faces_;
    int layoutCount_ = 0;
};

} // namespace quillfern::drawing
