#include "app/CustomTableView.h"

#include "app/TableRows.h"
#include "dialogs/DropAsCopy.h"
#include "filelist/FileListModel.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QMenu>

namespace quillfern {

CustomTableView::CustomTableView(QWidget* parent) : QTableView(parent)
{
    setUpTable(*this);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDragDropMode(DragDrop);
    setDefaultDropAction(Qt::CopyAction);
    setDropIndicatorShown(false); // a drop adds to the list as a whole, not between rows
    setTextElideMode(Qt::ElideMiddle);
    setHorizontalScrollMode(ScrollPerPixel);
    horizontalHeader()->setSectionsMovable(true);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder); // files stay in the order they came in
    horizontalHeader()->setSortIndicatorClearable(true);
    // Not activated(): on some desktops a single click does that, and nobody could select a row any more.
    connect(this, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        if (index.column() != FileListModel::IsSelectedColumn) Q_EMIT openRequested();
    });
}

void CustomTableView::layOutColumns()
{
    const int letter = fontMetrics().averageCharWidth();
    const std::pair<int, int> letters[] = {
        {FileListModel::IsSelectedColumn, 5},   {FileListModel::NameColumn, 30},
        {FileListModel::PagesColumn, 9},        {FileListModel::SizeColumn, 11},
        {FileListModel::TypeColumn, 8},         {FileListModel::DateModifiedColumn, 24},
        {FileListModel::DateCreatedColumn, 24}, {FileListModel::DateAccessedColumn, 24},
        {FileListModel::LocationColumn, 60},
    };
    for (const auto& [column, count] : letters)
        setColumnWidth(column, letter * count);
}

CustomTableView::Key CustomTableView::keyOf(const QKeyEvent& event) const
{
    const bool isPlain = (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const bool isControl = (event.modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
    switch (event.key()) {
    case Qt::Key_Space:
        return isPlain ? Key::Invert : Key::Other;
    case Qt::Key_F7:
        return isPlain && inspect_().containsMultiPageFiles ? Key::Menu : Key::Other;
    case Qt::Key_F8:
        return isPlain && inspect_().containsPDFFiles ? Key::Menu : Key::Other;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        return isPlain ? Key::Remove : Key::Other;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return isPlain ? Key::Open : Key::Other;
    case Qt::Key_Up:
        return isControl ? Key::MoveUp : Key::Other;
    case Qt::Key_Down:
        return isControl ? Key::MoveDown : Key::Other;
    default:
        return Key::Other;
    }
}

bool CustomTableView::event(QEvent* event)
{
    // The table's own keys come before the window's shortcuts.
    if (event->type() == QEvent::ShortcutOverride && keyOf(*static_cast<QKeyEvent*>(event)) != Key::Other) {
        event->accept();
        return true;
    }
    return QTableView::event(event);
}

void CustomTableView::keyPressEvent(QKeyEvent* event)
{
    switch (keyOf(*event)) {
    case Key::Invert:
        Q_EMIT invertMarksRequested();
        return;
    case Key::Menu:
        performKeyEquivalent(*event);
        return;
    case Key::Remove:
        Q_EMIT removeRequested();
        return;
    case Key::Open:
        Q_EMIT openRequested();
        return;
    case Key::MoveUp:
        Q_EMIT moveUpRequested();
        return;
    case Key::MoveDown:
        Q_EMIT moveDownRequested();
        return;
    case Key::Other:
        QTableView::keyPressEvent(event);
    }
}

void CustomTableView::performKeyEquivalent(const QKeyEvent& event)
{
    if (!contextMenu_) return;
    const QKeySequence pressed(event.keyCombination());
    for (QAction* action : contextMenu_->actions())
        if (action->isEnabled() && action->shortcuts().contains(pressed)) {
            action->trigger();
            return;
        }
}

void CustomTableView::contextMenuEvent(QContextMenuEvent* event)
{
    if (!contextMenu_ || contextMenu_->isEmpty() || !selectionModel() || !selectionModel()->hasSelection())
        return;
    contextMenu_->actions().constFirst()->setEnabled(inspect_().containsPDFFiles);
    contextMenu_->popup(event->reason() == QContextMenuEvent::Mouse
                            ? event->globalPos()
                            : viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft()));
}

// Always a copy: the files stay where they are, also when the source of the drag proposes a move. The table's
// own functions accept what is proposed, so the answer is given again after them.

bool CustomTableView::refuses(QDropEvent& event) const
{
    // The system delivers drops also to a window that is blocked by a sheet.
    if (isEnabled() && !QApplication::activeModalWidget()) return false;
    event.ignore();
    return true;
}

void CustomTableView::dragEnterEvent(QDragEnterEvent* event)
{
    if (refuses(*event)) return;
    event->setDropAction(Qt::CopyAction);
    QTableView::dragEnterEvent(event);
    if (event->isAccepted()) acceptAsCopy(*event);
}

void CustomTableView::dragMoveEvent(QDragMoveEvent* event)
{
    if (refuses(*event)) return;
    event->setDropAction(Qt::CopyAction);
    QTableView::dragMoveEvent(event);
    if (event->isAccepted()) acceptAsCopy(*event);
}

void CustomTableView::dropEvent(QDropEvent* event)
{
    if (refuses(*event)) return;
    event->setDropAction(Qt::CopyAction);
    QTableView::dropEvent(event);
    if (event->isAccepted()) acceptAsCopy(*event);
}

} // namespace quillfern
