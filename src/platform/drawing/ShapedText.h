#pragma once

#include "platform/drawing/FontFace.h"

#include <QString>
#include <memory>
#include <vector>

namespace quillfern::drawing {

/// One glyph of a shaped text. Positions are in em (multiples of the font size).
struct ShapedGlyph
{
    quint32 glyph = 0;
    double x = 0; ///< origin, from the text's left edge
    double y = 0; ///< baseline, from the text's top edge, y down
    /// What the glyph stands for: its characters on the first glyph of a cluster, empty on the others.
    QString text;
};

struct ShapedRun
{
    std::shared_ptr<const FontFace> face;
    std::vector<ShapedGlyph> glyphs;
};

/// One line of a shaped text, along which underlines and strike-through lines are drawn. In em.
struct ShapedLine
{
    double x = 0;
    double baseline = 0;
    double width = 0;
};

/// A text laid out in one font (with substitutes for characters it lacks), in em, origin at the top left of
/// its box, y down. What is measured here is what both canvases draw. Immutable once made; bound to its
/// thread.
struct ShapedText
{
    std::vector<ShapedRun> runs;
    std::vector<ShapedLine> lines;
    double width = 0;
    double height = 0;
    double underlineOffset = 0; ///< centre of an underline, below the baseline
    double strikeOffset = 0;    ///< centre of a strike-through, above the baseline
    double lineThickness = 0;
};

} // namespace quillfern::drawing
