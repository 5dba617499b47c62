#include "app/PreviewPane.h"

#include "ui_PreviewPane.h"

#include <QSignalBlocker>

namespace quillfern {

PreviewPane::PreviewPane(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::PreviewPane>())
{
    ui_->setupUi(this);
    connect(ui_->isHighlightStamp, &QCheckBox::toggled, this, &PreviewPane::isHighlightStampChanged);
    connect(ui_->isLivePreview, &QCheckBox::toggled, this, &PreviewPane::isLivePreviewChanged);
}

PreviewPane::~PreviewPane() = default;

PreviewArea& PreviewPane::area()
{
    return *ui_->previewArea;
}

void PreviewPane::showSwitches(bool isHighlightStamp, bool isLivePreview)
{
    const QSignalBlocker blockers[] = {QSignalBlocker(ui_->isHighlightStamp),
                                       QSignalBlocker(ui_->isLivePreview)};
    ui_->isHighlightStamp->setChecked(isHighlightStamp);
    ui_->isLivePreview->setChecked(isLivePreview);
}

bool PreviewPane::isLivePreview() const
{
    return ui_->isLivePreview->isChecked();
}

void PreviewPane::toggleLivePreview()
{
    ui_->isLivePreview->toggle();
}

} // namespace quillfern
