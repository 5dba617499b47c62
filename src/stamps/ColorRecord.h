#pragma once

#include <QByteArray>
#include <QColor>
#include <optional>

namespace quillfern {

/// A colour as records keep it: the ASCII bytes of "#AARRGGBB".
[[nodiscard]] QByteArray colorToBytes(const QColor& color);

/// The colour that a record's bytes hold. Bytes of an unknown form give black, so that a profile with such a
/// colour still loads. Absent bytes give no colour.
[[nodiscard]] std::optional<QColor> colorFromBytes(const std::optional<QByteArray>& bytes);

} // namespace quillfern
