#include "app/PagesDelegate.h"

#include "dialogs/ThemedIcon.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

namespace quillfern {

namespace {

bool hasNoPages(const QModelIndex& index)
{
    return index.data().toInt() <= 0;
}

} // namespace

void PagesDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    option->displayAlignment = Qt::AlignRight | Qt::AlignVCenter;
    if (!hasNoPages(index)) return;
    option->features |= QStyleOptionViewItem::HasDecoration;
    option->icon = themedIcon(QStringLiteral("no-pages"));
    option->decorationSize = {16, 16};
}

bool PagesDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                              const QModelIndex& index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid() || !hasNoPages(index))
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    QToolTip::showText(event->globalPos(),
                       tr("No pages can be read: the file needs a password, is damaged or is not there any "
                          "more. It will be passed over."),
                       view);
    return true;
}

} // namespace quillfern
