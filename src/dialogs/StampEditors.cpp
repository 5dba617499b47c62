#include "dialogs/StampEditors.h"

#include "dialogs/ImageStampWindowController.h"
#include "dialogs/TextStampWindowController.h"
#include "platform/system/Guarded.h"

#include <algorithm>

namespace quillfern {

StampEditors::StampEditors(Numbering& number, StampHost& host, desktop::FilePanels& panels,
                           desktop::Alerts& alerts, QWidget* parent)
    : number_(number), host_(host), panels_(panels), alerts_(alerts), parent_(parent)
{
}

StampEditors::~StampEditors()
{
    for (const auto& window : windows_) {
        if (window) window->invalidate();
        delete window;
    }
}

void StampEditors::edit(const std::shared_ptr<IStampItem>& stamp)
{
    guarded("Error in edit : %@", [&] {
        const auto found = std::find_if(windows_.begin(), windows_.end(),
                                        [&](const auto& window) { return window && window->edits(*stamp); });
        StampEditorWindow* const editor = found == windows_.end() ? makeEditor(stamp) : found->data();
        editor->showAndReset();
    });
}

StampEditorWindow* StampEditors::makeEditor(const std::shared_ptr<IStampItem>& stamp)
{
    StampEditorWindow* window = nullptr;
    if (const auto text = std::dynamic_pointer_cast<TextStamp>(stamp))
        window = new TextStampWindowController(text, number_, host_, colors_, parent_);
    else if (const auto image = std::dynamic_pointer_cast<ImageStamp>(stamp))
        window = new ImageStampWindowController(image, number_, host_, panels_, alerts_, parent_);
    else
        throw Failure(QStringLiteral("there is no editor for this kind of stamp"));
    window->setEditingEnabled(areEnabled_);
    windows_.emplace_back(window);
    return window;
}

void StampEditors::removehandlers(const IStampItem& stamp)
{
    const bool isText = dynamic_cast<const TextStamp*>(&stamp) != nullptr;
    guarded(isText ? "Error in (TextStamp=>removehandlers:) : %@"
                   : "Error in (ImageStamp=>removehandlers:) : %@",
            [&] { removeIf([&](const StampEditorWindow& window) { return window.edits(stamp); }); });
}

void StampEditors::removeOrphans()
{
    removeIf([](const StampEditorWindow& window) { return !window.hasStamp(); });
}

void StampEditors::removeIf(const std::function<bool(const StampEditorWindow&)>& isDue)
{
    std::vector<QPointer<StampEditorWindow>> due;
    std::erase_if(windows_, [&](const auto& window) {
        if (window && isDue(*window)) due.push_back(window);
        return !window || isDue(*window);
    });
    // The windows are taken out of the list first, because closing a window may call this function again.
    for (const auto& window : due) {
        if (!window) continue;
        window->invalidate();
        window->deleteLater(); // this may be called during one of the window's own events
    }
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
