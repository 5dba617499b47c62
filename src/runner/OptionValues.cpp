#include "runner/OptionValues.h"

#include <limits>

namespace quillfern {

void wrong(const QString& option, const QString& value, const QString& expected)
{
    throw WrongUse(QStringLiteral("--%1 takes %2, not \"%3\"").arg(option, expected, value));
}

std::int64_t wholeNumber(const QString& option, const QString& text, std::int64_t lowest,
                         std::int64_t highest)
{
    bool ok = false;
    const qlonglong value = text.toLongLong(&ok);
    if (!ok || value < lowest || value > highest)
        wrong(option, text,
              highest >= std::numeric_limits<std::int32_t>::max() / 2
                  ? QStringLiteral("a whole number from %1").arg(lowest)
                  : QStringLiteral("a whole number from %1 to %2").arg(lowest).arg(highest));
    return value;
}

double realNumber(const QString& option, const QString& text, double lowest, double highest)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || !(value >= lowest && value <= highest))
        wrong(option, text, QStringLiteral("a number from %1 to %2").arg(lowest).arg(highest));
    return value;
}

} // namespace quillfern
