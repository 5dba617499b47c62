#include "runner/ProgressLine.h"

#include "platform/system/Terminal.h"

namespace quillfern {

void ProgressLine::show(const QString& text)
{
    if (!isShown_) return;
    // A line that is wrapped could not be taken away.
    const int columns = terminalColumns();
    err_ << "\r\x1b[K" << (columns > 1 ? text.left(columns - 1) : text);
    err_.flush();
    isThere_ = true;
}

void ProgressLine::clear()
{
    if (!isThere_) return;
    err_ << "\r\x1b[K";
    err_.flush();
    isThere_ = false;
}

QString remainingTime(std::int64_t milliseconds, std::int64_t done, std::int64_t total)
{
    constexpr std::int64_t soonest = 3000; // milliseconds
    constexpr std::int64_t minute = 60;
    constexpr std::int64_t hour = 60 * minute;
    if (milliseconds < soonest || done <= 0 || done >= total) return {};
    const double perPage = static_cast<double>(milliseconds) / static_cast<double>(done);
    const auto left = static_cast<std::int64_t>(perPage * static_cast<double>(total - done) / 1000) + 1;
    if (left < minute) return QStringLiteral("about %1 s left").arg((left + 4) / 5 * 5);
    if (left < hour) return QStringLiteral("about %1 min left").arg((left + minute - 1) / minute);
    return QStringLiteral("about %1 h %2 min left").arg(left / hour).arg(left % hour / minute);
}

} // namespace quillfern
