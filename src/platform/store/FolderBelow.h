#pragma once

#include "platform/system/FilePath.h"

#include <QStringList>

namespace quillfern::store {

/// A folder some levels below another one, held open, so that what is done in it stays below the other one
/// whatever becomes of the names on the way.
class FolderBelow
{
  public:
    /// Opens the folder that `names` (in the text form of NativePath.h) lead to from `root`, one name a
    /// level, and makes those that are missing. Throws Failure, also for a name that is not one of a folder
    /// itself: a link, or "..".
    FolderBelow(const FilePath& root, const QStringList& names);
    ~FolderBelow();
    FolderBelow(const FolderBelow&) = delete;
    FolderBelow& operator=(const FolderBelow&) = delete;

    [[nodiscard]] int descriptor() const { return descriptor_; }
    [[nodiscard]] const FilePath& path() const { return path_; }

  private:
    void enter(const QString& name);

    FilePath path_;
    int descriptor_;
};

} // namespace quillfern::store
