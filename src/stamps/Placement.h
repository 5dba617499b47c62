#pragma once

#include "stamps/MarginAnchor.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <cstdint>

namespace quillfern {

/// A corner of a stamp placed at an anchor of `rect` and turned by `angle` whole degrees counter-clockwise,
/// kept inside the area. Points, y down. The result is relative to the area's origin: drawing adds
/// rect.topLeft().
///
/// `pointIndex` 0 to 3 are the stamp's own top left, top right, bottom right and bottom left. The angle is
/// taken as it is, without reduction to 0 to 359. Anchors outside 1 to 9 count as None. The middle positions
/// are computed relative to the area while the far edges include its origin; the containment step, which
/// moves the stamp by whole points only, subtracts the margin again. An area of zero everywhere gives (0, 0).
[[nodiscard]] QPointF getTransformedPoint(const QSizeF& size, int angle, const QRectF& rect,
                                          MarginAnchor marginAnchor, int pointIndex);

/// The anchor on the facing page: left and right exchanged; others stay as they are.
[[nodiscard]] MarginAnchor mirroredAnchor(MarginAnchor marginAnchor);

/// Degrees to radians, the factor all stamps use.
inline constexpr double radiansPerDegree = 0.017453292519943295;

} // namespace quillfern
