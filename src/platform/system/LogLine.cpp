#include "platform/system/LogLine.h"

#include "platform/system/NativePath.h"

#include <QLoggingCategory>

namespace quillfern {

namespace {
Q_LOGGING_CATEGORY(systemLog, "quillfern")

thread_local HeldLogLines* held = nullptr;

} // namespace

void logLine(const QString& line)
{
    if (LogHold::keeps(line, false)) return;
    qCWarning(systemLog).noquote() << printable(line);
}

void logNotice(const QString& line)
{
    if (LogHold::keeps(line, true)) return;
    qCInfo(systemLog).noquote() << printable(line);
}

QString failureLine(const char* pattern, const QString& reason)
{
    QString line = QString::fromLatin1(pattern);
    return line.replace(QStringLiteral("%@"), reason);
}

void HeldLogLines::write()
{
    for (const auto& [line, isNotice] : std::exchange(lines_, {}))
        isNotice ? logNotice(line) : logLine(line);
}

LogHold::LogHold(HeldLogLines& lines)
{
    held = &lines;
}

LogHold::~LogHold()
{
    held = nullptr;
}

bool LogHold::keeps(const QString& line, bool isNotice)
{
    if (held) held->lines_.emplace_back(line, isNotice);
    return held != nullptr;
}

} // namespace quillfern
