#include "stamps/Placement.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quillfern {

namespace {

QPointF centreFor(MarginAnchor anchor, const QSizeF& size, const QRectF& rect)
{
    const double w = size.width() / 2;
    const double h = size.height() / 2;
    const double right = rect.x() + rect.width() - w;
    const double bottom = rect.y() + rect.height() - h;
    const double middleX = rect.x() + rect.width() / 2 - rect.x();
    const double middleY = rect.y() + rect.height() / 2 - rect.y();
    switch (anchor) {
    case MarginAnchor::TopLeft:
        return {w, h};
    case MarginAnchor::TopMiddle:
        return {middleX, h};
    case MarginAnchor::TopRight:
        return {right, h};
    case MarginAnchor::MiddleLeft:
        return {w, middleY};
    case MarginAnchor::MiddleMiddle:
        return {middleX, middleY};
    case MarginAnchor::MiddleRight:
        return {right, middleY};
    case MarginAnchor::BottomLeft:
        return {w, bottom};
    case MarginAnchor::BottomMiddle:
        return {middleX, bottom};
    case MarginAnchor::BottomRight:
        return {right, bottom};
    default:
        return {0, 0};
    }
}

/// Which of the four corners decides first how far the stamp is pushed back inside.
bool visitsForward(int angle, MarginAnchor anchor)
{
    const auto within = [angle](int low, int high) { return angle >= low && angle <= high; };
    const bool upsideDown = within(91, 269);
    const bool topLeftGroup = anchor == MarginAnchor::TopLeft || anchor == MarginAnchor::TopMiddle ||
                              (anchor == MarginAnchor::TopRight && (within(26, 154) || within(206, 334)));
    return upsideDown != topLeftGroup;
}

/// How far beyond 0 or `limit` a coordinate lies, in whole points; 0 for less than one.
double overshoot(double value, double limit)
{
    if (value > limit && std::trunc(value - limit) != 0) return std::trunc(value - limit);
    return value < 0 ? std::trunc(value) : 0;
}

/// How far to push the stamp back along one axis, in whole points: as far as the first corner that sticks out
/// lies beyond the edge.
///
/// That corner need not be the outermost. A stamp at the far edge that is narrower than the near margin
/// sticks out with all its corners, and a push by the first corner's distance would be too short: the stamp
/// would stay beyond the margin or even off the page. Where the stamp fits and would still stick out by a
/// point, the outermost corner decides instead.
double shiftInside(const std::array<double, 4>& visited, double limit)
{
    double shift = 0;
    for (const double value : visited)
        if (shift == 0) shift = overshoot(value, limit);
    const auto [lowest, highest] = std::minmax_element(visited.begin(), visited.end());
    const bool fits = *highest - *lowest <= limit;
    if (fits && *highest - shift >= limit + 1) return overshoot(*highest, limit);
    if (fits && *lowest - shift <= -1) return overshoot(*lowest, limit);
    return shift;
}

} // namespace

QPointF getTransformedPoint(const QSizeF& size, int angle, const QRectF& rect, MarginAnchor marginAnchor,
                            int pointIndex)
{
    if (rect.x() == 0 && rect.y() == 0 && rect.width() == 0 && rect.height() == 0) return {0, 0};

    const QPointF centre = centreFor(marginAnchor, size, rect);
    const double w = size.width() / 2;
    const double h = size.height() / 2;
    std::array<QPointF, 4> corners = {QPointF(-w, -h), QPointF(w, -h), QPointF(w, h), QPointF(-w, h)};
    const auto radians = static_cast<float>(-angle * radiansPerDegree);
    const double cosine = std::cos(radians);
    const double sine = std::sin(radians);
    for (QPointF& corner : corners)
        corner = QPointF(corner.x() * cosine - corner.y() * sine + centre.x(),
                         corner.x() * sine + corner.y() * cosine + centre.y());

    std::array<double, 4> x = {};
    std::array<double, 4> y = {};
    const bool forward = visitsForward(angle, marginAnchor);
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const QPointF& corner = corners[forward ? i : corners.size() - 1 - i];
        x[i] = corner.x();
        y[i] = corner.y();
    }
    const double shiftX = shiftInside(x, rect.width());
    const double shiftY = shiftInside(y, rect.height());
    return corners.at(static_cast<std::size_t>(pointIndex)) - QPointF(shiftX, shiftY);
}

MarginAnchor mirroredAnchor(MarginAnchor marginAnchor)
{
    switch (marginAnchor) {
    case MarginAnchor::TopLeft:
        return MarginAnchor::TopRight;
    case MarginAnchor::MiddleLeft:
        return MarginAnchor::MiddleRight;
    case MarginAnchor::BottomLeft:
        return MarginAnchor::BottomRight;
    case MarginAnchor::TopRight:
        return MarginAnchor::TopLeft;
    case MarginAnchor::MiddleRight:
        return MarginAnchor::MiddleLeft;
    case MarginAnchor::BottomRight:
        return MarginAnchor::BottomLeft;
    default:
        return marginAnchor;
    }
}

} // namespace quillfern
