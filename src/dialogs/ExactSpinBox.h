#pragma once

#include <QDoubleSpinBox>
#include <QString>

namespace quillfern {

/// A field for an exact number. The field shows any number, also one outside the range that people may enter,
/// because a profile can hold any; the first edit brings the number into that range. Trailing zeros are not
/// shown.
class ExactSpinBox final : public QDoubleSpinBox
{
    Q_OBJECT

  public:
    explicit ExactSpinBox(QWidget* parent = nullptr);

    /// What people may enter, with so many decimals at most.
    void setNaturalRange(double minimum, double maximum, int decimals = 0);
    /// Shows a number without the signal edited().
    void showNumber(double number);

    [[nodiscard]] QString textFromValue(double value) const override;

  Q_SIGNALS:
    /// The user has entered another number; emitted for every key that changes the number.
    void edited(double number);

  private:
    void tellEdit(double number);

    double minimum_ = 0;
    double maximum_ = 100;
};

} // namespace quillfern
