#pragma once

#include <QString>
#include <QWidget>
#include <memory>

class QAction;

namespace quillfern {

namespace Ui {
class ActivityBar;
}

class Activity;

/// The bottom of the window: what it is busy with, how long that took, Cancel and Convert.
class ActivityBar final : public QWidget
{
    Q_OBJECT

  public:
    explicit ActivityBar(QWidget* parent = nullptr);
    ~ActivityBar() override;

    /// Shows this activity from now on; to be called once. It outlives the bar.
    void follow(const Activity& activity);
    /// The button Convert triggers this action.
    void bindConvert(QAction& convert);
    /// An empty text stands for no time.
    void showTimeTaken(const QString& text);

  Q_SIGNALS:
    /// The user wants gathering to stop.
    void cancelRequested();

  private:
    void showActivity(const Activity& activity);

    std::unique_ptr<Ui::ActivityBar> ui_;
};

} // namespace quillfern
