#pragma once

#include "filelist/FileItem.h"
#include "filelist/NameOrder.h"

#include <QCollator>
#include <QString>
#include <cstdint>
#include <variant>
#include <vector>

namespace quillfern {

/// By which column, named as in FileItem::displayField(), and in which direction a list is sorted.
struct FileListOrder
{
    QString column;
    bool ascending = true;

    bool operator==(const FileListOrder&) const = default;
};

/// Sorts items that are added one by one. add() computes an item's sort key once, which may read a date from
/// the file system, so that most of the work is done while the items are still being found. Not for use from
/// two threads at once.
class FileListSorter
{
  public:
    explicit FileListSorter(const FileListOrder& order);

    void add(const FileItem& item);
    /// The order: the item at the i-th place is the one added at `result[i]`. Stable in both directions.
    /// Marks and numbers sort as such, sizes by their bytes, dates by their moments (absent ones first),
    /// texts as NameOrder has them. An unknown column leaves every item in its place.
    [[nodiscard]] std::vector<int> sorted() const;

  private:
    using Number = std::int64_t (*)(const FileItem&);
    using Text = QString (FileItem::*)() const;

    std::variant<Number, Text> field_;
    bool ascending_;
    NameOrder names_;
    std::vector<std::int64_t> numbers_; ///< only one of these two vectors is filled
    std::vector<QCollatorSortKey> texts_;
};

} // namespace quillfern
