#pragma once

#include <QString>
#include <cstdint>
#include <optional>

namespace quillfern {

/// The bytes that a file takes on the disk; nothing when it cannot be looked at.
[[nodiscard]] std::optional<std::uint64_t> allocatedSize(const QString& path);

} // namespace quillfern
