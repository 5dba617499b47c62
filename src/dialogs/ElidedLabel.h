#pragma once

#include <QLabel>

namespace quillfern {

/// A line of plain text that fills the space it is given: a longer text is shortened with an ellipsis, and
/// the whole text is the tool tip. The text never widens a window.
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
