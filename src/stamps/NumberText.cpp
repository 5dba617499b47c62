#include "stamps/NumberText.h"

#include "platform/store/Record.h"

#include <QCoreApplication>
#include <algorithm>
#include <array>

namespace quillfern {

namespace {

/// A stored padding length can be any number; more characters than this fit on no page.
constexpr std::int64_t mostPadding = 1000;

QString padded(std::int32_t number, const NumberFormat& format)
{
    const QString digits = QString::number(number);
    const QString pad = format.paddingCharacter.value_or(QString());
    if (pad.isEmpty()) return digits;
    const qsizetype first = pad.front().isHighSurrogate() && pad.size() > 1 ? 2 : 1;
    const auto missing = std::min(format.paddingLength, mostPadding) - digits.size();
    return missing > 0 ? pad.left(first).repeated(missing) + digits : digits;
}

QString numberInStyle(std::int32_t number, const NumberFormat& format)
{
    switch (format.numberType) {
    case NumberType::Numbers:
        return padded(number, format);
    case NumberType::RomanNumbersCapital:
        return romanNumeralsFromInt(number).toUpper();
    default:
        return romanNumeralsFromInt(number);
    }
}

bool isSlot(const QString& text, qsizetype at)
{
    const auto token = QStringView(text).mid(at, 3);
    return token == u"{0}" || token == u"{1}";
}

} // namespace

QString numberTypeName(NumberType numberType)
{
    switch (numberType) {
    case NumberType::PlainText:
        return QCoreApplication::translate("quillfern::NumberText", "Plain Text");
    case NumberType::Numbers:
        return QCoreApplication::translate("quillfern::NumberText", "Numbers");
    case NumberType::RomanNumbersCapital:
        return QCoreApplication::translate("quillfern::NumberText", "Roman Numbers Capital");
    case NumberType::RomanNumbersSmall:
        return QCoreApplication::translate("quillfern::NumberText", "Roman Numbers Small");
    default:
        return {};
    }
}

bool showsNumber(const NumberFormat& format)
{
    const QString pattern = format.numberFormat.value_or(QString());
    return !slotText(format, 1).isEmpty() &&
           (pattern.contains(QLatin1String("{0}")) || pattern.contains(QLatin1String("{1}")));
}

QString slotText(const NumberFormat& format, std::int64_t number)
{
    // A style that does not exist (a damaged profile) fills no slot.
    const bool known =
        format.numberType >= NumberType::Numbers && format.numberType <= NumberType::RomanNumbersSmall;
    return known ? numberInStyle(store::low32(number), format) : QString();
}

QString numberText(const NumberFormat& format, std::int64_t pageNumber, std::int64_t totalPages,
                   const FillIns& fillIns)
{
    const QString pattern = format.numberFormat.value_or(QString());
    const bool hasSlots = format.numberType != NumberType::PlainText;
    const std::array<QString, 2> fillings = {slotText(format, pageNumber), slotText(format, totalPages)};
    QString text;
    std::size_t slot = 0;
    for (qsizetype i = 0; i < pattern.size();) {
        if (const auto filled = takeFillIn(pattern, i, fillIns)) {
            text += *filled;
        } else if (hasSlots && isSlot(pattern, i)) {
            if (slot < fillings.size()) text += fillings[slot];
            ++slot;
            i += 3;
        } else {
            text += pattern[i++];
        }
    }
    return text;
}

QString romanNumeralsFromInt(std::int32_t number)
{
    struct Numeral
    {
        std::int32_t value;
        const char* letters;
    };
    static constexpr std::array<Numeral, 13> numerals = {{{1000, "m"},
                                                          {900, "cm"},
                                                          {500, "d"},
                                                          {400, "cd"},
                                                          {100, "c"},
                                                          {90, "xc"},
                                                          {50, "l"},
                                                          {40, "xl"},
                                                          {10, "x"},
                                                          {9, "ix"},
                                                          {5, "v"},
                                                          {4, "iv"},
                                                          {1, "i"}}};
    QString text;
    for (const Numeral& numeral : numerals) {
        for (; number >= numeral.value; number -= numeral.value)
            text += QLatin1String(numeral.letters);
    }
    return text;
}

} // namespace quillfern
