#pragma once

#include "config/Numbering.h"
#include "config/Preview.h"
#include "config/PreviewModel.h"
#include "platform/drawing/TextShaper.h"
#include "platform/pageimages/BackgroundPages.h"
#include "platform/pageimages/PageImage.h"

#include <QObject>
#include <QSizeF>
#include <QTimer>
#include <QVariantAnimation>
#include <functional>
#include <memory>

namespace quillfern {

class PreviewArea;
class PreviewPane;

/// Keeps the preview in the window up to date. Main thread.
class PreviewController final : public QObject
{
    Q_OBJECT

  public:
    /// `state` returns the state of the window that the picture depends on, except for the size of the
    /// picture's place. The references must outlive this object.
    PreviewController(Numbering& number, PreviewPane& pane,
                      std::unique_ptr<pageimages::PageImageSource> pages,
                      std::function<PreviewState()> state);

    /// Shows the configuration's switches as they are, as after loading a profile.
    void refreshSwitches();
    /// Draws the picture anew and shows it. A page that takes long is shown once it is there.
    void render();
    /// The picture's box has another size.
    void viewFrameChanged();
    /// Moves the picture to the place that follows from its box's size, and then has it drawn at that size.
    void resizePreview();
    /// The size of the picture's place, which percentages of margins refer to.
    [[nodiscard]] QSizeF viewSize() const;

  Q_SIGNALS:
    /// The picture's place has changed: the configuration is to be rendered.
    void resized();

  private:
    /// Why the stamps cannot be drawn on any page; empty when they can.
    [[nodiscard]] QString fontProblem(const JobConfiguration& job);
    Numbering& number_;
    PreviewPane& pane_;
    PreviewArea& area_;
    std::function<PreviewState()> state_;
    pageimages::BackgroundPages pages_;
    drawing::TextShaper shaper_;
    Preview preview_;
    PreviewModel model_;
    QVariantAnimation animation_;
    QTimer afterResize_;
};

} // namespace quillfern
