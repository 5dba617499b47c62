#pragma once

#include "platform/desktop/Alerts.h"

#include <QObject>
#include <QString>

namespace quillfern {

/// The alerts as message boxes that block the window of the widget `over`. A message's line ends may be of
/// any kind; nothing in it is taken for markup.
class WidgetAlerts final : public desktop::Alerts
{
  public:
    void critical(QObject* over, const QString& message) override;
    void information(QObject* over, const QString& message) override;
    /// Escape, and closing the box, mean "No".
    [[nodiscard]] bool confirm(QObject* over, const QString& message) override;
};

} // namespace quillfern
