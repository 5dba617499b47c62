#include "app/PreviewController.h"

#include "app/PreviewPane.h"
#include "platform/system/Guarded.h"

namespace quillfern {

namespace {

constexpr int moveMs = 100; ///< how long the picture takes to its new place, and then to be drawn anew

} // namespace

PreviewController::PreviewController(Numbering& number, PreviewPane& pane,
                                     std::unique_ptr<PageImageSource> pages,
                                     std::function<PreviewState()> state)
    : number_(number), pane_(pane), state_(std::move(state)), pages_(std::move(pages)),
      preview_(shaper_, pages_), model_(preview_)
{
    connect(&pages_, &BackgroundPages::ready, this, &PreviewController::render);
    animation_.setDuration(moveMs);
    connect(&animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        pane_.previewImageView->setGeometry(value.toRectF().toAlignedRect());
    });
    afterResize_.setSingleShot(true);
    afterResize_.setInterval(moveMs);
    connect(&afterResize_, &QTimer::timeout, this, &PreviewController::resized);
}

QSizeF PreviewController::viewSize() const
{
    // Where it is going, while it is on its way.
    if (animation_.state() == QAbstractAnimation::Running) return animation_.endValue().toRectF().size();
    return pane_.previewImageView->size();
}

void PreviewController::render()
{
    PreviewState state = state_();
    state.size = viewSize();
    state.density = pane_.devicePixelRatioF();
    if (state.size.width() < 1 || state.size.height() < 1) return;
    const std::optional<QImage> image = model_.PropertyChanged(number_.configuration(), state);
    if (!image) return;
    const bool isPageAsked = number_.isLivePreview() && state.selectedFile >= 0;
    const bool isWaiting = isPageAsked && pages_.isPending();
    pane_.previewImageView->setIsWaiting(isWaiting);
    if (!isWaiting) pane_.previewImageView->setImage(*image);
}

void PreviewController::resizePreview()
{
    guarded("Error in resizePreview : %@", [this] {
        const QRectF from = pane_.previewImageView->geometry();
        const QRectF to = previewFrame(pane_.previewBox->size()).toAlignedRect();
        animation_.stop();
        if (from.isEmpty() || !pane_.isVisible() || to.isEmpty()) {
            pane_.previewImageView->setGeometry(to.toRect());
            return;
        }
        animation_.setStartValue(from);
        animation_.setEndValue(to);
        animation_.start();
    });
    afterResize_.start();
}

} // namespace quillfern
