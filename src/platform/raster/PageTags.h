#pragma once

#include <QByteArray>
#include <cstdint>
#include <map>

namespace quillfern::raster {

/// What a file says of a page beside its pixels and is carried over, by the numbers of TIFF's tags: texts
/// (without an end mark), an XMP packet, IPTC records.
using PageTags = std::map<std::uint16_t, QByteArray>;

/// True for the tags whose values are texts: description, maker and model of the scanner, date, artist,
/// copyright.
[[nodiscard]] bool isPageText(std::uint16_t tag);

} // namespace quillfern::raster
