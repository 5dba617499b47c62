#include "platform/system/Folders.h"

#include "platform/system/FileAccess.h"

namespace quillfern {

namespace {

/// Read as bytes: Qt would lose a folder whose name is not UTF-8.
FilePath folderOf(const char* variable, const char* usual)
{
    const QByteArray named = qgetenv(variable);
    return named.startsWith('/') ? FilePath::fromBytes(named)
                                 : homeFolder().child(QString::fromLatin1(usual));
}

} // namespace

FilePath Folders::getAppPath() const
{
    return applicationSupport().child(QStringLiteral("Orvane/Quillfern1"));
}

bool Folders::createApplicationUsersFolder(const QString& name, QString* error) const
{
    const FilePath path = getAppPath().child(name);
    if (makeFolders(path)) return true;
    if (error) *error = QStringLiteral("the folder %1 cannot be created").arg(path.readable());
    return false;
}

FilePath UserFolders::applicationSupport() const
{
    return folderOf("XDG_DATA_HOME", ".local/share");
}

FilePath UserFolders::configuration() const
{
    return folderOf("XDG_CONFIG_HOME", ".config");
}

FilePath homeFolder()
{
    const FilePath home = FilePath::fromBytes(qgetenv("HOME"));
    return home.isEmpty() ? FilePath::fromBytes("/") : home;
}

QString getAppTitle(const QString& suffix)
{
    return QStringLiteral("Quillfern") + suffix;
}

} // namespace quillfern
