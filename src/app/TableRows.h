#pragma once

#include <QAbstractItemView>
#include <vector>

namespace quillfern {

/// The rows selected in a view whose selection goes by rows: ascending, each once.
[[nodiscard]] std::vector<int> selectedRows(const QAbstractItemView& view);

/// Selects exactly these rows; rows that are none are passed over. The last one becomes the current row, so
/// that the keyboard goes on from there.
void selectRows(QAbstractItemView& view, const std::vector<int>& rows);

} // namespace quillfern
