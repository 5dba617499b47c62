#include "app/TableRows.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <algorithm>

namespace quillfern {

namespace {

constexpr int rowPadding = 8; ///< above and below a row's text, together

} // namespace

void setUpTable(QTableView& table)
{
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setSelectionMode(QAbstractItemView::ExtendedSelection);
    table.setTabKeyNavigation(false); // otherwise Tab could not leave the table
    table.setShowGrid(false);
    table.setAlternatingRowColors(true);
    table.setWordWrap(false);
    table.verticalHeader()->hide();
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().height() + rowPadding);
    table.horizontalHeader()->setHighlightSections(false);
    table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
}

std::vector<int> selectedRows(const QAbstractItemView& view)
{
    std::vector<int> rows;
    if (!view.selectionModel()) return rows;
    for (const QItemSelectionRange& range : view.selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void selectRows(QAbstractItemView& view, const std::vector<int>& rows)
{
    const QAbstractItemModel* model = view.model();
    if (!model) return;
    const int count = model->rowCount();
    const int lastColumn = model->columnCount() - 1;
    QItemSelection selection;
    int current = -1;
    for (std::size_t i = 0; i < rows.size();) {
        std::size_t end = i + 1; // one range for a run of rows: thousands of ranges would be slow
        while (end < rows.size() && rows[end] == rows[end - 1] + 1)
            ++end;
        const int first = std::max(rows[i], 0);
        const int last = std::min(rows[end - 1], count - 1);
        if (first <= last) {
            selection.append(QItemSelectionRange(model->index(first, 0), model->index(last, lastColumn)));
            current = last;
        }
        i = end;
    }
    if (current >= 0)
        view.selectionModel()->setCurrentIndex(model->index(current, 0), QItemSelectionModel::NoUpdate);
    view.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

} // namespace quillfern
