#pragma once

#include "stamps/MarginAnchor.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QWidget>

namespace quillfern {

/// Nine buttons in three rows that say where on the page a stamp stands. Exactly the button of the present
/// anchor is pressed, and none for an anchor outside 1 to 9. Left is left also where people read from the
/// right, because it is left on the page.
class AnchorGrid final : public QWidget
{
    Q_OBJECT

  public:
    explicit AnchorGrid(QWidget* parent = nullptr);

    void showAnchor(MarginAnchor anchor);

  Q_SIGNALS:
    /// The user has chosen an anchor, 1 to 9.
    void anchorChosen(MarginAnchor anchor);

  private:
    void enterAt(QAbstractButton* button);

    QButtonGroup group_; ///< the ids are the anchors
};

} // namespace quillfern
