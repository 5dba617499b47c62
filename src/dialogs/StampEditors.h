#pragma once

#include "config/Numbering.h"
#include "dialogs/ColorPanel.h"
#include "dialogs/StampHost.h"
#include "platform/desktop/Alerts.h"
#include "platform/desktop/FilePanels.h"
#include "stamps/IStampItem.h"

#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

namespace quillfern {

class StampEditorWindow;

/// The editors of stamps: one window for each stamp that was edited, any number open at once, above `parent`
/// (which may be null). Stamps do not know their editors, and editors do not keep their stamps alive. A
/// window is deleted by removehandlers(), with `parent`, or with this object, whichever comes first. The
/// constructor's arguments must outlive this object. Main thread.
class StampEditors final
{
  public:
    StampEditors(Numbering& number, StampHost& host, desktop::FilePanels& panels, desktop::Alerts& alerts,
                 QWidget* parent);
    ~StampEditors();
    StampEditors(const StampEditors&) = delete;
    StampEditors& operator=(const StampEditors&) = delete;

    /// Brings the stamp's editor to the front, showing the stamp as it is now. The editor is made on first
    /// use and kept.
    void edit(const std::shared_ptr<IStampItem>& stamp);
    /// Closes and forgets the stamp's editor, if it has one. The window no longer touches the stamp when this
    /// returns.
    void removehandlers(const IStampItem& stamp);
    /// Closes and forgets the editors of stamps that do not exist any more.
    void removeOrphans();

    /// Disables all editors, also those opened later, while a job reads the stamps; and enables them again.
    void setEditorsEnabled(bool enabled);
    /// Whether the stamp's editor is visible.
    [[nodiscard]] bool isOpen(const IStampItem& stamp) const;
    /// Shows the stamps in their editors as they are now.
    void refreshEditors();

  private:
    StampEditorWindow* makeEditor(const std::shared_ptr<IStampItem>& stamp);
    void removeIf(const std::function<bool(const StampEditorWindow&)>& isDue);

    Numbering& number_;
    StampHost& host_;
    desktop::FilePanels& panels_;
    desktop::Alerts& alerts_;
    QPointer<QWidget> parent_;
    ColorPanel colors_;
    std::vector<QPointer<StampEditorWindow>> windows_;
    bool areEnabled_ = true;
};

} // namespace quillfern
