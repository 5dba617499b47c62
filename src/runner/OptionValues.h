#pragma once

#include "runner/RunnerOptions.h"

#include <QLatin1String>
#include <QString>
#include <QStringList>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace quillfern {

/// Throws WrongUse with the text "--option takes <expected>, not <value>".
[[noreturn]] void wrong(const QString& option, const QString& value, const QString& expected);

/// The number that an option's value holds; throws WrongUse for a text that is no number and for a number
/// outside the limits.
[[nodiscard]] std::int64_t wholeNumber(const QString& option, const QString& text, std::int64_t lowest,
                                       std::int64_t highest);
[[nodiscard]] double realNumber(const QString& option, const QString& text, double lowest, double highest);

/// The value that belongs to a word, in any mix of case; throws WrongUse for an unknown one.
template <class Value, std::size_t N>
[[nodiscard]] Value word(const QString& option, const QString& text,
                         const std::array<std::pair<const char*, Value>, N>& words)
{
    QStringList known;
    for (const auto& [name, value] : words) {
        if (text.compare(QLatin1String(name), Qt::CaseInsensitive) == 0) return value;
        known.append(QString::fromLatin1(name));
    }
    wrong(option, text, QStringLiteral("one of ") + known.join(QStringLiteral(", ")));
}

} // namespace quillfern
