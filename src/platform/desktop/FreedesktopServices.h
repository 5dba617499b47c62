#pragma once

#include "platform/desktop/DesktopServices.h"
#include "platform/system/FilePath.h"

#include <QDBusConnection>
#include <QList>
#include <QString>
#include <QUrl>
#include <functional>

namespace quillfern::desktop {

/// The desktop's own services: the user's default applications, and whichever file manager answers to
/// org.freedesktop.FileManager1 on the session bus. Where none does, the files' folders are opened instead.
/// Requests are sent without waiting for an answer. Needs an application object, which outlives this.
class FreedesktopServices final : public DesktopServices
{
  public:
    using OpenUrl = std::function<void(const QUrl&)>;

    FreedesktopServices();
    /// Uses `bus` in place of the session bus, and `openUrl` in place of the user's default applications.
    FreedesktopServices(QDBusConnection bus, OpenUrl openUrl);

    void open(const FilePath& path) override;
    void reveal(const QList<FilePath>& paths) override;
    void showProperties(const QList<FilePath>& paths) override;

  private:
    void askFileManager(const QString& method, const QList<FilePath>& paths);

    QDBusConnection bus_;
    OpenUrl openUrl_;
};

} // namespace quillfern::desktop
