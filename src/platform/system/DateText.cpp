#include "platform/system/DateText.h"

#include "platform/system/Clock.h"

namespace quillfern {

namespace {

QString padded(int value, qsizetype width)
{
    return QString::number(value).rightJustified(width, QLatin1Char('0'));
}

QString field(QChar letter, qsizetype count, const QDateTime& moment, const QLocale& locale)
{
    const QDate date = moment.date();
    const QTime time = moment.time();
    switch (letter.unicode()) {
    case 'd':
        return padded(date.day(), count);
    case 'M':
        return count >= 3 ? locale.monthName(date.month(), QLocale::ShortFormat)
                          : padded(date.month(), count);
    case 'y':
        return count == 2 ? padded(date.year() % 100, 2) : padded(date.year(), count);
    case 'h':
        return padded(time.hour() % 12 == 0 ? 12 : time.hour() % 12, count);
    case 'H':
        return padded(time.hour(), count);
    case 'm':
        return padded(time.minute(), count);
    case 's':
        return padded(time.second(), count);
    case 'a':
        return time.hour() < 12 ? locale.amText() : locale.pmText();
    default:
        return QString(count, letter);
    }
}

} // namespace

QString dateText(const QDateTime& moment, const QString& pattern, const QLocale& locale)
{
    QString text;
    if (!moment.isValid()) return text;
    for (qsizetype i = 0; i < pattern.size();) {
        qsizetype end = i + 1;
        while (end < pattern.size() && pattern[end] == pattern[i])
            ++end;
        text += field(pattern[i], end - i, moment, locale);
        i = end;
    }
    return text;
}

QString getStringFromDateFormat(const QString& pattern, const Clock& clock)
{
    return dateText(clock.now(), pattern);
}

} // namespace quillfern
