#pragma once

#include "config/Numbering.h"
#include "dialogs/PictureLoader.h"
#include "dialogs/StampEditorWindow.h"
#include "dialogs/StampHost.h"
#include "platform/desktop/Alerts.h"
#include "platform/desktop/FilePanels.h"
#include "platform/system/FilePath.h"
#include "stamps/ImageStamp.h"

#include <QString>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace quillfern {

namespace Ui {
class ImageStampWindow;
}

class NumberField;

/// The editor of a picture stamp; see StampEditorWindow.
class ImageStampWindowController final : public StampEditorWindow
{
    Q_OBJECT

  public:
    ImageStampWindowController(const std::shared_ptr<ImageStamp>& stamp, Numbering& number, StampHost& host,
                               desktop::FilePanels& panels, desktop::Alerts& alerts, QWidget* parent);
    ~ImageStampWindowController() override;

    /// Lets the user choose a picture file.
    void changeImageAction();
    /// Reads a picture file and gives it to the stamp. The window can be used meanwhile; a picture that
    /// is read while editing is disabled waits until it is enabled.
    void loadPicture(const FilePath& path);
    void removeImageAction();
    /// Whether editing one side of the drawn size changes the other.
    [[nodiscard]] bool isAspectRatio() const;
    void setIsAspectRatio(bool locked);

  protected:
    [[nodiscard]] QString title() const override;
    void showFields() override;
    void editingEnabledChanged() override;

  private:
    [[nodiscard]] ImageStamp* image() const { return static_cast<ImageStamp*>(stamp()); }
    void change(const std::function<void(ImageStamp&)>& edit);
    void connectControls();
    void connectSide(NumberField& field, std::int64_t ImageStamp::*side, NumberField& otherField,
                     std::int64_t ImageStamp::*otherSide);
    void take(const LoadedPicture& picture);
    /// Says that pictures of so many bytes cannot be saved.
    void refuse(qint64 bytes);
    void showPicture();
    void showSize();

    std::unique_ptr<Ui::ImageStampWindow> ui_;
    desktop::FilePanels& panels_;
    desktop::Alerts& alerts_;
    PictureLoader loader_;
    std::optional<LoadedPicture> waiting_; ///< came while editing was disabled
};

} // namespace quillfern
