#pragma once

#include "batch/FileOutcome.h"
#include "batch/Log.h"

#include <QAbstractTableModel>
#include <QString>
#include <cstdint>
#include <vector>

namespace quillfern {

/// The results of a job, one row for each file that is done. Main thread.
class JobResultsModel final : public QAbstractTableModel
{
    Q_OBJECT

  public:
    enum Column { FileColumn, PagesColumn, StatusColumn, NoteColumn, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    struct Row
    {
        QString file;
        std::int32_t pages;
        FileOutcome outcome;
        QString source; ///< the input's path, shown as a tip: two files may have one name
    };
    /// Many rows at once cost little more than one.
    void append(const std::vector<Row>& rows);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;

  private:
    std::vector<Row> rows_;
};

} // namespace quillfern
