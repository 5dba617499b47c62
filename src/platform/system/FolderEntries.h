#pragma once

#include "platform/system/FilePath.h"

#include <QString>
#include <functional>
#include <vector>

namespace quillfern {

struct FolderEntry
{
    QString name; ///< in the text form of NativePath.h
    /// A folder, but not a link to one: a walk into folders never leaves its tree and never goes in circles.
    bool isFolder = false;
    bool isFile = false; ///< a regular file, or a link that does not lead to a folder, pipe or device
};

/// Everything in a folder but "." and "..", in the order of the file system; as much of it as can be read.
/// `goOn` is called before each entry; reading ends when it returns false.
[[nodiscard]] std::vector<FolderEntry> folderEntries(const FilePath& folder,
                                                     const std::function<bool()>& goOn);

} // namespace quillfern
