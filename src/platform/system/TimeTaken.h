#pragma once

#include <QDateTime>
#include <QString>

namespace quillfern {

/// The time between two moments as hours, minutes and seconds, each with a trailing blank and only when it is
/// not zero; in the language of the user. Empty when either moment is missing or less than a second lies
/// between them.
[[nodiscard]] QString timeTakenString(const QDateTime& start, const QDateTime& end);

/// The text shown in place of a time while a job is still running.
[[nodiscard]] QString timeTakenInProcess();

/// The label with a job's progress.
[[nodiscard]] QString timeTakenLabel(const QString& timeTaken, int processed, int outputs);

} // namespace quillfern
