#include "dialogs/BusyIndicator.h"

#include <QPainter>

namespace quillfern {

namespace {

constexpr int spokes = 12;
constexpr int sideLength = 20;

} // namespace

BusyIndicator::BusyIndicator(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    timer_.setInterval(80);
    connect(&timer_, &QTimer::timeout, this, [this] {
        step_ = (step_ + 1) % spokes;
        update();
    });
}

void BusyIndicator::startAnimation()
{
    timer_.start();
    update();
}

void BusyIndicator::stopAnimation()
{
    timer_.stop();
    update();
}

QSize BusyIndicator::sizeHint() const
{
    return {sideLength, sideLength};
}

void BusyIndicator::paintEvent(QPaintEvent*)
{
    if (!isAnimating()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(rect()).center());
    const double radius = std::min(width(), height()) * 0.5;
    QColor ink = palette().color(QPalette::WindowText);
    for (int spoke = 0; spoke < spokes; ++spoke) {
        const int age = (step_ - spoke + spokes) % spokes;
        ink.setAlphaF(1.0F - static_cast<float>(age) / spokes);
        painter.setPen(QPen(ink, radius * 0.18, Qt::SolidLine, Qt::RoundCap));
        painter.save();
        painter.rotate(spoke * 360.0 / spokes);
        painter.drawLine(QPointF(0, -radius * 0.5), QPointF(0, -radius * 0.85));
        painter.restore();
    }
}

} // namespace quillfern
