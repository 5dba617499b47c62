#include "dialogs/RotationField.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>
#include <cmath>

namespace quillfern {

namespace {

constexpr double mostDegrees = 360;

} // namespace

RotationField::RotationField(QWidget* parent) : QWidget(parent), dial_(this), exact_(this)
{
    setDecimals(0);
    exact_.setSuffix(QStringLiteral("°"));
    exact_.setObjectName(QStringLiteral("rotationSpinBox"));
    exact_.setAccessibleName(tr("Rotation in degrees"));
    exact_.setToolTip(tr("The exact rotation in degrees, counter-clockwise"));
    dial_.setObjectName(QStringLiteral("rotationDial"));
    dial_.setAccessibleName(tr("Rotation"));
    dial_.setToolTip(tr("Drag to turn the stamp; hold Shift for steps of 15°"));
    setFocusPolicy(Qt::StrongFocus); // passed on
    setFocusProxy(&dial_);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);

    auto* snaps = new QHBoxLayout;
    snaps->setSpacing(4);
    for (const int degrees : {0, 45, 90}) {
        auto* snap = new QToolButton(this);
        snap->setText(tr("%1°").arg(degrees));
        snap->setObjectName(QStringLiteral("rotate%1Button").arg(degrees));
        snap->setAccessibleName(tr("Rotate to %1 degrees").arg(degrees));
        snap->setToolTip(snap->accessibleName());
        connect(snap, &QToolButton::clicked, this, [this, degrees] {
            showDegrees(degrees);
            Q_EMIT edited(degrees);
        });
        snaps->addWidget(snap, 1);
        snap->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }
    auto* exactly = new QVBoxLayout;
    exactly->setSpacing(6);
    exactly->addStretch();
    exactly->addWidget(&exact_);
    exactly->addLayout(snaps);
    exactly->addStretch();
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(&dial_);
    row->addLayout(exactly, 1);

    connect(&dial_, &QDial::valueChanged, this, [this](int degrees) {
        exact_.showNumber(degrees);
        Q_EMIT edited(degrees);
    });
    connect(&exact_, &ExactSpinBox::edited, this, [this](double degrees) {
        turnDial(degrees);
        Q_EMIT edited(degrees);
    });
}

void RotationField::setDecimals(int decimals)
{
    exact_.setNaturalRange(-mostDegrees, mostDegrees, decimals);
}

void RotationField::showDegrees(double degrees)
{
    exact_.showNumber(degrees);
    turnDial(degrees);
}

void RotationField::turnDial(double degrees)
{
    const QSignalBlocker quiet(&dial_);
    const double turn = std::isfinite(degrees) ? std::fmod(degrees, 360) : 0;
    dial_.setValue((static_cast<int>(std::lround(turn)) + 360) % 360);
    dial_.update();
}

} // namespace quillfern
