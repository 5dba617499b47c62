#include "filelist/FileList.h"

#include <QCoreApplication>
#include <algorithm>

namespace quillfern {

namespace {

/// Neighbouring rows as ranges, first and last.
std::vector<std::pair<int, int>> runs(const std::vector<int>& rows)
{
    std::vector<std::pair<int, int>> ranges;
    for (const int row : rows) {
        if (ranges.empty() || ranges.back().second + 1 != row) ranges.emplace_back(row, row);
        ranges.back().second = row;
    }
    return ranges;
}

std::vector<int> shifted(std::vector<int> rows, int by)
{
    for (int& row : rows)
        row += by;
    return rows;
}

} // namespace

QString totalLabelText(const FileTotals& totals)
{
    return QCoreApplication::translate(
               "quillfern::FileList",
               "%1 Total file(s); Total page count of PDF files: %2  TIFF files: %3  Other files: %4")
        .arg(totals.files)
        .arg(totals.pdfPages)
        .arg(totals.tiffPages)
        .arg(totals.otherPages);
}

std::vector<const FileItem*> FileList::items() const
{
    std::vector<const FileItem*> pointers;
    pointers.reserve(items_.size());
    for (const auto& item : items_)
        pointers.push_back(item.get());
    return pointers;
}

std::vector<FileItem> FileList::copies() const
{
    std::vector<FileItem> list;
    list.reserve(items_.size());
    for (const auto& item : items_)
        list.push_back(*item);
    return list;
}

void FileList::tally(const FileItem& item, int sign)
{
    totals_.files += sign;
    const FileType type = item.fileType();
    (type == FileType::Pdf    ? totals_.pdfPages
     : type == FileType::Tiff ? totals_.tiffPages
                              : totals_.otherPages) += std::int64_t{sign} * item.pages();
}

int FileList::append(std::vector<FileItem> batch)
{
    Items fresh;
    for (FileItem& item : batch) {
        const qsizetype before = paths_.size();
        paths_.insert(item.filePath());
        if (paths_.size() > before) fresh.push_back(std::make_unique<FileItem>(std::move(item)));
    }
    if (fresh.empty()) return 0;
    const int added = static_cast<int>(fresh.size());
    ++revision_;
    tell([&](FileListObserver& o) { o.aboutToInsert(count(), count() + added - 1); });
    for (auto& item : fresh) {
        tally(*item, 1);
        items_.push_back(std::move(item));
    }
    tell([](FileListObserver& o) { o.inserted(); });
    return added;
}

void FileList::removeRange(int first, int last)
{
    ++revision_;
    tell([&](FileListObserver& o) { o.aboutToRemove(first, last); });
    const auto begin = items_.begin() + first;
    const auto end = items_.begin() + last + 1;
    for (auto it = begin; it != end; ++it) {
        tally(**it, -1);
        paths_.remove((*it)->filePath());
    }
    items_.erase(begin, end);
    tell([](FileListObserver& o) { o.removed(); });
}

void FileList::remove(const std::vector<int>& rows)
{
    auto ranges = runs(rows);
    // Removing a range costs a pass over the list and the view, so thousands of scattered rows would be slow.
    // They are moved to the end first, which is one pass, and then removed as one range.
    constexpr std::size_t many = 16;
    if (ranges.size() > many) {
        std::vector<int> order;
        order.reserve(items_.size());
        auto next = rows.begin();
        for (int row = 0; row < count(); ++row) {
            if (next != rows.end() && *next == row)
                ++next;
            else
                order.push_back(row);
        }
        const int kept = static_cast<int>(order.size());
        order.insert(order.end(), rows.begin(), rows.end());
        arrange(order);
        ranges = {{kept, count() - 1}};
    }
    for (auto range = ranges.rbegin(); range != ranges.rend(); ++range)
        removeRange(range->first, range->second);
}

void FileList::clear()
{
    if (!empty()) removeRange(0, count() - 1);
}

void FileList::moveBlock(int first, int last, int before)
{
    ++revision_;
    tell([&](FileListObserver& o) { o.aboutToMove(first, last, before); });
    const auto at = [&](int row) { return items_.begin() + row; };
    if (before > last)
        std::rotate(at(first), at(last + 1), at(before));
    else
        std::rotate(at(before), at(first), at(last + 1));
    tell([](FileListObserver& o) { o.moved(); });
}

std::vector<int> FileList::moveDown(const std::vector<int>& rows)
{
    if (rows.empty() || rows.back() + 1 >= count()) return {};
    const auto ranges = runs(rows);
    for (auto range = ranges.rbegin(); range != ranges.rend(); ++range)
        moveBlock(range->first, range->second, range->second + 2);
    return shifted(rows, 1);
}

std::vector<int> FileList::moveUp(const std::vector<int>& rows)
{
    if (rows.empty() || rows.front() < 1) return {};
    for (const auto& [first, last] : runs(rows))
        moveBlock(first, last, first - 1);
    return shifted(rows, -1);
}

void FileList::setIsSelected(int row, bool selected)
{
    setIsSelected(std::vector{row}, selected);
}

void FileList::setIsSelected(const std::vector<int>& rows, std::optional<bool> selected)
{
    if (rows.empty()) return;
    for (const int row : rows) {
        FileItem& item = *items_[static_cast<std::size_t>(row)];
        item.setIsSelected(selected.value_or(!item.isSelected()));
    }
    tell([&](FileListObserver& o) { o.checkMarksChanged(rows.front(), rows.back()); });
}

int FileList::takeCounts(const std::vector<FileItem>& counted, int from)
{
    for (const FileItem& result : counted) {
        if (!paths_.contains(result.filePath())) continue;
        do {
            from = from < count() ? from + 1 : 1; // one round at most: the item is in the list
        } while (!(at(from - 1) == result));
        FileItem& item = *items_[static_cast<std::size_t>(from - 1)];
        tally(item, -1);
        item.takeCount(result);
        tally(item, 1);
        tell([&](FileListObserver& o) { o.rowChanged(from - 1); });
    }
    return from;
}

void FileList::sort(const FileListOrder& order)
{
    order_ = order;
    FileListSorter sorter(order);
    for (const auto& item : items_)
        sorter.add(*item);
    arrange(sorter.sorted());
}

void FileList::arrange(const std::vector<int>& rows)
{
    if (std::is_sorted(rows.begin(), rows.end())) return;
    ++revision_;
    tell([](FileListObserver& o) { o.aboutToReorder(); });
    Items arranged(items_.size());
    std::vector<int> newRows(items_.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto old = static_cast<std::size_t>(rows[i]);
        arranged[i] = std::move(items_[old]);
        newRows[old] = static_cast<int>(i);
    }
    items_ = std::move(arranged);
    tell([&](FileListObserver& o) { o.reordered(newRows); });
}

} // namespace quillfern
