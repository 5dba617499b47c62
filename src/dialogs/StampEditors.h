#pragma once

#include "config/Numbering.h"
#include "dialogs/ColorPanel.h"
#include "dialogs/StampHost.h"
#include "platform/desktop/Alerts.h"
#include "platform/desktop/FilePanels.h"
#include "stamps/StampEditor.h"

#include <QPointer>
#include <vector>

namespace quillfern {

class StampEditorWindow;

/// Makes the editors of stamps: one window for each stamp, any number open at once, above `parent` (which may
/// be null). A window goes with its stamp, with `parent`, or with this object, whichever goes first. What is
/// handed in must outlive this object. Main thread.
class StampEditors final : public StampEditorFactory
{
  public:
    StampEditors(Numbering& number, StampHost& host, FilePanels& panels, Alerts& alerts, QWidget* parent);
    ~StampEditors() override;
    StampEditors(const StampEditors&) = delete;
    StampEditors& operator=(const StampEditors&) = delete;

    [[nodiscard]] std::unique_ptr<StampEditor> editorFor(TextStamp& stamp) override;
    [[nodiscard]] std::unique_ptr<StampEditor> editorFor(ImageStamp& stamp) override;

    /// Disables all editors, also those opened later, while a job reads the stamps; and enables them again.
    void setEditorsEnabled(bool enabled);
    /// Whether the stamp's editor is to be seen.
    [[nodiscard]] bool isOpen(const IStampItem& stamp) const;
    /// Lets the open editors show what something else has changed of their stamps.
    void refreshEditors();

  private:
    std::unique_ptr<StampEditor> keep(StampEditorWindow* window);

    Numbering& number_;
    StampHost& host_;
    FilePanels& panels_;
    Alerts& alerts_;
    QPointer<QWidget> parent_;
    ColorPanel colors_;
    std::vector<QPointer<StampEditorWindow>> windows_;
    bool areEnabled_ = true;
};

} // namespace quillfern
