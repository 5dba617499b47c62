#pragma once

#include "platform/system/LibraryVersion.h"

#include <vector>

namespace quillfern::drawing {

/// The libraries of this room.
[[nodiscard]] std::vector<LibraryVersion> libraryVersions();

} // namespace quillfern::drawing
