#include "dialogs/ColorPanel.h"

#include <QColorDialog>
#include <QSignalBlocker>
#include <QWindow>

namespace quillfern {

ColorPanel::ColorPanel(QObject* parent) : QObject(parent)
{
}

ColorPanel::~ColorPanel() = default;

void ColorPanel::show(QWidget* over, const QString& title, const QColor& color,
                      std::function<void(const QColor&)> picked)
{
    if (!dialog_) {
        dialog_ = std::make_unique<QColorDialog>();
        dialog_->setObjectName(QStringLiteral("colorPanel"));
        dialog_->setOptions(QColorDialog::NoButtons | QColorDialog::DontUseNativeDialog);
        dialog_->setAttribute(Qt::WA_QuitOnClose, false);
        connect(dialog_.get(), &QColorDialog::currentColorChanged, this, [this](const QColor& now) {
            const auto serve = picked_; // a copy, because the call may close this panel and clear the member
            if (over_ && serve) serve(QColor(now.red(), now.green(), now.blue()));
        });
    }
    disconnect(gone_);
    over_ = over;
    picked_ = std::move(picked);
    gone_ = connect(over, &QObject::destroyed, dialog_.get(), &QWidget::hide);
    {
        const QSignalBlocker quiet(dialog_.get());
        dialog_->setCurrentColor(color.isValid() ? color : QColor(Qt::black));
    }
    dialog_->setWindowTitle(title);
    // Over the editor without being its child: the panel outlives it.
    dialog_->winId();
    if (over->windowHandle()) dialog_->windowHandle()->setTransientParent(over->windowHandle());
    dialog_->show();
    dialog_->raise();
    dialog_->activateWindow();
}

void ColorPanel::closeFor(const QWidget* over)
{
    if (!dialog_ || over_ != over) return;
    over_ = nullptr;
    picked_ = nullptr;
    dialog_->hide();
}

} // namespace quillfern
