#include "platform/system/Folders.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace quillfern {

QString Folders::getAppPath() const
{
    const QString base = applicationSupport();
    return base.isEmpty() ? QString() : QDir(base).filePath(QStringLiteral("Orvane/Quillfern1"));
}

bool Folders::createApplicationUsersFolder(const QString& name, QString* error) const
{
    const QString path = QDir(getAppPath()).filePath(name);
    if (QFileInfo(path).isDir()) return true;
    if (QDir().mkpath(path)) return true;
    if (error) *error = QStringLiteral("the folder %1 cannot be created").arg(path);
    return false;
}

QString UserFolders::applicationSupport() const
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

QString UserFolders::configuration() const
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

QString getAppTitle(const QString& suffix)
{
    return QStringLiteral("Quillfern") + suffix;
}

} // namespace quillfern
