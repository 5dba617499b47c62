#pragma once

#include "config/JobConfiguration.h"

#include <QRectF>
#include <QSizeF>

namespace quillfern {

inline constexpr double pointsPerInch = 72.0;
inline constexpr double millimetresPerInch = 25.4;
inline constexpr double wholePercent = 100.0;

/// A length in the configuration's margin unit, in points.
[[nodiscard]] double convertToPointUnit(const JobConfiguration& job, double value);

/// The area inside the margins on a page of `size` points, origin at the top left, y down. Its width and
/// height can be negative. Nothing is rounded.
[[nodiscard]] QRectF marginRect(const JobConfiguration& job, const QSizeF& size);

/// The same for PDF output, where a percentage counts as a length in the margin unit.
[[nodiscard]] QRectF lengthRect(const JobConfiguration& job, const QSizeF& size);

} // namespace quillfern
