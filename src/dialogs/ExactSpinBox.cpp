#include "dialogs/ExactSpinBox.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <algorithm>

namespace quillfern {

ExactSpinBox::ExactSpinBox(QWidget* parent) : QDoubleSpinBox(parent)
{
    setGroupSeparatorShown(false);
    connect(this, &QDoubleSpinBox::valueChanged, this, &ExactSpinBox::tellEdit);
}

void ExactSpinBox::setNaturalRange(double minimum, double maximum, int decimals)
{
    const QSignalBlocker quiet(this);
    minimum_ = minimum;
    maximum_ = maximum;
    setDecimals(decimals);
    setRange(minimum, maximum);
}

void ExactSpinBox::showNumber(double number)
{
    if (number == value()) return; // a text that is being typed stays as it is
    const QSignalBlocker quiet(this);
    setRange(std::min(minimum_, number), std::max(maximum_, number));
    setValue(number);
}

QString ExactSpinBox::textFromValue(double value) const
{
    QString text = locale().toString(value, 'f', decimals());
    text.remove(locale().groupSeparator());
    const QString point = locale().decimalPoint();
    if (!text.contains(point)) return text;
    const QString zero = locale().zeroDigit();
    while (text.endsWith(zero))
        text.chop(zero.size());
    if (text.endsWith(point)) text.chop(point.size());
    return text;
}

void ExactSpinBox::tellEdit(double number)
{
    // Narrowing the range corrects the value, which calls this function again.
    if (minimum() < minimum_ || maximum() > maximum_) {
        const double before = value();
        setRange(minimum_, maximum_);
        if (value() != before) return;
    }
    Q_EMIT edited(number);
}

} // namespace quillfern
