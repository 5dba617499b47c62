#pragma once

#include <QColor>
#include <QString>

class QAbstractButton;

namespace quillfern {

/// Shows the keyboard hint of a button: the first occurrence of `keyChar` in its title, whatever its case, is
/// underlined and bold and has the given colour, and Alt with that key clicks the button. An invalid colour
/// stands for the palette's own, which the rest of the title always has; a disabled title has one colour.
/// The hint and the shortcut follow later changes of the title. A button whose title lacks the key, or a key
/// that is empty, is left as it is. For push buttons, tool buttons, check boxes and radio buttons; the button
/// gets a style of its own, which it owns and which follows the application's. Call again to change the hint.
void setButtonKeyCharacter(QAbstractButton& button, const QString& keyChar, const QColor& color = QColor());

/// The same with a choice of the letter: `occurrance` 1 is the first one whatever its case; any other number
/// is the last one, compared with case.
void setButtonKeyCharacter(QAbstractButton& button, const QString& keyChar, const QColor& color,
                           int occurrance);

} // namespace quillfern
