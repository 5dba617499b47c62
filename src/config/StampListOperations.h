#pragma once

#include "config/Numbering.h"
#include "stamps/IStampItem.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quillfern {

/// What a list should show after an operation: exactly these rows selected (no row for an empty vector or a
/// row of -1), and this row scrolled into view.
struct RowSelection
{
    std::vector<int> rows;
    int scrollTo = -1;
};

/// The user's operations on the list of stamps, for any view of the list. Rows are indices into the list. The
/// caller reloads its list and applies the returned selection after each operation, also after one that
/// failed: failures are logged, and what an operation changed before its failure stays. Main thread.
class StampListOperations
{
  public:
    /// `stampGoes` is called for the stamp whose editor a removal has to end, while the stamp is still in the
    /// list. It may be empty.
    explicit StampListOperations(Numbering& number, std::function<void(IStampItem&)> stampGoes = {})
        : number_(number), stampGoes_(std::move(stampGoes))
    {
    }

    /// Appends the stamp and selects it.
    RowSelection addStamp(std::shared_ptr<IStampItem> stamp);
    /// Removes the stamps in the selected rows (ascending).
    RowSelection removeStampAction(const std::vector<int>& selectedRows);
    /// Removes one stamp; when this stamp is the first selected one, all selected stamps are removed.
    RowSelection removeStamp(const IStampItem& stamp, const std::vector<int>& selectedRows);
    /// Moves the selected stamps by one row. Moving row 0 up, or the last one down, fails and changes
    /// nothing.
    RowSelection moveStampUpAction(const std::vector<int>& selectedRows);
    RowSelection moveStampDownAction(const std::vector<int>& selectedRows);

    [[nodiscard]] bool canMoveUp(const std::vector<int>& selectedRows) const;
    [[nodiscard]] bool canMoveDown(const std::vector<int>& selectedRows) const;

    /// Resets the page range to the whole document and the numbers to start at 1 in steps of 1; notifies the
    /// delegate once if that changed a field.
    void resetNumberCounters();

  private:
    void announce(IStampItem& stamp) const;
    void removeRows(const std::vector<int>& rows);
    IStampItem& stampAt(int row) const;

    Numbering& number_;
    std::function<void(IStampItem&)> stampGoes_;
};

} // namespace quillfern
