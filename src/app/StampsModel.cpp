#include "app/StampsModel.h"

#include "dialogs/ThemedIcon.h"
#include "stamps/ImageStamp.h"

namespace quillfern {

StampsModel::StampsModel(Numbering& number, std::function<bool()> isLocked, QObject* parent)
    : QAbstractTableModel(parent), number_(number), isLocked_(std::move(isLocked)), shown_(number.stamps)
{
}

void StampsModel::refresh()
{
    if (shown_ == number_.stamps) {
        if (!shown_.empty()) Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
        return;
    }
    beginResetModel();
    shown_ = number_.stamps;
    endResetModel();
}

int StampsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int StampsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant StampsModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) return {};
    const IStampItem& stamp = *shown_[static_cast<std::size_t>(index.row())];
    if (index.column() == IsSelectedColumn) {
        if (role == Qt::CheckStateRole)
            return QVariant::fromValue(stamp.isSelected() ? Qt::Checked : Qt::Unchecked);
        if (role == Qt::AccessibleTextRole) return stamp.description();
        return {};
    }
    const bool isDescription = index.column() == DescriptionColumn;
    if (role == Qt::DecorationRole && isDescription) {
        const bool isPicture = dynamic_cast<const ImageStamp*>(&stamp) != nullptr;
        return themedIcon(isPicture ? QStringLiteral("picture-stamp") : QStringLiteral("text-stamp"));
    }
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
    return isDescription ? stamp.description() : stamp.label().value_or(QString());
}

QVariant StampsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::ToolTipRole && section == IsSelectedColumn) return tr("Whether the stamp is used");
    if (role != Qt::DisplayRole) return {};
    if (section == DescriptionColumn) return tr("Stamp");
    if (section == LabelColumn) return tr("Label");
    return {};
}

Qt::ItemFlags StampsModel::flags(const QModelIndex& index) const
{
    if (!index.isValid()) return {};
    const Qt::ItemFlags common = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    return index.column() == IsSelectedColumn ? common | Qt::ItemIsUserCheckable : common;
}

bool StampsModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || index.column() != IsSelectedColumn || role != Qt::CheckStateRole || isLocked_())
        return false;
    shown_[static_cast<std::size_t>(index.row())]->setIsSelected(value.value<Qt::CheckState>() ==
                                                                 Qt::Checked);
    Q_EMIT dataChanged(index, index);
    Q_EMIT isSelectedEdited();
    return true;
}

} // namespace quillfern
