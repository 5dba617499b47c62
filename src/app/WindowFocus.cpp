#include "app/WindowFocus.h"

#include "app/Activity.h"

#include <utility>

namespace quillfern {

void endEditing(const QWidget& window)
{
    // A field hands in what was typed when it loses the keyboard.
    if (QWidget* field = window.focusWidget()) {
        field->clearFocus();
        field->setFocus();
    }
}

WindowFocus::WindowFocus(QWidget& window, const Activity& activity)
{
    connect(&activity, &Activity::aboutToBegin, this, [this, &window] { before_ = window.focusWidget(); });
    connect(&activity, &Activity::ended, this, [this] {
        QWidget* const before = std::exchange(before_, nullptr);
        if (before && before->isEnabled() && before->isVisible()) before->setFocus();
    });
}

} // namespace quillfern
