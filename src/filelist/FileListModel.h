#pragma once

#include "filelist/FileList.h"
#include "platform/system/FilePath.h"

#include <QAbstractTableModel>
#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <atomic>
#include <vector>

namespace quillfern {

/// The file list as a table. Row n is the item at n; the columns are named by the identifiers of
/// FileItem::displayField(). Every change of the list is announced to views as the insertion, removal or move
/// that it is, not as a reset, so that selection and scroll position survive. Main thread.
class FileListModel final : public QAbstractTableModel, private FileListObserver
{
    Q_OBJECT

  public:
    enum Column {
        IsSelectedColumn,
        NameColumn,
        PagesColumn,
        SizeColumn,
        TypeColumn,
        DateModifiedColumn,
        DateCreatedColumn,
        DateAccessedColumn,
        LocationColumn,
        ColumnCount
    };
    /// "isselected", "name" and so on.
    [[nodiscard]] static QString columnIdentifier(int column);

    /// Edits, sorts and drops are refused while `isProcessing` is true. Both references outlive the model.
    /// The model is the list's observer until its destruction.
    FileListModel(FileList& files, const std::atomic<bool>& isProcessing, QObject* parent = nullptr);
    ~FileListModel() override;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    /// Column -1 keeps the present order; it is never refused.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    [[nodiscard]] QStringList mimeTypes() const override;
    /// The rows' file URLs for other programs, and a mark by which this model recognises its own rows.
    [[nodiscard]] QMimeData* mimeData(const QModelIndexList& indexes) const override;
    [[nodiscard]] Qt::DropActions supportedDropActions() const override { return Qt::CopyAction; }
    [[nodiscard]] Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }
    /// Files and folders may be dropped anywhere on the table; the table's own rows may not.
    [[nodiscard]] bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                       const QModelIndex& parent) const override;
    /// Announces filesDropped(). Always returns false: no row exists yet, and the source of the drag must not
    /// delete the files as moved.
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

  Q_SIGNALS:
    /// Files and folders were dropped from elsewhere.
    void filesDropped(const QList<FilePath>& paths);
    /// A check box was clicked; the totals shown may have to be updated.
    void checkMarkEdited();
    /// The user has sorted by a column.
    void sorted();

  private:
    void aboutToInsert(int first, int last) override;
    void inserted() override { endInsertRows(); }
    void aboutToRemove(int first, int last) override;
    void removed() override { endRemoveRows(); }
    void aboutToMove(int first, int last, int before) override;
    void moved() override { endMoveRows(); }
    void aboutToReorder() override;
    void reordered(const std::vector<int>& newRows) override;
    void checkMarksChanged(int first, int last) override;
    void rowChanged(int row) override;

    FileList& files_;
    const std::atomic<bool>& isProcessing_;
    QByteArray ownMark_;
};

} // namespace quillfern
