#include "platform/desktop/FreedesktopServices.h"

#include "platform/system/LogLine.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>

namespace quillfern::desktop {

namespace {

void openWithDesktop(const QUrl& url)
{
    if (!QDesktopServices::openUrl(url))
        logLine(QStringLiteral("no application opens %1").arg(url.toDisplayString()));
}

/// Runs on the main thread, which owns the connection to the desktop; at once when called there.
void onMainThread(const std::function<void()>& work)
{
    QMetaObject::invokeMethod(QCoreApplication::instance(), work);
}

void openFolders(const QList<FilePath>& paths, const FreedesktopServices::OpenUrl& openUrl)
{
    QList<FilePath> folders;
    for (const FilePath& path : paths)
        if (const FilePath folder = path.parent(); !folders.contains(folder)) folders.append(folder);
    for (const FilePath& folder : folders)
        openUrl(folder.url());
}

} // namespace

FreedesktopServices::FreedesktopServices()
    : FreedesktopServices(QDBusConnection::sessionBus(), openWithDesktop)
{
}

FreedesktopServices::FreedesktopServices(QDBusConnection bus, OpenUrl openUrl)
    : bus_(std::move(bus)), openUrl_(std::move(openUrl))
{
}

void FreedesktopServices::open(const FilePath& path)
{
    onMainThread([openUrl = openUrl_, url = path.url()] { openUrl(url); });
}

void FreedesktopServices::reveal(const QList<FilePath>& paths)
{
    askFileManager(QStringLiteral("ShowItems"), paths);
}

void FreedesktopServices::showProperties(const QList<FilePath>& paths)
{
    askFileManager(QStringLiteral("ShowItemProperties"), paths);
}

void FreedesktopServices::askFileManager(const QString& method, const QList<FilePath>& paths)
{
    if (paths.isEmpty()) return;
    QStringList urls;
    for (const FilePath& path : paths)
        urls.append(QString::fromLatin1(path.url().toEncoded()));
    const QString name = QStringLiteral("org.freedesktop.FileManager1");
    QDBusMessage message =
        QDBusMessage::createMethodCall(name, QStringLiteral("/org/freedesktop/FileManager1"), name, method);
    message << urls << QString(); // the second is a start-up notification id; there is none
    onMainThread([bus = bus_, message, paths, openUrl = openUrl_] {
        auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(message), QCoreApplication::instance());
        QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, paths, openUrl] {
            const QDBusPendingReply<> reply = *answer;
            if (reply.isError()) openFolders(paths, openUrl);
            answer->deleteLater();
        });
    });
}

} // namespace quillfern::desktop
