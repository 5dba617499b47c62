#pragma once

#include <QDial>
#include <QPointF>

namespace quillfern {

/// A dial for an angle in whole degrees: 0 points to the right and angles grow counter-clockwise, as stamps
/// turn on the page. A drag snaps to multiples of 45 degrees when near one; with Shift it goes in
/// steps of 15.
class RotationDial final : public QDial
{
    Q_OBJECT

  public:
    explicit RotationDial(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    void turnTo(const QPointF& point, Qt::KeyboardModifiers keys);
};

} // namespace quillfern
