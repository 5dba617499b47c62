#pragma once

#include <QAbstractItemView>
#include <QTableView>
#include <vector>

namespace quillfern {

/// Gives a table the look and behaviour that all tables of the program share: whole rows are selected, Tab
/// goes to the next control, and there are no grid, row numbers or other decoration.
void setUpTable(QTableView& table);

/// The rows selected in a view whose selection goes by rows: ascending, each once.
[[nodiscard]] std::vector<int> selectedRows(const QAbstractItemView& view);

/// Selects exactly these rows; numbers that are no row are ignored. The last one becomes the current row,
/// from which the arrow keys go on.
void selectRows(QAbstractItemView& view, const std::vector<int>& rows);

} // namespace quillfern
