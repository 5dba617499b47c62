#pragma once

#include <QByteArray>
#include <cstddef>

namespace quillfern::raster {

/// Packs rows of one bit a pixel (high bits first, each row in whole bytes, 0 the fax machine's white) into
/// one strip of Group 4 fax coding, ITU-T T.6, as libtiff would write it. Rows are compared as lists of the
/// places where their colour changes, found 64 pixels at a time; the time for a row depends on its number of
/// changes, not of pixels.
[[nodiscard]] QByteArray encodeGroup4(const QByteArray& rows, std::size_t width);

} // namespace quillfern::raster
