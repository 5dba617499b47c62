#include "dialogs/StampEditors.h"

#include "dialogs/ImageStampWindowController.h"
#include "dialogs/TextStampWindowController.h"

#include <algorithm>

namespace quillfern {

namespace {

/// A stamp's hold on its window. The window may go earlier, with the one it belongs to.
class WindowHold final : public StampEditor
{
  public:
    explicit WindowHold(StampEditorWindow* window) : window_(window) {}
    ~WindowHold() override
    {
        if (!window_) return;
        window_->invalidate();
        window_->deleteLater(); // the stamp may go in the midst of one of the window's own events
    }
    WindowHold(const WindowHold&) = delete;
    WindowHold& operator=(const WindowHold&) = delete;

    void showAndReset() override
    {
        if (window_) window_->showAndReset();
    }
    void invalidate() override
    {
        if (window_) window_->invalidate();
    }

  private:
    QPointer<StampEditorWindow> window_;
};

} // namespace

StampEditors::StampEditors(Numbering& number, StampHost& host, FilePanels& panels, Alerts& alerts,
                           QWidget* parent)
    : number_(number), host_(host), panels_(panels), alerts_(alerts), parent_(parent)
{
}

StampEditors::~StampEditors()
{
    for (const auto& window : windows_)
        delete window;
}

std::unique_ptr<StampEditor> StampEditors::editorFor(TextStamp& stamp)
{
    return keep(new TextStampWindowController(stamp, number_, host_, colors_, parent_));
}

std::unique_ptr<StampEditor> StampEditors::editorFor(ImageStamp& stamp)
{
    return keep(new ImageStampWindowController(stamp, number_, host_, panels_, alerts_, parent_));
}

std::unique_ptr<StampEditor> StampEditors::keep(StampEditorWindow* window)
{
    window->setEditingEnabled(areEnabled_);
    std::erase_if(windows_, [](const auto& each) { return each.isNull(); });
    windows_.emplace_back(window);
    return std::make_unique<WindowHold>(window);
}

void StampEditors::setEditorsEnabled(bool enabled)
{
    areEnabled_ = enabled;
    const auto windows = windows_; // an editor may open or go meanwhile
    for (const auto& window : windows)
        if (window) window->setEditingEnabled(enabled);
}

bool StampEditors::isOpen(const IStampItem& stamp) const
{
    return std::any_of(windows_.begin(), windows_.end(), [&](const auto& window) {
        return window && window->edits(stamp) && window->isVisible();
    });
}

void StampEditors::refreshEditors()
{
    for (const auto& window : windows_)
        if (window) window->refresh();
}

} // namespace quillfern
