#pragma once

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>

class QColorDialog;

namespace quillfern {

/// The one colour panel that all editors share. It is live: every colour picked in it is handed on at once,
/// so it has nothing to confirm, and it offers opaque colours only. Main thread.
class ColorPanel final : public QObject
{
    Q_OBJECT

  public:
    explicit ColorPanel(QObject* parent = nullptr);
    ~ColorPanel() override;

    /// Shows the panel over the window `over` with this colour. `picked` is called with every colour picked
    /// from now on; whoever was served before is no more.
    void show(QWidget* over, const QString& title, const QColor& color,
              std::function<void(const QColor&)> picked);
    /// Closes the panel if it serves that window.
    void closeFor(const QWidget* over);

  private:
    std::unique_ptr<QColorDialog> dialog_; ///< made when first shown
    QPointer<QWidget> over_;
    std::function<void(const QColor&)> picked_;
    QMetaObject::Connection gone_;
};

} // namespace quillfern
