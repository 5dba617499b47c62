#pragma once

#include <QTableView>
#include <functional>
#include <utility>

class QMenu;

namespace quillfern {

/// The table of files: its keys, its context menu, and drops of files from elsewhere.
class CustomTableView final : public QTableView
{
    Q_OBJECT

  public:
    explicit CustomTableView(QWidget* parent = nullptr);

    /// The menu is not owned; with null the table shows no menu. The menu's first item is for PDF files only.
    void setContextMenu(QMenu* menu) { contextMenu_ = menu; }

    /// What the table needs to know of the files selected in it.
    struct Selection
    {
        bool containsPDFFiles = false;
        bool containsMultiPageFiles = false;
    };
    /// Asked when a key or the menu depends on it.
    void setSelectionInspector(std::function<Selection()> inspect) { inspect_ = std::move(inspect); }

    /// Sets the widths that the columns have at the first start.
    void layOutColumns();

  Q_SIGNALS:
    /// The space bar: the check marks of the selected rows are to be inverted.
    void invertMarksRequested();
    void removeRequested();
    /// Return, or a double click beside a check box.
    void openRequested();
    void moveUpRequested();
    void moveDownRequested();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    enum class Key { Other, Invert, Menu, Remove, Open, MoveUp, MoveDown };
    [[nodiscard]] Key keyOf(const QKeyEvent& event) const;
    /// Ignores a drag or drop while a sheet blocks the window.
    bool refuses(QDropEvent& event) const;
    void performKeyEquivalent(const QKeyEvent& event);

    QMenu* contextMenu_ = nullptr;
    std::function<Selection()> inspect_ = [] { return Selection(); };
};

} // namespace quillfern
