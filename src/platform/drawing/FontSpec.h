#pragma once

#include <QString>

namespace quillfern::drawing {

/// Which font a text asks for. Sizes are not part of it: a text is shaped once in units of the font size.
struct FontSpec
{
    QString family;
    bool bold = false;   ///< the bold member of the family, when it has one
    bool italic = false; ///< the italic (oblique) member of the family, when it has one

    bool operator==(const FontSpec&) const = default;
};

} // namespace quillfern::drawing
