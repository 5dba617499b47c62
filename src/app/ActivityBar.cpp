#include "app/ActivityBar.h"

#include "app/Activity.h"
#include "app/WindowActions.h"
#include "dialogs/KeyHint.h"
#include "platform/system/Guarded.h"
#include "platform/system/TimeTaken.h"
#include "ui_ActivityBar.h"

namespace quillfern {

ActivityBar::ActivityBar(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::ActivityBar>())
{
    ui_->setupUi(this);
    // Room for both lines of a long text from the beginning, or the preview above would move for the second
    // one.
    ui_->labelTimeTaken->setMinimumHeight(2 * ui_->labelTimeTaken->fontMetrics().lineSpacing());
    setButtonKeyCharacter(*ui_->convertBtn, QStringLiteral("c"), QColor());
    connect(ui_->cancelBtn, &QPushButton::clicked, this, &ActivityBar::cancelRequested);
}

ActivityBar::~ActivityBar() = default;

void ActivityBar::follow(const Activity& activity)
{
    connect(&activity, &Activity::changed, this, [this, &activity] { showActivity(activity); });
    showActivity(activity);
}

void ActivityBar::showActivity(const Activity& activity)
{
    ui_->labelTimeTaken->setEnabled(activity.isIdle()); // takes the palette's colour for disabled text
    ui_->cancelBtn->setEnabled(!activity.isJob());
    ui_->cancelBtn->setVisible(activity.isGathering());
    // The progress sheet shows how a job goes.
    if (activity.isGathering())
        ui_->loadingIndicator->startAnimation();
    else
        ui_->loadingIndicator->stopAnimation();
}

void ActivityBar::bindConvert(QAction& convert)
{
    bindButton(*ui_->convertBtn, convert);
    // From right to left, Qt 6.4 pushes a title beside a picture against the button's border.
    if (!isRightToLeft()) ui_->convertBtn->setIcon(convert.icon());
}

void ActivityBar::showTimeTaken(const QString& text)
{
    guarded("Error in (updateTimeTakenLabel:) : %@", [&] {
        const QString shown = text.isEmpty() ? timeTakenLabel(tr("0 sec(s)"), 0, 0) : text;
        ui_->labelTimeTaken->setText(shown);
    });
}

} // namespace quillfern
