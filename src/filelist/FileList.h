#pragma once

#include "filelist/FileItem.h"
#include "filelist/FileListOrder.h"
#include "platform/system/FilePath.h"

#include <QSet>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quillfern {

/// The counts of what the list holds, updated with every change.
struct FileTotals
{
    std::int64_t files = 0;
    std::int64_t pdfPages = 0;
    std::int64_t tiffPages = 0;
    std::int64_t otherPages = 0;

    bool operator==(const FileTotals&) const = default;
};

/// The text of the totals label.
[[nodiscard]] QString totalLabelText(const FileTotals& totals);

/// Is notified of every change of the list, before and after the change, in terms of a table's rows.
class FileListObserver
{
  public:
    virtual ~FileListObserver() = default;
    virtual void aboutToInsert(int first, int last) = 0;
    virtual void inserted() = 0;
    virtual void aboutToRemove(int first, int last) = 0;
    virtual void removed() = 0;
    /// The rows from `first` to `last` are about to be moved in front of the row that is now at `before`.
    virtual void aboutToMove(int first, int last, int before) = 0;
    virtual void moved() = 0;
    virtual void aboutToReorder() = 0;
    /// The row that was at `i` is now at `newRows[i]`.
    virtual void reordered(const std::vector<int>& newRows) = 0;
    virtual void checkMarksChanged(int first, int last) = 0;
    virtual void rowChanged(int row) = 0;
};

/// The ordered list of input files, which never holds two equal items. Rows are counted from 0; the rows of a
/// selection are given ascending, each once. Main thread.
class FileList
{
  public:
    FileList() = default;
    FileList(const FileList&) = delete;
    FileList& operator=(const FileList&) = delete;

    /// Not owned; one at most. The observer must outlive the list, unless it is replaced or set to null
    /// before.
    void setObserver(FileListObserver* observer) { observer_ = observer; }

    [[nodiscard]] int count() const { return static_cast<int>(items_.size()); }
    [[nodiscard]] bool empty() const { return items_.empty(); }
    [[nodiscard]] const FileItem& at(int row) const { return *items_[static_cast<std::size_t>(row)]; }
    [[nodiscard]] const FileTotals& totals() const { return totals_; }
    /// The paths of all items; a copy costs nothing.
    [[nodiscard]] const QSet<FilePath>& paths() const { return paths_; }
    /// A number that changes with every change of the items or of their order.
    [[nodiscard]] std::uint64_t revision() const { return revision_; }
    /// The items as they are now; the pointers are valid until the next change.
    [[nodiscard]] std::vector<const FileItem*> items() const;
    /// Copies of all items, for another thread or for a job.
    [[nodiscard]] std::vector<FileItem> copies() const;

    /// Appends, in order, the items that have no equal in the list yet. Returns how many were appended.
    int append(std::vector<FileItem> batch);
    void remove(const std::vector<int>& rows);
    void clear();

    /// Moves the rows one place down, as blocks. Returns their new rows; empty, with nothing moved, when the
    /// last row is among them.
    std::vector<int> moveDown(const std::vector<int>& rows);
    /// Moves the rows one place up; nothing moves when row 0 is among them.
    std::vector<int> moveUp(const std::vector<int>& rows);

    void setIsSelected(int row, bool selected);
    /// Sets the check marks of the rows, or inverts each mark when no value is given.
    void setIsSelected(const std::vector<int>& rows, std::optional<bool> selected);
    /// Copies password, pages and compression of each counted item to the equal item of the list; a counted
    /// item without an equal is ignored. The search begins at row `from` and goes on from the top, which is
    /// quick for items in list order. Returns the row after the last item found, as `from` for the next call.
    int takeCounts(const std::vector<FileItem>& counted, int from);

    /// Sorts, stably, by a column of FileItem::displayField(), and remembers the order.
    void sort(const FileListOrder& order);
    /// Forgets the column that the list was sorted by; the rows stay in their order until the next sort().
    void forgetOrder() { order_.reset(); }
    [[nodiscard]] const std::optional<FileListOrder>& order() const { return order_; }
    /// Puts the row `rows[i]` at `i`; the result of a FileListSorter for the present items.
    void arrange(const std::vector<int>& rows);

  private:
    using Items = std::vector<std::unique_ptr<FileItem>>; // small to move, however many rows
    void moveBlock(int first, int last, int before);
    void removeRange(int first, int last);
    void tally(const FileItem& item, int sign);
    template <class Tell>
    void tell(const Tell& call) const
    {
        if (observer_) call(*observer_);
    }

    Items items_;
    QSet<FilePath> paths_;
    FileTotals totals_;
    std::uint64_t revision_ = 0;
    std::optional<FileListOrder> order_;
    FileListObserver* observer_ = nullptr;
};

} // namespace quillfern
