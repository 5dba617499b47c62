#pragma once

#include "platform/system/FilePath.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>

namespace quillfern::desktop {

/// A panel in which the user picks existing files or folders.
struct OpenPanel
{
    QString message;
    QStringList types;    ///< extensions; empty for any
    bool folders = false; ///< folders only; otherwise files only
    bool multiple = false;
    bool anyCase = false; ///< the types match in any mix of case; otherwise they are compared with case
};

/// A panel in which the user chooses where a file is to be written.
struct SavePanel
{
    QString message;
    QString type; ///< the extension, which is added where the user leaves it out
    QString name; ///< proposed
};

/// The file panels. An interface, so that tests choose files without a person. `over` is the window that a
/// panel belongs to and blocks; the panel is closed when that window is destroyed. Both calls return at once:
/// `chosen` is called later, and only when the user agreed. Main thread.
class FilePanels
{
  public:
    virtual ~FilePanels() = default;
    virtual void open(QObject* over, const OpenPanel& panel,
                      std::function<void(const QList<FilePath>&)> chosen) = 0;
    virtual void save(QObject* over, const SavePanel& panel, std::function<void(const FilePath&)> chosen) = 0;
};

} // namespace quillfern::desktop
