#pragma once

#include "platform/system/FilePath.h"

#include <cstdint>
#include <optional>

namespace quillfern {

/// The bytes that this user may still write to the disk on which a folder is; nothing when the folder cannot
/// be looked at. Any thread.
[[nodiscard]] std::optional<std::uint64_t> freeSpace(const FilePath& folder);

} // namespace quillfern
