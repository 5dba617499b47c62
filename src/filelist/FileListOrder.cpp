#include "filelist/FileListOrder.h"

#include "platform/system/FileFacts.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace quillfern {

namespace {

std::int64_t moment(const QDateTime& date)
{
    return date.isValid() ? date.toMSecsSinceEpoch() : std::numeric_limits<std::int64_t>::min();
}

template <class Keys>
std::vector<int> sortedBy(const Keys& keys, bool ascending)
{
    std::vector<int> rows(keys.size());
    std::iota(rows.begin(), rows.end(), 0);
    const auto key = [&](int row) -> const auto&
    {
        return keys[static_cast<std::size_t>(row)];
    };
    std::stable_sort(rows.begin(), rows.end(),
                     [&](int a, int b) { return ascending ? key(a) < key(b) : key(b) < key(a); });
    return rows;
}

std::variant<std::int64_t (*)(const FileItem&), QString (FileItem::*)() const> fieldOf(const QString& column)
{
    const QString field = column.toUpper();
    if (field == QLatin1String("NAME")) return &FileItem::name;
    if (field == QLatin1String("TYPE")) return &FileItem::type;
    if (field == QLatin1String("LOCATION")) return &FileItem::location;
    if (field == QLatin1String("ISSELECTED"))
        return [](const FileItem& i) { return std::int64_t{i.isSelected()}; };
    if (field == QLatin1String("PAGES")) return [](const FileItem& i) { return std::int64_t{i.pages()}; };
    if (field == QLatin1String("SIZEINKB")) return [](const FileItem& i) { return std::int64_t{i.size()}; };
    if (field == QLatin1String("DATEMODIFIED"))
        return [](const FileItem& i) { return moment(fileTimes(i.filePath()).modified); };
    if (field == QLatin1String("DATECREATED"))
        return [](const FileItem& i) { return moment(fileTimes(i.filePath()).created); };
    if (field == QLatin1String("DATEACCESSED"))
        return [](const FileItem& i) { return moment(fileTimes(i.filePath()).accessed); };
    return [](const FileItem&) { return std::int64_t{0}; };
}

} // namespace

FileListSorter::FileListSorter(const FileListOrder& order)
    : field_(fieldOf(order.column)), ascending_(order.ascending)
{
}

void FileListSorter::add(const FileItem& item)
{
    if (const Text* text = std::get_if<Text>(&field_))
        texts_.push_back(names_.key((item.**text)()));
    else
        numbers_.push_back(std::get<Number>(field_)(item));
}

std::vector<int> FileListSorter::sorted() const
{
    return std::holds_alternative<Text>(field_) ? sortedBy(texts_, ascending_)
                                                : sortedBy(numbers_, ascending_);
}

} // namespace quillfern
