#pragma once

#include "stamps/IStampItem.h"

#include <memory>
#include <vector>

namespace quillfern {

/// The stamps that the user edits, in drawing order. Main thread.
using StampList = std::vector<std::shared_ptr<IStampItem>>;

/// Stamps that nobody changes any more, in drawing order: cheap to copy, and readable from several threads at
/// once.
using StampValues = std::vector<std::shared_ptr<const IStampItem>>;

/// Copies of the stamps as they are now.
[[nodiscard]] StampValues valuesOf(const StampList& stamps);

/// The same stamps with the words of their templates filled in where a stamp asks for that.
[[nodiscard]] StampValues filledIn(const StampValues& stamps, const FillIns& fillIns);

} // namespace quillfern
