#pragma once

#include <QByteArray>
#include <QColor>
#include <optional>

namespace quillfern::store {

/// Reads a colour that an older profile carries as an archived object: an RGB, grey or CMYK colour, or a
/// named one with a concrete colour in it, in either byte order. Components outside 0 to 1 are brought
/// inside. Nothing for bytes of any other form; they may come from anywhere.
[[nodiscard]] std::optional<QColor> readArchivedColor(const QByteArray& bytes);

} // namespace quillfern::store
