#include "dialogs/RotationDial.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>
#include <QtMath>
#include <algorithm>
#include <cmath>

namespace quillfern {

namespace {

constexpr int sidePoints = 76;
constexpr int catchDegrees = 4; ///< how near to a multiple a drag snaps to it

/// The nearest multiple of `step`.
int nearest(double degrees, int step)
{
    return static_cast<int>(std::lround(degrees / step)) * step;
}

} // namespace

RotationDial::RotationDial(QWidget* parent) : QDial(parent)
{
    setRange(0, 359);
    setWrapping(true);
    setPageStep(45);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize RotationDial::sizeHint() const
{
    return {sidePoints, sidePoints};
}

QSize RotationDial::minimumSizeHint() const
{
    return sizeHint();
}

void RotationDial::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor ink = palette().color(QPalette::WindowText);
    const QColor accent = isEnabled() ? palette().color(QPalette::Highlight) : ink;
    const double radius = std::min(width(), height()) / 2.0 - 5;
    painter.translate(width() / 2.0, height() / 2.0);

    QColor faint = ink;
    faint.setAlphaF(0.45F);
    painter.setPen(QPen(hasFocus() ? accent : faint, hasFocus() ? 2 : 1));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawEllipse(QPointF(0, 0), radius, radius);

    painter.setPen(QPen(faint, 1.2, Qt::SolidLine, Qt::RoundCap));
    for (int degrees = 0; degrees < 360; degrees += 45) {
        const QPointF out(std::cos(qDegreesToRadians(double(degrees))),
                          -std::sin(qDegreesToRadians(double(degrees))));
        painter.drawLine(out * (radius - 5), out * (radius - 2));
    }

    // A line of text at this angle: its baseline, and a letter that stands on it.
    painter.rotate(-value());
    painter.setPen(QPen(accent, 2.4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(-radius * 0.55, 0), QPointF(radius * 0.6, 0));
    painter.setPen(Qt::NoPen);
    painter.setBrush(accent);
    painter.drawEllipse(QPointF(radius * 0.62, 0), 4.2, 4.2);
    QFont letter = font();
    letter.setPixelSize(static_cast<int>(radius * 0.5));
    letter.setBold(true);
    painter.setFont(letter);
    painter.setPen(ink);
    painter.drawText(QRectF(-radius * 0.5, -radius * 0.68, radius * 0.8, radius * 0.64),
                     Qt::AlignHCenter | Qt::AlignBottom, QStringLiteral("A"));
}

/// As in any dial, but past either end it goes on at the other.
void RotationDial::keyPressEvent(QKeyEvent* event)
{
    const int turn = [&] {
        switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Right:
            return singleStep();
        case Qt::Key_Down:
        case Qt::Key_Left:
            return -singleStep();
        case Qt::Key_PageUp:
            return pageStep();
        case Qt::Key_PageDown:
            return -pageStep();
        default:
            return 0;
        }
    }();
    if (turn == 0)
        QDial::keyPressEvent(event);
    else
        setValue((value() + turn + 360) % 360);
}

void RotationDial::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    setSliderDown(true);
    turnTo(event->position(), event->modifiers());
}

void RotationDial::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::LeftButton) turnTo(event->position(), event->modifiers());
}

void RotationDial::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) setSliderDown(false);
}

void RotationDial::turnTo(const QPointF& point, Qt::KeyboardModifiers keys)
{
    const QPointF out = point - QPointF(width() / 2.0, height() / 2.0);
    if (out.isNull()) return;
    const double degrees = qRadiansToDegrees(std::atan2(-out.y(), out.x()));
    int turned = nearest(degrees, 1);
    if (keys & Qt::ShiftModifier)
        turned = nearest(degrees, 15);
    else if (std::abs(degrees - nearest(degrees, 45)) <= catchDegrees)
        turned = nearest(degrees, 45);
    setValue((turned + 360) % 360);
}

} // namespace quillfern
