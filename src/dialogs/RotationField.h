#pragma once

#include "dialogs/ExactSpinBox.h"
#include "dialogs/RotationDial.h"

#include <QWidget>

namespace quillfern {

/// An angle in degrees, counter-clockwise: a dial, a field for the exact number, and buttons for the common
/// angles. An angle outside the field's range is shown as it is.
class RotationField final : public QWidget
{
    Q_OBJECT

  public:
    explicit RotationField(QWidget* parent = nullptr);

    /// How many decimals may be entered; none unless told.
    void setDecimals(int decimals);
    void showDegrees(double degrees);

  Q_SIGNALS:
    void edited(double degrees); ///< by the user

  private:
    void turnDial(double degrees);

    RotationDial dial_;
    ExactSpinBox exact_;
};

} // namespace quillfern
