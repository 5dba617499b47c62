#pragma once

#include <QTableView>
#include <vector>

namespace quillfern {

/// How all tables of the program look and behave: whole rows are selected, Tab goes on to the next control,
/// and nothing is drawn that tells nothing.
void setUpTable(QTableView& table);

/// The rows selected in a view whose selection goes by rows: ascending, each once.
[[nodiscard]] std::vector<int> selectedRows(const QAbstractItemView& view);

/// Selects exactly these rows; rows that are none are passed over. The last one becomes the current row, so
/// that the keyboard goes on from there.
void selectRows(QAbstractItemView& view, const std::vector<int>& rows);

} // namespace quillfern
