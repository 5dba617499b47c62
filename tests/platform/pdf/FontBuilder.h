#pragma once

#include <QByteArray>
#include <QList>
#include <map>

namespace quillfern::pdf {

/// A CFF table (Adobe Technical Note 5176) made byte by byte, whose glyphs are boxes on the baseline. Its
/// charset comes last: wherever the table is cut, the charset is not whole.
struct CffPlan
{
    struct Glyph
    {
        int advance = 600;
        int height = 700; ///< of the box, which is as wide as the advance less 50 on either side
    };
    bool cidKeyed = true;
    QList<Glyph> glyphs;       ///< the first is .notdef
    QByteArray charset;        ///< its format and what follows
    int predefinedCharset = 0; ///< 0 to 2, where `charset` is empty
};
QByteArray cffTable(const CffPlan& plan);

/// An OpenType font around a CFF table.
struct OpenTypePlan
{
    QByteArray family = "Quill Boxes";
    QByteArray postScriptName = "QuillBoxes";
    int unitsPerEm = 1000;
    QByteArray cff;
    QList<int> advances;
    int longMetrics = 0;                ///< how many glyphs have an advance of their own; 0 for all
    std::map<char16_t, int> characters; ///< to glyphs
    int fsType = 0;
    std::map<QByteArray, QByteArray> tables; ///< further ones or others; an empty one is left out
};
QByteArray openTypeFont(const OpenTypePlan& plan);

} // namespace quillfern::pdf
