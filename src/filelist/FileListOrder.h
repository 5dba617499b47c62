#pragma once

#include "filelist/FileItem.h"

#include <functional>
#include <vector>

namespace quillfern {

/// By which column, named as in FileItem::displayField(), and in which direction a list is sorted.
struct FileListOrder
{
    QString column;
    bool ascending = true;

    /// The order that sorts `items`: the item at the i-th place is the one at `result[i]`. Stable in both
    /// directions. Marks and numbers sort as such, sizes by their bytes, dates by their moments (absent ones
    /// first), texts as NameOrder has them. A column that is none leaves everything in its place.
    ///
    /// Looks the dates of files up once each. Any thread, as long as nobody changes the items. When `goOn`
    /// says no, the items stay in their order.
    [[nodiscard]] std::vector<int> sorted(const std::vector<const FileItem*>& items,
                                          const std::function<bool()>& goOn) const;

    bool operator==(const FileListOrder&) const = default;
};

} // namespace quillfern
