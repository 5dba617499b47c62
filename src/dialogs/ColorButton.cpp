#include "dialogs/ColorButton.h"

#include <QPainter>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace quillfern {

ColorButton::ColorButton(QWidget* parent) : QPushButton(parent)
{
    setAutoDefault(false);
    showColor(color_);
}

void ColorButton::showColor(const QColor& color)
{
    color_ = color;
    setAccessibleDescription(color.name());
    update();
}

QSize ColorButton::sizeHint() const
{
    const int text = fontMetrics().horizontalAdvance(QStringLiteral("#DDDDDD"));
    return {text + 4 * fontMetrics().averageCharWidth(), QPushButton::sizeHint().height()};
}

void ColorButton::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    painter.drawControl(QStyle::CE_PushButtonBevel, option);

    const QRectF swatch = QRectF(rect()).adjusted(4.5, 4.5, -4.5, -4.5);
    QColor color = color_;
    QColor edge = palette().color(QPalette::ButtonText);
    edge.setAlphaF(0.5F);
    if (!isEnabled()) color.setAlphaF(0.4F);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(edge, 1));
    painter.setBrush(color);
    painter.drawRoundedRect(swatch, 2, 2);
    painter.setPen(qGray(color_.rgb()) > 140 || !isEnabled() ? Qt::black : Qt::white);
    painter.setLayoutDirection(Qt::LeftToRight);
    painter.drawText(swatch, Qt::AlignCenter, color_.name());

    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = style()->subElementRect(QStyle::SE_PushButtonFocusRect, &option, this);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
}

} // namespace quillfern
