#pragma once

#include "stamps/FillIns.h"

#include <QString>
#include <cstdint>
#include <optional>

namespace quillfern {

/// How numbers are written in a stamp's text. The values are stored in profiles.
enum class NumberType : std::int32_t {
    PlainText = 0, ///< the template as it stands, tokens and all
    Numbers = 1,   ///< decimal, padded on the left
    RomanNumbersCapital = 2,
    RomanNumbersSmall = 3,
};

/// The name shown for a number style; empty for a value that is no style.
[[nodiscard]] QString numberTypeName(NumberType numberType);

/// The template of a text stamp and how its numbers are written.
struct NumberFormat
{
    /// "{0}" and "{1}" are slots. Their order in the text counts, not the digit: the first slot is filled
    /// with the page number, the second with the total, any further one with nothing.
    std::optional<QString> numberFormat = QStringLiteral("{0} of {1}");
    NumberType numberType = NumberType::Numbers;
    std::int64_t paddingLength = 1;
    std::optional<QString> paddingCharacter =
        QStringLiteral("0"); ///< its first character pads; none when empty

    bool operator==(const NumberFormat&) const = default;
};

/// The text printed on a page; empty when nothing is printed. Numbers are cut to 32 bits. Words of the
/// template that `fillIns` knows are filled in, in plain text too; what they stand for is printed as it is.
[[nodiscard]] QString numberText(const NumberFormat& format, std::int64_t pageNumber, std::int64_t totalPages,
                                 const FillIns& fillIns = {});

/// Whether a page's number appears in the text.
[[nodiscard]] bool showsNumber(const NumberFormat& format);

/// A number as it is written into a slot: padded or in roman numerals. Cut to 32 bits; empty for a style that
/// does not exist.
[[nodiscard]] QString slotText(const NumberFormat& format, std::int64_t number);

/// Roman numerals in small letters, without upper limit; empty for zero and below.
[[nodiscard]] QString romanNumeralsFromInt(std::int32_t number);

} // namespace quillfern
