#include "platform/system/TimeTaken.h"

#include <QCoreApplication>

namespace quillfern {

QString timeTakenString(const QDateTime& start, const QDateTime& end)
{
    if (!start.isValid() || !end.isValid()) return {};
    const qint64 seconds = start.msecsTo(end) / 1000;
    QString text;
    if (seconds / 3600 > 0)
        text += QCoreApplication::translate("quillfern::TimeTaken", "%1 hr(s) ").arg(seconds / 3600);
    if (seconds / 60 % 60 > 0)
        text += QCoreApplication::translate("quillfern::TimeTaken", "%1 min(s) ").arg(seconds / 60 % 60);
    if (seconds % 60 > 0)
        text += QCoreApplication::translate("quillfern::TimeTaken", "%1 sec(s) ").arg(seconds % 60);
    return text;
}

QString timeTakenInProcess()
{
    return QCoreApplication::translate("quillfern::TimeTaken", "In Process...");
}

QString timeTakenLabel(const QString& timeTaken, int processed, int outputs)
{
    return QCoreApplication::translate("quillfern::TimeTaken", "Total Time Taken : %1 %2/%3")
        .arg(timeTaken)
        .arg(processed)
        .arg(outputs);
}

} // namespace quillfern
