#pragma once

#include <QObject>
#include <QString>

namespace quillfern::desktop {

/// What to do about a failure that comes between the user and the end of the program.
enum class QuitChoice { TryAgain, QuitAnyway, Stay };

/// Shows messages and questions to the user. An interface, so that tests answer without a person. Every alert
/// is titled with getAppTitle() and belongs to the window `over`. Each call returns when the user has
/// answered. Main thread.
class Alerts
{
  public:
    virtual ~Alerts() = default;
    virtual void critical(QObject* over, const QString& message) = 0;
    virtual void information(QObject* over, const QString& message) = 0;
    /// A question with the answers "Yes" (the default) and "No".
    [[nodiscard]] virtual bool confirm(QObject* over, const QString& message) = 0;
    /// A failure with the answers "Try Again" (the default), "Quit Anyway" and "Cancel".
    [[nodiscard]] virtual QuitChoice chooseToQuit(QObject* over, const QString& message) = 0;
};

} // namespace quillfern::desktop
