#include "app/JobResultsModel.h"

#include "dialogs/ThemedIcon.h"

namespace quillfern {

namespace {

QString iconName(const FileOutcome& outcome)
{
    if (outcome.isWarning()) return QStringLiteral("warning");
    switch (outcome.status) {
    case FileStatus::Created:
    case FileStatus::Skipped:
        return QStringLiteral("done");
    case FileStatus::NoPages:
        return QStringLiteral("no-pages");
    default:
        return QStringLiteral("failed");
    }
}

QString shownStatus(FileStatus status)
{
    switch (status) {
    case FileStatus::Created:
        return JobResultsModel::tr("Completed");
    case FileStatus::CreatedNothing:
        return JobResultsModel::tr("No Output"); // the log says that the file was completed
    case FileStatus::NoPages:
        return JobResultsModel::tr("No Pages");
    case FileStatus::Skipped:
        return JobResultsModel::tr("Skipped");
    case FileStatus::Cancelled:
        return JobResultsModel::tr("Cancelled");
    default:
        return JobResultsModel::tr("Failed"); // the remark says why
    }
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
    if (role == Qt::DecorationRole && index.column() == StatusColumn)
        return themedIcon(iconName(row.outcome));
    if (role == Qt::TextAlignmentRole && index.column() == PagesColumn)
        return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
    switch (index.column()) {
    case FileColumn:
        return role == Qt::ToolTipRole ? row.source : row.file;
    case PagesColumn:
        return row.pages;
    case StatusColumn:
        return shownStatus(row.outcome.status);
    case NoteColumn:
        return row.outcome.remark ? row.outcome.remark->shown : QString();
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
