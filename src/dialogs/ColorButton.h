#pragma once

#include <QColor>
#include <QPushButton>

namespace quillfern {

/// A button whose background is a colour; the colour's name stands on it, too.
class ColorButton final : public QPushButton
{
    Q_OBJECT

  public:
    explicit ColorButton(QWidget* parent = nullptr);

    void showColor(const QColor& color);
    [[nodiscard]] const QColor& color() const { return color_; }
    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QColor color_ = Qt::black;
};

} // namespace quillfern
