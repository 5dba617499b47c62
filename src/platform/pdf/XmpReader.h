#pragma once

#include "platform/pdf/XmpPacket.h"

#include <QString>
#include <optional>

namespace quillfern::pdf {

/// Reads a packet's decoded text; the ranges of the result lie in it. Nothing when it cannot be understood.
[[nodiscard]] std::optional<XmpPacket::Content> readXmp(const QString& text);

} // namespace quillfern::pdf
