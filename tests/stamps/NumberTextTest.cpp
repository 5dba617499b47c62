#include "stamps/NumberText.h"

#include <gtest/gtest.h>

namespace quillfern {
namespace {

struct NumberCase
{
    const char* what;
    const char* pattern; // null: absent
    NumberType type;
    std::int64_t padding;
    const char* paddingCharacter; // null: absent
    std::int64_t page;
    std::int64_t total;
    const char* expected;
};

class NumberTextCases : public testing::TestWithParam<NumberCase>
{
};

TEST_P(NumberTextCases, GivesTheText)
{
    const NumberCase& c = GetParam();
    NumberFormat format;
    format.numberFormat = c.pattern ? std::optional(QString::fromUtf8(c.pattern)) : std::nullopt;
    format.numberType = c.type;
    format.paddingLength = c.padding;
    format.paddingCharacter =
        c.paddingCharacter ? std::optional(QString::fromUtf8(c.paddingCharacter)) : std::nullopt;
    EXPECT_EQ(numberText(format, c.page, c.total).toStdString(), c.expected) << c.what;
}

INSTANTIATE_TEST_SUITE_P(
    All, NumberTextCases,
    testing::Values(
        NumberCase{"plain text keeps its tokens", "Page {0}", NumberType::PlainText, 1, "0", 3, 9,
                   "Page {0}"},
        NumberCase{"defaults", "{0} of {1}", NumberType::Numbers, 1, "0", 3, 10, "3 of 10"},
        NumberCase{"no padding", "{0} of {1}", NumberType::Numbers, 0, "0", 9, 12, "9 of 12"},
        NumberCase{"padding never cuts", "{0} of {1}", NumberType::Numbers, 2, "0", 123, 4567, "123 of 4567"},
        NumberCase{"padding of both numbers", "{0} of {1}", NumberType::Numbers, 4, "0", 12, 1500,
                   "0012 of 1500"},
        NumberCase{"padding with blanks", "{0}", NumberType::Numbers, 3, " ", 7, 9, "  7"},
        NumberCase{"only the first padding character", "{0}", NumberType::Numbers, 3, "ab", 7, 9, "aa7"},
        NumberCase{"an emoji is one padding character", "{0}", NumberType::Numbers, 2, "🌿x", 7, 9, "🌿7"},
        NumberCase{"empty padding text", "{0}", NumberType::Numbers, 5, "", 7, 9, "7"},
        NumberCase{"absent padding text", "{0}", NumberType::Numbers, 5, nullptr, 7, 9, "7"},
        NumberCase{"padding before the minus sign", "{0}", NumberType::Numbers, 4, "0", -5, 9, "00-5"},
        NumberCase{"roman capitals", "{0} of {1}", NumberType::RomanNumbersCapital, 9, "0", 4, 9, "IV of IX"},
        NumberCase{"roman small", "{0} of {1}", NumberType::RomanNumbersSmall, 1, "0", 4, 9, "iv of ix"},
        NumberCase{"page zero in roman", "{0} of {1}", NumberType::RomanNumbersSmall, 1, "0", 0, 10, " of x"},
        NumberCase{"slots go by their order", "{1} of {0}", NumberType::Numbers, 1, "0", 2, 5, "2 of 5"},
        NumberCase{"one slot", "Page {0}", NumberType::Numbers, 1, "0", 3, 5, "Page 3"},
        NumberCase{"the total's token alone gets the page", "of {1}", NumberType::Numbers, 1, "0", 3, 5,
                   "of 3"},
        NumberCase{"further slots are empty", "{0}/{1}/{0}/{1}", NumberType::Numbers, 1, "0", 3, 5, "3/5//"},
        NumberCase{"percent signs stand for themselves", "100% {0} %d %@ %s", NumberType::Numbers, 1, "0", 3,
                   5, "100% 3 %d %@ %s"},
        NumberCase{"other braces stand for themselves", "{2} {0 {0} }{", NumberType::Numbers, 1, "0", 3, 5,
                   "{2} {0 3 }{"},
        NumberCase{"an unknown style fills nothing", "a {0} b {1}", NumberType{7}, 1, "0", 3, 5, "a  b "},
        NumberCase{"empty template", "", NumberType::Numbers, 1, "0", 3, 5, ""},
        NumberCase{"absent template", nullptr, NumberType::Numbers, 1, "0", 3, 5, ""},
        NumberCase{"numbers are cut to 32 bits", "{0}", NumberType::Numbers, 1, "0",
                   (std::int64_t{1} << 32) + 6, 5, "6"},
        NumberCase{"the highest bit is the sign", "{0}", NumberType::Numbers, 1, "0", std::int64_t{1} << 31,
                   5, "-2147483648"}));

TEST(RomanNumerals, AgreeWithTheirRules)
{
    const std::vector<std::pair<std::int32_t, const char*>> cases = {
        {1, "i"},         {3, "iii"},     {14, "xiv"},     {40, "xl"},      {49, "xlix"},
        {90, "xc"},       {400, "cd"},    {444, "cdxliv"}, {999, "cmxcix"}, {1900, "mcm"},
        {2024, "mmxxiv"}, {4000, "mmmm"}, {0, ""},         {-5, ""}};
    for (const auto& [number, text] : cases)
        EXPECT_EQ(romanNumeralsFromInt(number).toStdString(), text);
}

TEST(NumberTextLimits, AnAbsurdPaddingLengthIsBounded)
{
    NumberFormat format;
    format.paddingLength = std::int64_t{1} << 62;
    EXPECT_LT(numberText(format, 1, 2).size(), 10000);
}

} // namespace
} // namespace quillfern
