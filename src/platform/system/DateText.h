#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

namespace quillfern {

/// Formats a moment for people. The pattern uses the letters dd, MM, MMM, yy, yyyy, h, hh (12-hour clock),
/// HH (24-hour clock), mm, ss and a (AM/PM marker); everything else stands for itself. Names of months and
/// the marker follow `locale`, digits are always 0 to 9. An invalid moment gives an empty text.
[[nodiscard]] QString dateText(const QDateTime& moment, const QString& pattern,
                               const QLocale& locale = QLocale());

/// The present moment formatted with a pattern of dateText.
[[nodiscard]] QString getStringFromDateFormat(const QString& pattern, const class Clock& clock);

} // namespace quillfern
