#include "filelist/FileListModel.h"

#include <QCoreApplication>
#include <QMimeData>
#include <QUuid>
#include <array>

namespace quillfern {

namespace {

struct ColumnNames
{
    const char* identifier;
    const char* title;
};

constexpr std::array<ColumnNames, FileListModel::ColumnCount> columns = {
    {{"isselected", ""},
     {"name", QT_TRANSLATE_NOOP("quillfern::FileListModel", "Name")},
     {"pages", QT_TRANSLATE_NOOP("quillfern::FileListModel", "Pages")},
     {"sizeInKB", QT_TRANSLATE_NOOP("quillfern::FileListModel", "Size")},
     {"type", QT_TRANSLATE_NOOP("quillfern::FileListModel", "Type")},
     {"dateModified", QT_TRANSLATE_NOOP("quillfern::FileListModel", "Modified Date")},
     {"dateCreated", QT_TRANSLATE_NOOP("quillfern::FileListModel", "Created Date")},
     {"dateAccessed", QT_TRANSLATE_NOOP("quillfern::FileListModel", "Accessed Date")},
     {"location", QT_TRANSLATE_NOOP("quillfern::FileListModel", "Location")}}};

QString ownMarkFormat()
{
    return QStringLiteral("application/x-quillfern-rows");
}

} // namespace

QString FileListModel::columnIdentifier(int column)
{
    if (column < 0 || column >= ColumnCount) return {};
    return QString::fromLatin1(columns[static_cast<std::size_t>(column)].identifier);
}

FileListModel::FileListModel(FileList& files, const std::atomic<bool>& isProcessing, QObject* parent)
    : QAbstractTableModel(parent), files_(files), isProcessing_(isProcessing),
      ownMark_(QUuid::createUuid().toByteArray())
{
    files_.setObserver(this);
}

FileListModel::~FileListModel()
{
    files_.setObserver(nullptr);
}

int FileListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : files_.count();
}

int FileListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FileListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) return {};
    const FileItem& item = files_.at(index.row());
    const bool isCheckBox = index.column() == IsSelectedColumn;
    switch (role) {
    case Qt::DisplayRole:
        return isCheckBox ? QVariant() : item.displayField(columnIdentifier(index.column()));
    case Qt::CheckStateRole:
        if (!isCheckBox) return {};
        return QVariant::fromValue(item.isSelected() ? Qt::Checked : Qt::Unchecked);
    case Qt::TextAlignmentRole:
        if (index.column() != SizeColumn) return {};
        return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
    case Qt::AccessibleTextRole:
        return isCheckBox ? item.displayField(columnIdentifier(NameColumn)) : QVariant();
    default:
        return {};
    }
}

QVariant FileListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount) return {};
    if (role == Qt::TextAlignmentRole && (section == PagesColumn || section == SizeColumn))
        return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter)); // as their numbers are
    if (role != Qt::DisplayRole) return {};
    return QCoreApplication::translate("quillfern::FileListModel",
                                       columns[static_cast<std::size_t>(section)].title);
}

Qt::ItemFlags FileListModel::flags(const QModelIndex& index) const
{
    if (!index.isValid()) return Qt::ItemIsDropEnabled;
    const Qt::ItemFlags common =
        Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
    return index.column() == IsSelectedColumn ? common | Qt::ItemIsUserCheckable : common;
}

bool FileListModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || isProcessing_) return false;
    if (index.column() != IsSelectedColumn || role != Qt::CheckStateRole) return false;
    files_.setIsSelected(index.row(), value.value<Qt::CheckState>() == Qt::Checked);
    Q_EMIT checkMarkEdited();
    return true;
}

void FileListModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= ColumnCount) {
        files_.forgetOrder(); // changes no row; rows may be moved by hand while files are still coming in
        return;
    }
    if (isProcessing_) return;
    files_.sort({columnIdentifier(column), order == Qt::AscendingOrder});
    Q_EMIT sorted();
}

QStringList FileListModel::mimeTypes() const
{
    return {QStringLiteral("text/uri-list")};
}

QMimeData* FileListModel::mimeData(const QModelIndexList& indexes) const
{
    std::vector<int> rows;
    for (const QModelIndex& index : indexes)
        rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    if (rows.empty()) return nullptr;
    QList<QUrl> urls;
    for (const int row : rows)
        urls.append(files_.at(row).filePath().url());
    auto* data = new QMimeData; // the caller owns it
    data->setUrls(urls);
    data->setData(ownMarkFormat(), ownMark_);
    return data;
}

bool FileListModel::canDropMimeData(const QMimeData* data, Qt::DropAction action, int, int,
                                    const QModelIndex&) const
{
    return data && action == Qt::CopyAction && !isProcessing_ && data->hasUrls() &&
           data->data(ownMarkFormat()) != ownMark_;
}

bool FileListModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                 const QModelIndex& parent)
{
    if (!canDropMimeData(data, action, row, column, parent)) return false;
    const QList<FilePath> paths = filePaths(data->urls());
    if (!paths.isEmpty()) Q_EMIT filesDropped(paths);
    return false;
}

void FileListModel::aboutToInsert(int first, int last)
{
    beginInsertRows({}, first, last);
}

void FileListModel::aboutToRemove(int first, int last)
{
    beginRemoveRows({}, first, last);
}

void FileListModel::aboutToMove(int first, int last, int before)
{
    beginMoveRows({}, first, last, {}, before);
}

void FileListModel::aboutToReorder()
{
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
}

void FileListModel::reordered(const std::vector<int>& newRows)
{
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex& old : from)
        to.append(index(newRows[static_cast<std::size_t>(old.row())], old.column()));
    changePersistentIndexList(from, to);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void FileListModel::checkMarksChanged(int first, int last)
{
    Q_EMIT dataChanged(index(first, IsSelectedColumn), index(last, IsSelectedColumn), {Qt::CheckStateRole});
}

void FileListModel::rowChanged(int row)
{
    Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

} // namespace quillfern
