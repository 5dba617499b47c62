#include "app/JobResultsModel.h"

#include "dialogs/ThemedIcon.h"

namespace quillfern {

namespace {

QString iconName(const QString& status)
{
    if (status == QLatin1String("Completed")) return QStringLiteral("done");
    if (status == QLatin1String("No Pages")) return QStringLiteral("no-pages");
    return QStringLiteral("failed");
}

QString shownStatus(const QString& status)
{
    // A stopped job writes no status for the file that it was about to begin.
    if (status.isEmpty()) return JobResultsModel::tr("Cancelled");
    if (status == QLatin1String("Completed")) return JobResultsModel::tr("Completed");
    if (status == QLatin1String("No Pages")) return JobResultsModel::tr("No Pages");
    return JobResultsModel::tr("Failed"); // the status is the reason, which the remark shows as well
}

} // namespace

void JobResultsModel::append(const std::vector<Row>& rows)
{
    if (rows.empty()) return;
    beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(rows.size()) - 1);
    rows_.insert(rows_.end(), rows.begin(), rows.end());
    endInsertRows();
}

int JobResultsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int JobResultsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant JobResultsModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) return {};
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    if (role == Qt::DecorationRole && index.column() == StatusColumn) return themedIcon(iconName(row.status));
    if (role == Qt::TextAlignmentRole && index.column() == PagesColumn)
        return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
    switch (index.column()) {
    case FileColumn:
        return row.file;
    case PagesColumn:
        return row.pages;
    case StatusColumn:
        return shownStatus(row.status);
    case NoteColumn:
        return row.note;
    default:
        return {};
    }
}

QVariant JobResultsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    switch (section) {
    case FileColumn:
        return tr("File");
    case PagesColumn:
        return tr("Pages");
    case StatusColumn:
        return tr("Status");
    case NoteColumn:
        return tr("Remark");
    default:
        return {};
    }
}

} // namespace quillfern
