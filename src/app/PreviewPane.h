#pragma once

#include <QWidget>
#include <memory>

namespace quillfern {

namespace Ui {
class PreviewPane;
}

class PreviewArea;

/// The part of the window that shows the preview and the switches of what is shown.
class PreviewPane final : public QWidget
{
    Q_OBJECT

  public:
    explicit PreviewPane(QWidget* parent = nullptr);
    ~PreviewPane() override;

    [[nodiscard]] PreviewArea& area();
    /// Shows the switches as they are, without a signal.
    void showSwitches(bool isHighlightStamp, bool isLivePreview);
    [[nodiscard]] bool isLivePreview() const;
    /// Turns the switch as the user does.
    void toggleLivePreview();

  Q_SIGNALS:
    /// The user turned a switch.
    void isHighlightStampChanged(bool on);
    void isLivePreviewChanged(bool on);

  private:
    std::unique_ptr<Ui::PreviewPane> ui_;
};

} // namespace quillfern
