#pragma once

#include "filelist/FileItem.h"
#include "filelist/FileListOrder.h"

#include <QSet>
#include <cstdint>
#include <memory>
#include <vector>

namespace quillfern {

/// What the list holds, kept up to date with every change.
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

/// Told of every change of the list while it happens, in the terms of a table's rows.
class FileListObserver
{
  public:
    virtual ~FileListObserver() = default;
    virtual void aboutToInsert(int first, int last) = 0;
    virtual void inserted() = 0;
    virtual void aboutToRemove(int first, int last) = 0;
    virtual void removed() = 0;
    /// The rows from `first` to `last` are about to go before the row that is now at `before`.
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

    /// Not owned; one at most. Must outlive the list or be taken away.
    void setObserver(FileListObserver* observer) { observer_ = observer; }

    [[nodiscard]] int count() const { return static_cast<int>(items_.size()); }
    [[nodiscard]] bool empty() const { return items_.empty(); }
    [[nodiscard]] const FileItem& at(int row) const { return *items_[static_cast<std::size_t>(row)]; }
    [[nodiscard]] const FileTotals& totals() const { return totals_; }
    /// The paths of all items; a copy costs nothing.
    [[nodiscard]] const QSet<FilePath>& paths() const { return paths_; }
    /// Another number after every change of which items there are and in what order.
    [[nodiscard]] std::uint64_t revision() const { return revision_; }
    /// As they are now; they are valid until the next change.
    [[nodiscard]] std::vector<const FileItem*> items() const;
    /// Copies of them all, for another thread or for a job.
    [[nodiscard]] std::vector<FileItem> copies() const;

    /// Appends the items, in order, that have no equal yet. Returns how many those were.
    int append(std::vector<FileItem> batch);
    void remove(const std::vector<int>& rows);
    void clear();

    /// Moves the rows one place down, as blocks. Returns where they are now; empty, and nothing moved, when
    /// the last row is among them.
    std::vector<int> moveDown(const std::vector<int>& rows);
    /// The same one place up; nothing moves when row 0 is among them.
    std::vector<int> moveUp(const std::vector<int>& rows);

    void setIsSelected(int row, bool selected);
    /// Sets the marks of the rows, or turns each about when no value is given.
    void setIsSelected(const std::vector<int>& rows, std::optional<bool> selected);
    /// Lets the items that are equal to these take over password, pages and compression; those that have no
    /// equal are left out. They are looked for from row `from` on and then from the top: quick when they come
    /// in list order. Returns the row after the last one found, where to look for those after these.
    int takeCounts(const std::vector<FileItem>& counted, int from);

    /// Sorts, stably, by a column of FileItem::displayField(), and remembers the order.
    void sort(const FileListOrder& order);
    /// The list keeps its present order until the next sort().
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
