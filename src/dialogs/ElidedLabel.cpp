#include "dialogs/ElidedLabel.h"

#include <QPainter>
#include <QStyle>

namespace quillfern {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    drawFrame(&painter);
    const QRect room = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
    painter.setPen(palette().color(foregroundRole()));
    // The text may be in another language than the window.
    painter.setLayoutDirection(text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(
        room, static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())) | Qt::TextSingleLine,
        fontMetrics().elidedText(text(), Qt::ElideRight, room.width()));
}

} // namespace quillfern
