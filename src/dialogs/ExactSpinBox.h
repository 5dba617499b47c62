#pragma once

#include <QDoubleSpinBox>

namespace quillfern {

/// A field for an exact number. It shows whatever number it is given, also one outside the range that people
/// may enter (a profile can hold any); the first edit brings it back into that range. Zeros that say nothing
/// are not shown.
class ExactSpinBox final : public QDoubleSpinBox
{
    Q_OBJECT

  public:
    explicit ExactSpinBox(QWidget* parent = nullptr);

    /// What people may enter, with so many decimals at most.
    void setNaturalRange(double minimum, double maximum, int decimals = 0);
    /// Shows a number without telling that it was edited.
    void showNumber(double number);

    [[nodiscard]] QString textFromValue(double value) const override;

  Q_SIGNALS:
    /// The user has entered another number; with every key that makes one.
    void edited(double number);

  private:
    void tellEdit(double number);

    double minimum_ = 0;
    double maximum_ = 100;
};

} // namespace quillfern
