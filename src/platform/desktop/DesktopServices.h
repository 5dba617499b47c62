#pragma once

#include "platform/system/FilePath.h"

#include <QList>

namespace quillfern::desktop {

/// Opens and shows files and folders with the programs of the desktop. An interface, so that tests see what
/// would have been opened. All operations may be called from any thread; a refused request is not an error.
class DesktopServices
{
  public:
    virtual ~DesktopServices() = default;
    /// Opens a file or a folder with its default application.
    virtual void open(const FilePath& path) = 0;
    /// Shows files, selected, in the file manager.
    virtual void reveal(const QList<FilePath>& paths) = 0;
    /// Shows the file manager's properties window of each file.
    virtual void showProperties(const QList<FilePath>& paths) = 0;
};

/// A machine without a desktop (a server, a script): every request does nothing.
class NoDesktop final : public DesktopServices
{
  public:
    void open(const FilePath&) override {}
    void reveal(const QList<FilePath>&) override {}
    void showProperties(const QList<FilePath>&) override {}
};

} // namespace quillfern::desktop
