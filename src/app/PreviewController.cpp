#include "app/PreviewController.h"

#include "app/PreviewArea.h"
#include "app/PreviewPane.h"
#include "platform/system/Guarded.h"
#include "stamps/PageCompositor.h"

namespace quillfern {

namespace {

constexpr int moveMs =
    100; ///< for the picture's move to its new place, and for the wait until it is drawn anew

} // namespace

PreviewController::PreviewController(Numbering& number, PreviewPane& pane,
                                     std::unique_ptr<pageimages::PageImageSource> pages,
                                     std::function<PreviewState()> state)
    : number_(number), pane_(pane), area_(pane.area()), state_(std::move(state)), pages_(std::move(pages)),
      preview_(shaper_, pages_), model_(preview_)
{
    connect(&pane, &PreviewPane::isHighlightStampChanged, this,
            [this](bool on) { number_.setIsHighlightStamp(on); });
    connect(&pane, &PreviewPane::isLivePreviewChanged, this,
            [this](bool on) { number_.setIsLivePreview(on); });
    connect(&area_, &PreviewArea::frameChanged, this, &PreviewController::viewFrameChanged);
    refreshSwitches();
    connect(&pages_, &pageimages::BackgroundPages::ready, this, &PreviewController::render);
    animation_.setDuration(moveMs);
    connect(&animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        area_.previewImageView->setGeometry(value.toRectF().toAlignedRect());
    });
    afterResize_.setSingleShot(true);
    afterResize_.setInterval(moveMs);
    connect(&afterResize_, &QTimer::timeout, this, &PreviewController::resized);
}

QSizeF PreviewController::viewSize() const
{
    // During the animation this is the size that the picture will have at its end.
    if (animation_.state() == QAbstractAnimation::Running) return animation_.endValue().toRectF().size();
    return area_.previewImageView->size();
}

void PreviewController::refreshSwitches()
{
    pane_.showSwitches(number_.isHighlightStamp(), number_.isLivePreview());
}

QString PreviewController::fontProblem(const JobConfiguration& job)
{
    try {
        PageCompositor(job.stamps, shaper_).requireFont();
    } catch (const Failure& failure) {
        return failure.reasons().shown;
    }
    return {};
}

void PreviewController::render()
{
    PreviewState state = state_();
    state.size = viewSize();
    state.density = area_.devicePixelRatioF();
    if (state.size.width() < 1 || state.size.height() < 1) return;
    const JobConfiguration job = number_.configuration();
    area_.previewImageView->setProblem(fontProblem(job));
    const std::optional<QImage> image = model_.PropertyChanged(job, state);
    if (!image) return;
    const bool isPageAsked = number_.isLivePreview() && state.selectedFile >= 0;
    const bool isWaiting = isPageAsked && pages_.isPending();
    area_.previewImageView->setIsWaiting(isWaiting);
    if (!isWaiting) area_.previewImageView->setImage(*image);
}

void PreviewController::viewFrameChanged()
{
    guarded("Error in [viewFrameChanged:] : %@", [this] { resizePreview(); });
}

void PreviewController::resizePreview()
{
    guarded("Error in resizePreview : %@", [this] {
        const QRectF from = area_.previewImageView->geometry();
        const QRectF to = previewFrame(area_.previewBox->size()).toAlignedRect();
        animation_.stop();
        if (from.isEmpty() || !area_.isVisible() || to.isEmpty()) {
            area_.previewImageView->setGeometry(to.toRect());
            return;
        }
        animation_.setStartValue(from);
        animation_.setEndValue(to);
        animation_.start();
    });
    afterResize_.start();
}

} // namespace quillfern
