#pragma once

#include <QByteArray>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillfern::pdf {

/// The CIDs of a CFF font's glyphs, by glyph number, when the font is CID-keyed (Adobe Technical Note 5176,
/// chapters 13 and 18). An empty list for a font that is not CID-keyed, where a glyph's number is its code.
/// Nothing when the table cannot be read.
[[nodiscard]] std::optional<std::vector<std::uint16_t>> cidsByGlyph(const QByteArray& cffTable);

} // namespace quillfern::pdf
