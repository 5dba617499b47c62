#pragma once

#include <QString>
#include <QWidget>
#include <memory>

class QMenu;

namespace quillfern {

namespace Ui {
class FilesPane;
}

class CustomTableView;
class WindowActions;

/// The part of the window that shows the list of files, its totals, and how folders are added.
class FilesPane final : public QWidget
{
    Q_OBJECT

  public:
    explicit FilesPane(QWidget* parent = nullptr);
    ~FilesPane() override;

    /// Gives the table its context menu and the keys that work in the table only.
    void bindActions(const WindowActions& actions, QMenu* contextMenu);

    [[nodiscard]] CustomTableView& table();
    [[nodiscard]] bool includesSubfolders() const;
    void setIncludesSubfolders(bool included);
    void showTotals(const QString& text);
    /// The hint says what to do with an empty list.
    void showHint(bool shown);
    /// Whether the list can be worked with.
    void setListEnabled(bool enabled);

  Q_SIGNALS:
    void includesSubfoldersChanged(bool included);

  private:
    void makeHint();

    std::unique_ptr<Ui::FilesPane> ui_;
    QWidget* lableDragAndDrop_ = nullptr;
};

} // namespace quillfern
