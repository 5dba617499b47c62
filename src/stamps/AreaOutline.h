#pragma once

#include <QPainter>
#include <QRectF>

namespace quillfern {

/// Outlines the area inside the margins with a dashed black line, as every preview shows it. The painter's
/// state is as before afterwards.
void drawAreaOutline(QPainter& painter, const QRectF& area);

} // namespace quillfern
