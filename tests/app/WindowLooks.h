#pragma once

#include <QWidget>
#include <string>
#include <vector>

namespace quillfern {

/// The window itself and everything in it that is to be seen.
std::vector<QWidget*> visibleWidgets(QWidget& window);

/// Everything the widget tells in words, to the eye, the pointer or a screen reader; not what people typed.
QStringList textsOf(const QWidget& widget);

/// The controls that take the keyboard, in the order in which Tab goes round from the first one that has it.
std::vector<QWidget*> tabRound(QWidget& window);
/// Those that ought to be on that round.
std::vector<QWidget*> tabStops(QWidget& window);
/// Whether one that follows another comes after it for a reader: below it, or beside it where reading goes
/// on.
bool isAfter(const QWidget& one, const QWidget& other);

/// What of the window cannot be seen, or not in full: a sentence each.
std::vector<std::string> cutOff(QWidget& window);

/// For messages.
std::string nameOf(const QWidget& widget);

} // namespace quillfern
