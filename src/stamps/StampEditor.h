#pragma once

#include <memory>

namespace quillfern {

class ImageStamp;
class TextStamp;

/// A window that edits one stamp.
class StampEditor
{
  public:
    virtual ~StampEditor() = default;
    /// Brings the window to the front and lets it look at its stamp anew.
    virtual void showAndReset() = 0;
    /// Stops following the stamp and closes the window. Called before it is destroyed.
    virtual void invalidate() = 0;
};

/// Makes editors, so that stamps need not know any window. Lives as long as its editors do.
class StampEditorFactory
{
  public:
    virtual ~StampEditorFactory() = default;
    /// The stamp owns the editor and outlives it.
    [[nodiscard]] virtual std::unique_ptr<StampEditor> editorFor(TextStamp& stamp) = 0;
    [[nodiscard]] virtual std::unique_ptr<StampEditor> editorFor(ImageStamp& stamp) = 0;
};

} // namespace quillfern
