#include "stamps/AreaOutline.h"

#include <QPen>

namespace quillfern {

void drawAreaOutline(QPainter& painter, const QRectF& area)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    QPen dashes(Qt::black, 1);
    dashes.setCapStyle(Qt::FlatCap);
    // The pattern is 2, 2, 2. Its number of lengths is odd, so dashes and gaps change places in every other
    // round; Qt takes an even number only, so both rounds are listed.
    dashes.setDashPattern({2, 2, 2, 2, 2, 2});
    painter.setPen(dashes);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(area.left(), area.top() + 1, area.width() - 1, area.height() - 1));
    painter.restore();
}

} // namespace quillfern
