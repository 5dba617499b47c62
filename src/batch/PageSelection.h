#pragma once

#include "config/Numbering.h"

#include <cstdint>

namespace quillfern {

/// True when page `index` (1-based) lies between the first and the last page to stamp.
[[nodiscard]] inline bool isInPageRange(const Numbering& number, std::int64_t index)
{
    return index >= number.startPage() && (number.endPage() == 0 || index <= number.endPage());
}

/// True when page `index` (1-based) has the parity that is stamped.
[[nodiscard]] inline bool hasChosenParity(const Numbering& number, std::int64_t index)
{
    switch (number.pageRange()) {
    case AllPages:
        return true;
    case OddPages:
        return index % 2 == 1;
    case EvenPages:
        return index % 2 == 0;
    default:
        return false;
    }
}

} // namespace quillfern
