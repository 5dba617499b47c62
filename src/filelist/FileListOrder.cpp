#include "filelist/FileListOrder.h"

#include "filelist/NameOrder.h"
#include "platform/system/FileFacts.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>

namespace quillfern {

namespace {

using Items = std::vector<const FileItem*>;
using GoOn = std::function<bool()>;

/// Every key is made once: making one is dearer than many comparisons.
template <class KeyOf>
std::vector<int> sortedBy(const Items& items, bool ascending, const GoOn& goOn, const KeyOf& keyOf)
{
    std::vector<int> rows(items.size());
    std::iota(rows.begin(), rows.end(), 0);
    std::vector<decltype(keyOf(*items.front()))> keys;
    keys.reserve(items.size());
    for (const FileItem* item : items) {
        if (!goOn()) return rows;
        keys.push_back(keyOf(*item));
    }
    const auto key = [&](int row) -> const auto&
    {
        return keys[static_cast<std::size_t>(row)];
    };
    if (ascending)
        std::stable_sort(rows.begin(), rows.end(), [&](int a, int b) { return key(a) < key(b); });
    else
        std::stable_sort(rows.begin(), rows.end(), [&](int a, int b) { return key(b) < key(a); });
    return rows;
}

std::int64_t moment(const QDateTime& date)
{
    return date.isValid() ? date.toMSecsSinceEpoch() : std::numeric_limits<std::int64_t>::min();
}

} // namespace

std::vector<int> FileListOrder::sorted(const Items& items, const GoOn& goOn) const
{
    const NameOrder names;
    const auto by = [&](const auto& keyOf) { return sortedBy(items, ascending, goOn, keyOf); };
    const QString field = column.toUpper();
    if (field == QLatin1String("ISSELECTED"))
        return by([](const FileItem& i) -> int { return i.isSelected(); });
    if (field == QLatin1String("NAME")) return by([&](const FileItem& i) { return names.key(i.name()); });
    if (field == QLatin1String("PAGES")) return by([](const FileItem& i) { return i.pages(); });
    if (field == QLatin1String("SIZEINKB")) return by([](const FileItem& i) { return i.size(); });
    if (field == QLatin1String("TYPE")) return by([&](const FileItem& i) { return names.key(i.type()); });
    if (field == QLatin1String("DATEMODIFIED"))
        return by([](const FileItem& i) { return moment(fileTimes(i.path()).modified); });
    if (field == QLatin1String("DATECREATED"))
        return by([](const FileItem& i) { return moment(fileTimes(i.path()).created); });
    if (field == QLatin1String("DATEACCESSED"))
        return by([](const FileItem& i) { return moment(fileTimes(i.path()).accessed); });
    if (field == QLatin1String("LOCATION"))
        return by([&](const FileItem& i) { return names.key(i.location()); });
    return by([](const FileItem&) { return 0; });
}

} // namespace quillfern
