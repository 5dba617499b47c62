#pragma once

#include <QStyledItemDelegate>

namespace quillfern {

/// Shows the number of pages of a file, and marks files of which none can be stamped.
class PagesDelegate final : public QStyledItemDelegate
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
