#pragma once

#include <QDateTime>
#include <QString>

namespace quillfern {

/// The time between two moments as hours, minutes and seconds, each with a trailing blank and only when it is
/// not zero. Empty when either moment is missing or less than a second lies between them.
[[nodiscard]] QString timeTakenString(const QDateTime& start, const QDateTime& end);

/// The label that tells how a job stands.
[[nodiscard]] QString timeTakenLabel(const QString& timeTaken, int processed, int outputs);

} // namespace quillfern
