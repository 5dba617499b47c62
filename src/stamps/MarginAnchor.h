#pragma once

#include <cstdint>

namespace quillfern {

/// Where a stamp stands inside the page's margins. The values are stored in profiles.
enum class MarginAnchor : std::int32_t {
    None = 0, ///< centred on the area's origin and then pushed inside: where TopLeft is, unless turned
    TopLeft = 1,
    TopMiddle = 2,
    TopRight = 3,
    MiddleLeft = 4,
    MiddleMiddle = 5,
    MiddleRight = 6,
    BottomLeft = 7,
    BottomMiddle = 8,
    BottomRight = 9,
};

} // namespace quillfern
