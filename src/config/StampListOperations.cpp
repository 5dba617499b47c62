#include "config/StampListOperations.h"

#include "platform/system/Guarded.h"

#include <algorithm>

namespace quillfern {

IStampItem& StampListOperations::stampAt(int row) const
{
    if (row < 0 || static_cast<std::size_t>(row) >= number_.stamps.size())
        throw Failure(QStringLiteral("there is no stamp in row %1").arg(row));
    return *number_.stamps[static_cast<std::size_t>(row)];
}

RowSelection StampListOperations::addStamp(std::shared_ptr<IStampItem> stamp)
{
    guarded("Error in [addStamp:] : %@", [&] {
        if (!stamp) throw Failure(QStringLiteral("there is no stamp to add"));
        number_.stamps.push_back(std::move(stamp));
    });
    const int last = static_cast<int>(number_.stamps.size()) - 1;
    return {{last}, last};
}

void StampListOperations::announce(IStampItem& stamp) const
{
    if (stampGoes_) stampGoes_(stamp);
}

void StampListOperations::removeRows(const std::vector<int>& rows)
{
    for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
        stampAt(*row); // throws for a row that does not exist
        number_.stamps.erase(number_.stamps.begin() + *row);
    }
}

RowSelection StampListOperations::removeStampAction(const std::vector<int>& selectedRows)
{
    const int next = selectedRows.empty() ? 0 : selectedRows.back() - 1;
    guarded("Error in [removeStampAction:] : %@", [&] {
        if (selectedRows.empty()) throw Failure(QStringLiteral("no stamp is selected"));
        announce(stampAt(selectedRows.front()));
        removeRows(selectedRows);
    });
    return {{next}, next};
}

RowSelection StampListOperations::removeStamp(const IStampItem& stamp, const std::vector<int>& selectedRows)
{
    const int next = selectedRows.empty() ? 0 : selectedRows.back() - 1;
    guarded("Error in [removeStamp:] : %@", [&] {
        const auto isIt = [&](const auto& candidate) { return candidate.get() == &stamp; };
        const auto found = std::find_if(number_.stamps.begin(), number_.stamps.end(), isIt);
        if (found == number_.stamps.end()) throw Failure(QStringLiteral("the stamp is not in the list"));
        // The stamp's editor may have made this call: the stamp lives until the call returns.
        const std::shared_ptr<IStampItem> kept = *found;
        announce(*kept);
        if (!selectedRows.empty() && &stampAt(selectedRows.front()) == &stamp)
            removeRows(selectedRows);
        else
            number_.stamps.erase(found);
    });
    return {{next}, next};
}

RowSelection StampListOperations::moveStampUpAction(const std::vector<int>& selectedRows)
{
    RowSelection selection;
    guarded("Error in [moveStampUpAction:] : %@", [&] {
        for (const int row : selectedRows) {
            stampAt(row);
            stampAt(row - 1);
            std::swap(number_.stamps[static_cast<std::size_t>(row)],
                      number_.stamps[static_cast<std::size_t>(row - 1)]);
            selection.rows.push_back(row - 1);
        }
    });
    if (!selection.rows.empty()) selection.scrollTo = selection.rows.front();
    return selection;
}

RowSelection StampListOperations::moveStampDownAction(const std::vector<int>& selectedRows)
{
    RowSelection selection;
    guarded("Error in [moveStampDownAction:] : %@", [&] {
        for (auto row = selectedRows.rbegin(); row != selectedRows.rend(); ++row) {
            stampAt(*row);
            stampAt(*row + 1);
            std::swap(number_.stamps[static_cast<std::size_t>(*row)],
                      number_.stamps[static_cast<std::size_t>(*row + 1)]);
            selection.rows.insert(selection.rows.begin(), *row + 1);
        }
    });
    if (!selection.rows.empty()) selection.scrollTo = selection.rows.back();
    return selection;
}

bool StampListOperations::canMoveUp(const std::vector<int>& selectedRows) const
{
    return !selectedRows.empty() && selectedRows.front() > 0;
}

bool StampListOperations::canMoveDown(const std::vector<int>& selectedRows) const
{
    return !selectedRows.empty() && selectedRows.back() + 1 < static_cast<int>(number_.stamps.size());
}

void StampListOperations::resetNumberCounters()
{
    number_.beginUpdate();
    const bool changed = number_.startPage() != 1 || number_.endPage() != 0 || number_.startNumber() != 1 ||
                         number_.numberSteps() != 1;
    number_.setStartPage(1);
    number_.setEndPage(0);
    number_.setStartNumber(1);
    number_.setNumberSteps(1);
    number_.endUpdate(changed);
}

} // namespace quillfern
