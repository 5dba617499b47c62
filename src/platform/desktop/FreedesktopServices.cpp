#include "platform/desktop/FreedesktopServices.h"

#include "platform/system/LogLine.h"
#include "platform/system/NativePath.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>

namespace quillfern {

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

void openFolders(const QStringList& paths, const FreedesktopServices::OpenUrl& openUrl)
{
    QStringList folders;
    for (const QString& path : paths)
        folders.append(QFileInfo(path).path());
    folders.removeDuplicates();
    for (const QString& folder : folders)
        openUrl(fileUrl(folder));
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

void FreedesktopServices::open(const QString& path)
{
    onMainThread([openUrl = openUrl_, url = fileUrl(path)] { openUrl(url); });
}

void FreedesktopServices::reveal(const QStringList& paths)
{
    askFileManager(QStringLiteral("ShowItems"), paths);
}

void FreedesktopServices::showProperties(const QStringList& paths)
{
    askFileManager(QStringLiteral("ShowItemProperties"), paths);
}

void FreedesktopServices::askFileManager(const QString& method, const QStringList& paths)
{
    if (paths.isEmpty()) return;
    QStringList urls;
    for (const QString& path : paths)
        urls.append(QString::fromLatin1(fileUrl(path).toEncoded()));
    const QString name = QStringLiteral("org.freedesktop.FileManager1");
    QDBusMessage message =
        QDBusMessage::createMethodCall(name, QStringLiteral("/org/freedesktop/FileManager1"), name, method);
    message << urls << QString(); // the second: a start-up notification nobody asked for
    onMainThread([bus = bus_, message, paths, openUrl = openUrl_] {
        auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(message), QCoreApplication::instance());
        QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, paths, openUrl] {
            const QDBusPendingReply<> reply = *answer;
            if (reply.isError()) openFolders(paths, openUrl);
            answer->deleteLater();
        });
    });
}

} // namespace quillfern
