#pragma once

#include "filelist/NameOrder.h"
#include "platform/system/FilePath.h"
#include "platform/system/FolderEntries.h"

#include <QString>
#include <functional>
#include <utility>
#include <vector>

namespace quillfern {

/// Finds the files of a folder that can be processed, and those of its subfolders if asked for: the files of
/// each folder before its subfolders, both in NameOrder.
///
/// Passed over are hidden files and folders, the contents of packages (folders with the suffix of a bundle,
/// such as Notes.app), folders that cannot be read, and links to folders, so that a walk never leaves the
/// folder it was given and never goes in circles. A link to a file is taken.
class FolderWalk
{
  public:
    /// `visit` gets the path of each file as it is found. `goOn` is called often; the walk ends when it
    /// returns false. Both are called on the walking thread.
    FolderWalk(std::function<void(const FilePath&)> visit, std::function<bool()> goOn)
        : visit_(std::move(visit)), goOn_(std::move(goOn))
    {
    }

    void walk(const FilePath& folder, bool includeSubfolders);

  private:
    [[nodiscard]] std::vector<QString> sorted(std::vector<QString> names) const;

    std::function<void(const FilePath&)> visit_;
    std::function<bool()> goOn_;
    NameOrder order_;
};

} // namespace quillfern
