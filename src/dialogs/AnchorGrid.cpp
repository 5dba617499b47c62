#include "dialogs/AnchorGrid.h"

#include "dialogs/ThemedIcon.h"
#include "stamps/MarginAnchor.h"

#include <QGridLayout>
#include <QToolButton>

namespace quillfern {

namespace {

constexpr int picturePoints = 24;

struct Place
{
    MarginAnchor anchor;
    const char* picture;
    const char* name;
};

constexpr Place places[] = {
    {MarginAnchor::TopLeft, "TopLeft", QT_TRANSLATE_NOOP("quillfern::AnchorGrid", "Top left")},
    {MarginAnchor::TopMiddle, "TopMiddle", QT_TRANSLATE_NOOP("quillfern::AnchorGrid", "Top centre")},
    {MarginAnchor::TopRight, "TopRight", QT_TRANSLATE_NOOP("quillfern::AnchorGrid", "Top right")},
    {MarginAnchor::MiddleLeft, "MiddleLeft", QT_TRANSLATE_NOOP("quillfern::AnchorGrid", "Middle left")},
    {MarginAnchor::MiddleMiddle, "MiddleMiddle",
     QT_TRANSLATE_NOOP("quillfern::AnchorGrid", "Centre of the page")},
    {MarginAnchor::MiddleRight, "MiddleRight", QT_TRANSLATE_NOOP("quillfern::AnchorGrid", "Middle right")},
    {MarginAnchor::BottomLeft, "BottomLeft", QT_TRANSLATE_NOOP("quillfern::AnchorGrid", "Bottom left")},
    {MarginAnchor::BottomMiddle, "BottomMiddle", QT_TRANSLATE_NOOP("quillfern::AnchorGrid", "Bottom centre")},
    {MarginAnchor::BottomRight, "BottomRight", QT_TRANSLATE_NOOP("quillfern::AnchorGrid", "Bottom right")},
};

} // namespace

AnchorGrid::AnchorGrid(QWidget* parent) : QWidget(parent)
{
    setLayoutDirection(Qt::LeftToRight);
    setFocusPolicy(Qt::StrongFocus); // passed on to the button of enterAt()
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(2);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    for (const Place& place : places) {
        auto* button = new QToolButton(this);
        button->setObjectName(QStringLiteral("margin%1Button").arg(QLatin1String(place.picture)));
        button->setCheckable(true);
        button->setAutoRaise(true); // a border only while pressed
        button->setIcon(themedIcon(QLatin1String(place.picture)));
        button->setIconSize(QSize(picturePoints, picturePoints));
        button->setToolTip(tr(place.name));
        button->setAccessibleName(tr(place.name));
        const int number = qToUnderlying(place.anchor);
        group_.addButton(button, number);
        grid->addWidget(button, (number - 1) / 3, (number - 1) % 3);
    }
    enterAt(group_.button(qToUnderlying(MarginAnchor::TopLeft)));
    connect(&group_, &QButtonGroup::buttonToggled, this, [this](QAbstractButton* button, bool pressed) {
        if (pressed) enterAt(button);
    });
    connect(&group_, &QButtonGroup::idClicked, this,
            [this](int anchor) { Q_EMIT anchorChosen(MarginAnchor{anchor}); });
}

void AnchorGrid::showAnchor(MarginAnchor anchor)
{
    if (QAbstractButton* button = group_.button(qToUnderlying(anchor))) {
        button->setChecked(true);
    } else if (QAbstractButton* checked = group_.checkedButton()) {
        group_.setExclusive(false); // in an exclusive group the last pressed button cannot be released
        checked->setChecked(false);
        group_.setExclusive(true);
    }
}

/// The grid is one stop of the Tab key; the arrow keys go on from there.
void AnchorGrid::enterAt(QAbstractButton* button)
{
    for (QAbstractButton* each : group_.buttons())
        each->setFocusPolicy(each == button ? Qt::StrongFocus : Qt::ClickFocus);
    setFocusProxy(button);
}

} // namespace quillfern
