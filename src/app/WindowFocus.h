#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace quillfern {

class Activity;

/// Ends editing in the field of this window that has the keyboard, so that what was typed counts. The field
/// keeps the keyboard.
void endEditing(const QWidget& window);

/// Gives the keyboard back after an activity: a control that was disabled meanwhile lost it to the next one,
/// where the user never went. Main thread.
class WindowFocus final : public QObject
{
  public:
    /// Both outlive this.
    WindowFocus(QWidget& window, const Activity& activity);

  private:
    QPointer<QWidget> before_; ///< had the keyboard when the activity began
};

} // namespace quillfern
