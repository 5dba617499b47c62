#pragma once

#include "platform/desktop/Alerts.h"

#include <QCoreApplication>
#include <QObject>
#include <QString>

namespace quillfern {

/// The alerts as message boxes that block the window of the widget `over`. A message's line ends may be of
/// any kind; nothing in it is taken for markup.
class WidgetAlerts final : public desktop::Alerts
{
    Q_DECLARE_TR_FUNCTIONS(quillfern::WidgetAlerts)

  public:
    void critical(QObject* over, const QString& message) override;
    void information(QObject* over, const QString& message) override;
    /// Escape, and closing the box, mean "No".
    [[nodiscard]] bool confirm(QObject* over, const QString& message) override;
    /// Escape, and closing the box, mean "Cancel".
    [[nodiscard]] desktop::QuitChoice chooseToQuit(QObject* over, const QString& message) override;
};

} // namespace quillfern
