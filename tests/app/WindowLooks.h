#pragma once

#include <QWidget>
#include <string>
#include <vector>

namespace quillfern {

/// The window and all visible widgets in it.
std::vector<QWidget*> visibleWidgets(QWidget& window);

/// All texts of the widget: on it, in its tool tip and for screen readers, without what users typed.
QStringList textsOf(const QWidget& widget);

/// The controls that the Tab key reaches, in its order, beginning with the first one.
std::vector<QWidget*> tabRound(QWidget& window);
/// The controls that the Tab key ought to reach.
std::vector<QWidget*> tabStops(QWidget& window);
/// Whether a reader comes to `one` after `other`: `one` is below `other`, beside it in the direction of
/// reading, or in another column.
bool isAfter(const QWidget& one, const QWidget& other);

/// The visible widgets that are too small, cut their text off or stick out of their parent; a sentence for
/// each.
std::vector<std::string> cutOff(QWidget& window);

/// The widget's name for messages.
std::string nameOf(const QWidget& widget);

} // namespace quillfern
