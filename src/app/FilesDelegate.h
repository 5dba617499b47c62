#pragma once

#include <QStyledItemDelegate>

namespace quillfern {

/// Shows the columns of the table of files: marks files of which no page can be stamped, and keeps sizes,
/// dates and paths readable where the writing runs from right to left.
class FilesDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace quillfern
