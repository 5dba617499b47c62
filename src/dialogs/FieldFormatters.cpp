#include "dialogs/FieldFormatters.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace quillfern {

namespace {

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

QValidator::State accepted(bool isAccepted)
{
    return isAccepted ? QValidator::Acceptable : QValidator::Invalid;
}

} // namespace

CustomNumberFormatterInteger::CustomNumberFormatterInteger(std::int64_t maximum, QObject* parent)
    : QValidator(parent), mostDigits_(QString::number(maximum).size())
{
}

QValidator::State CustomNumberFormatterInteger::validate(QString& partial, int&) const
{
    return accepted(partial.size() <= mostDigits_ && std::all_of(partial.begin(), partial.end(), isDigit));
}

QValidator::State CustomNumberFormatterDecimal::validate(QString& partial, int&) const
{
    const auto isPart = [](QChar c) { return isDigit(c) || c == QLatin1Char('.'); };
    return accepted(std::all_of(partial.begin(), partial.end(), isPart));
}

QValidator::State CustomTextFieldFormatter::validate(QString& partial, int&) const
{
    return accepted(partial.size() <= maxLength_);
}

std::int64_t leadingInteger(const QString& text)
{
    const QByteArray bytes = text.trimmed().toUtf8();
    std::int64_t value = 0;
    const auto result = std::from_chars(bytes.constData(), bytes.constData() + bytes.size(), value);
    if (result.ec == std::errc::result_out_of_range)
        return bytes.startsWith('-') ? std::numeric_limits<std::int64_t>::min()
                                     : std::numeric_limits<std::int64_t>::max();
    return value;
}

NumberField::NumberField(QWidget* parent) : QLineEdit(parent)
{
    connect(this, &QLineEdit::editingFinished, this, [this] {
        const std::int64_t value = integerValue();
        setIntegerValue(value);
        Q_EMIT integerEdited(value);
    });
}

std::int64_t NumberField::integerValue() const
{
    return leadingInteger(text());
}

void NumberField::setIntegerValue(std::int64_t value)
{
    const QString shown = QString::number(value);
    if (text() != shown) setText(shown);
}

QString guardedInteger(GuardTag tag, const QString& text)
{
    const auto first = std::find_if(text.begin(), text.end(), isDigit);
    const auto last = std::find_if(text.rbegin(), text.rend(), isDigit).base();
    const QString trimmed = first < last ? QString(first, last - first) : QString();
    // The number that the text begins with, as far as it goes.
    const auto stop = std::find_if_not(trimmed.begin(), trimmed.end(), isDigit);
    const bool isZero = std::all_of(trimmed.begin(), stop, [](QChar c) { return c == QLatin1Char('0'); });
    if (!trimmed.isEmpty() && !isZero) return trimmed;
    return tag == GuardTag::NumberSteps ? QStringLiteral("2") : QStringLiteral("1");
}

} // namespace quillfern
