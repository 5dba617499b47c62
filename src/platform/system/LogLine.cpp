#include "platform/system/LogLine.h"

#include "platform/system/NativePath.h"

#include <QLoggingCategory>

namespace quillfern {

namespace {
Q_LOGGING_CATEGORY(systemLog, "quillfern")
}

void logLine(const QString& line)
{
    qCWarning(systemLog).noquote() << printable(line);
}

void logNotice(const QString& line)
{
    qCInfo(systemLog).noquote() << printable(line);
}

QString failureLine(const char* pattern, const QString& reason)
{
    QString line = QString::fromLatin1(pattern);
    return line.replace(QStringLiteral("%@"), reason);
}

} // namespace quillfern
