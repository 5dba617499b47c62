#pragma once

#include "dialogs/ExactSpinBox.h"

#include <QLabel>
#include <QSlider>
#include <QString>
#include <QWidget>
#include <cstdint>

namespace quillfern {

/// An opacity in percent: a slider, what it stands at, and a field for the exact number. A value outside 0 to
/// 100 is shown as it is and leaves the slider at its end.
class OpacityField final : public QWidget
{
    Q_OBJECT

  public:
    explicit OpacityField(QWidget* parent = nullptr);

    void showPercent(std::int64_t percent);
    /// Names the controls for assistive programs, tests and people: `subject` is what the opacity is of, and
    /// the read-out becomes the object `readOutName`.
    void setSubject(const QString& subject, const QString& readOutName);
    [[nodiscard]] ExactSpinBox* exactField() { return &exact_; }

  Q_SIGNALS:
    void edited(qint64 percent); ///< by the user

  private:
    void showReadOut(std::int64_t percent);

    QSlider slider_;
    QLabel readOut_;
    ExactSpinBox exact_;
};

} // namespace quillfern
