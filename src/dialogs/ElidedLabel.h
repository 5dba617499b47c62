#pragma once

#include <QLabel>

namespace quillfern {

/// A line of plain text that takes the room there is: what does not fit is cut off with an ellipsis, and the
/// whole is the tool tip. Its text never widens a window.
class ElidedLabel final : public QLabel
{
    Q_OBJECT

  public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillfern
