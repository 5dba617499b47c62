#pragma once

#include <QTimer>
#include <QWidget>

namespace quillfern {

/// A small wheel that turns while the program is busy and is invisible otherwise. A layout keeps its place in
/// both cases.
class BusyIndicator final : public QWidget
{
    Q_OBJECT

  public:
    explicit BusyIndicator(QWidget* parent = nullptr);

    void startAnimation();
    void stopAnimation();
    [[nodiscard]] bool isAnimating() const { return timer_.isActive(); }

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QTimer timer_;
    int step_ = 0;
};

} // namespace quillfern
