#pragma once

#include "filelist/NameOrder.h"
#include "platform/system/FolderEntries.h"

#include <functional>

namespace quillfern {

/// Finds the files of a folder that can be processed, its subfolders' too when asked for: the files of each
/// folder before its subfolders, both in the order people sort names in.
///
/// Passed over are hidden files and folders, the insides of packages (folders that the suffix of a bundle
/// marks, such as Notes.app), folders that cannot be read, and links to folders, so that a walk never leaves
/// the folder it was given and never goes in circles. A link to a file is taken.
class FolderWalk
{
  public:
    /// `visit` gets the path of each file as it is found. `goOn` is asked often and ends the walk when it
    /// says no. Both are called on the walking thread.
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
