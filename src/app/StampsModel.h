#pragma once

#include "config/Numbering.h"
#include "stamps/StampList.h"

#include <QAbstractTableModel>
#include <functional>

namespace quillfern {

/// The configuration's stamps as a table, one row a stamp. The model shows the list as it was at the last
/// refresh(), which is to be called after every change of the list. Main thread.
class StampsModel final : public QAbstractTableModel
{
    Q_OBJECT

  public:
    enum Column { IsSelectedColumn, DescriptionColumn, LabelColumn, ColumnCount };

    /// The configuration outlives the model. While `isLocked` returns true no check mark can be changed.
    StampsModel(Numbering& number, std::function<bool()> isLocked, QObject* parent = nullptr);

    /// Shows the list as it is now. A list of the same stamps keeps its selection.
    void refresh();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

  Q_SIGNALS:
    /// The user switched a stamp on or off in this table.
    void isSelectedEdited();

  private:
    Numbering& number_;
    std::function<bool()> isLocked_;
    StampList shown_;
};

} // namespace quillfern
