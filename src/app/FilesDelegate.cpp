#include "app/FilesDelegate.h"

#include "dialogs/ThemedIcon.h"
#include "filelist/FileListModel.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

namespace quillfern {

namespace {

bool hasNoPages(const QModelIndex& index)
{
    return index.column() == FileListModel::PagesColumn && index.data().toInt() <= 0;
}

/// Whether the column's text is shown from left to right in any language. From right to left the parts of a
/// date, a size or a path would change places.
bool isLeftToRight(int column)
{
    return column != FileListModel::NameColumn && column != FileListModel::IsSelectedColumn;
}

} // namespace

void FilesDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->direction == Qt::RightToLeft && isLeftToRight(index.column()))
        option->text = QChar(0x2066) + option->text + QChar(0x2069); // a left-to-right isolate
    if (index.column() == FileListModel::PagesColumn)
        option->displayAlignment = Qt::AlignRight | Qt::AlignVCenter;
    if (!hasNoPages(index)) return;
    option->features |= QStyleOptionViewItem::HasDecoration;
    option->icon = themedIcon(QStringLiteral("no-pages"));
    option->decorationSize = {16, 16};
}

bool FilesDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                              const QModelIndex& index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid() || !hasNoPages(index))
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    QToolTip::showText(
        event->globalPos(),
        tr("No pages can be read: the file needs a password, is damaged or no longer exists. It "
           "will be skipped."),
        view);
    return true;
}

} // namespace quillfern
