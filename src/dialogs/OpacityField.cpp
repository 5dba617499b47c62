#include "dialogs/OpacityField.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <algorithm>

namespace quillfern {

OpacityField::OpacityField(QWidget* parent)
    : QWidget(parent), slider_(Qt::Horizontal, this), readOut_(this), exact_(this)
{
    slider_.setRange(0, 100);
    slider_.setPageStep(10);
    slider_.setMinimumWidth(90);
    exact_.setNaturalRange(0, 100);
    readOut_.setTextFormat(Qt::PlainText);
    readOut_.setAlignment(Qt::AlignTrailing | Qt::AlignVCenter);
    readOut_.setMinimumWidth(readOut_.fontMetrics().horizontalAdvance(QStringLiteral("100%")));
    setFocusPolicy(Qt::StrongFocus); // passed on
    setFocusProxy(&slider_);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(&slider_, 1);
    row->addWidget(&readOut_);
    row->addWidget(&exact_);

    connect(&slider_, &QSlider::valueChanged, this, [this](int percent) {
        exact_.showNumber(percent);
        showReadOut(percent);
        Q_EMIT edited(percent);
    });
    connect(&exact_, &ExactSpinBox::edited, this, [this](double number) {
        const auto percent = static_cast<std::int64_t>(number);
        showPercent(percent);
        Q_EMIT edited(percent);
    });
}

void OpacityField::showPercent(std::int64_t percent)
{
    const QSignalBlocker quiet(&slider_);
    slider_.setValue(static_cast<int>(std::clamp<std::int64_t>(percent, 0, 100)));
    exact_.showNumber(static_cast<double>(percent));
    showReadOut(percent);
}

void OpacityField::setSubject(const QString& subject, const QString& readOutName)
{
    readOut_.setObjectName(readOutName);
    slider_.setAccessibleName(subject);
    slider_.setToolTip(tr("0% is invisible, 100% is opaque"));
    exact_.setAccessibleName(tr("%1 in percent").arg(subject));
    exact_.setToolTip(tr("The exact opacity in percent"));
}

void OpacityField::showReadOut(std::int64_t percent)
{
    readOut_.setText(QStringLiteral("%1%").arg(percent));
}

} // namespace quillfern
