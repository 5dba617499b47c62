#pragma once

#include <QWidget>
#include <memory>

class QTableView;

namespace quillfern {

namespace Ui {
class StampsPane;
}

class WindowActions;

/// The part of the window that shows the list of stamps and the buttons of its commands.
class StampsPane final : public QWidget
{
    Q_OBJECT

  public:
    explicit StampsPane(QWidget* parent = nullptr);
    ~StampsPane() override;

    /// Connects the buttons and the table's keys with the commands.
    void bindActions(const WindowActions& actions);

    [[nodiscard]] QTableView& table();

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::unique_ptr<Ui::StampsPane> ui_;
};

} // namespace quillfern
