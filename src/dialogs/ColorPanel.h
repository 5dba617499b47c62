#pragma once

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>

class QColorDialog;

namespace quillfern {

/// The one colour panel that all editors share. Every colour picked in the panel takes effect at once, so
/// there is nothing to confirm; only opaque colours are offered. Main thread.
class ColorPanel final : public QObject
{
    Q_OBJECT

  public:
    explicit ColorPanel(QObject* parent = nullptr);
    ~ColorPanel() override;

    /// Shows the panel over the window `over` with this colour. `picked` is called with every colour picked
    /// from now on, and the function given before is not called any more.
    void show(QWidget* over, const QString& title, const QColor& color,
              std::function<void(const QColor&)> picked);
    /// Closes the panel if it is shown for that window.
    void closeFor(const QWidget* over);

  private:
    std::unique_ptr<QColorDialog> dialog_; ///< made when first shown
    QPointer<QWidget> over_;
    std::function<void(const QColor&)> picked_;
    QMetaObject::Connection gone_;
};

} // namespace quillfern
