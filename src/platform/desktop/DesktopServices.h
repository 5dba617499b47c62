#pragma once

#include <QString>
#include <QStringList>

namespace quillfern {

/// What the desktop does for us with files. A seam, so that tests see what would have been opened. All
/// operations take absolute paths (see NativePath.h) and may be called from any thread; a refused request is
/// not an error.
class DesktopServices
{
  public:
    virtual ~DesktopServices() = default;
    /// Opens a file or a folder with its default application.
    virtual void open(const QString& path) = 0;
    /// Shows files, selected, in the file manager.
    virtual void reveal(const QStringList& paths) = 0;
    /// Shows the file manager's properties window of each file.
    virtual void showProperties(const QStringList& paths) = 0;
};

/// A machine without a desktop (a server, a script): every request is quietly declined.
class NoDesktop final : public DesktopServices
{
  public:
    void open(const QString&) override {}
    void reveal(const QStringList&) override {}
    void showProperties(const QStringList&) override {}
};

} // namespace quillfern
