#include "stamps/NumberText.h"

#include "support/Cases.h"

namespace quillfern {
namespace {

TEST(NumberText, FillsTheTemplate)
{
    // An absent text is null.
    using Text = const char*;
    const auto text = [](Text utf8) { return utf8 ? std::optional(QString::fromUtf8(utf8)) : std::nullopt; };
    const Rows<Text, Text, NumberType, std::int64_t, Text, std::int64_t, std::int64_t, Text> cases = {
        {"plain text keeps its tokens", "Page {0}", NumberType::PlainText, 1, "0", 3, 9, "Page {0}"},
        {"defaults", "{0} of {1}", NumberType::Numbers, 1, "0", 3, 10, "3 of 10"},
        {"padding never cuts", "{0} of {1}", NumberType::Numbers, 2, "0", 123, 4567, "123 of 4567"},
        {"padding of both numbers", "{0} of {1}", NumberType::Numbers, 4, "0", 12, 1500, "0012 of 1500"},
        {"padding with blanks", "{0}", NumberType::Numbers, 3, " ", 7, 9, "  7"},
        {"only the first padding character", "{0}", NumberType::Numbers, 3, "ab", 7, 9, "aa7"},
        {"an emoji is one padding character", "{0}", NumberType::Numbers, 2, "🌿x", 7, 9, "🌿7"},
        {"empty padding text", "{0}", NumberType::Numbers, 5, "", 7, 9, "7"},
        {"absent padding text", "{0}", NumberType::Numbers, 5, nullptr, 7, 9, "7"},
        {"padding before the minus sign", "{0}", NumberType::Numbers, 4, "0", -5, 9, "00-5"},
        {"roman capitals", "{0} of {1}", NumberType::RomanNumbersCapital, 9, "0", 4, 9, "IV of IX"},
        {"roman small", "{0} of {1}", NumberType::RomanNumbersSmall, 1, "0", 4, 9, "iv of ix"},
        {"page zero in roman", "{0} of {1}", NumberType::RomanNumbersSmall, 1, "0", 0, 10, " of x"},
        {"slots go by their order", "{1} of {0}", NumberType::Numbers, 1, "0", 2, 5, "2 of 5"},
        {"the total's token alone gets the page", "of {1}", NumberType::Numbers, 1, "0", 3, 5, "of 3"},
        {"further slots are empty", "{0}/{1}/{0}/{1}", NumberType::Numbers, 1, "0", 3, 5, "3/5//"},
        {"percent signs stand for themselves", "100% {0} %d %@ %s", NumberType::Numbers, 1, "0", 3, 5,
         "100% 3 %d %@ %s"},
        {"other braces stand for themselves", "{2} {0 {0} }{", NumberType::Numbers, 1, "0", 3, 5,
         "{2} {0 3 }{"},
        {"an unknown style fills nothing", "a {0} b {1}", NumberType{7}, 1, "0", 3, 5, "a  b "},
        {"empty template", "", NumberType::Numbers, 1, "0", 3, 5, ""},
        {"absent template", nullptr, NumberType::Numbers, 1, "0", 3, 5, ""},
        {"numbers are cut to 32 bits", "{0}", NumberType::Numbers, 1, "0", (std::int64_t{1} << 32) + 6, 5,
         "6"},
        {"the highest bit is the sign", "{0}", NumberType::Numbers, 1, "0", std::int64_t{1} << 31, 5,
         "-2147483648"},
    };
    for (const auto& [what, pattern, type, padding, character, page, total, expected] : cases)
        EXPECT_EQ(numberText({text(pattern), type, padding, text(character)}, page, total).toStdString(),
                  expected)
            << what;
    NumberFormat format;
    format.paddingLength = std::int64_t{1} << 62;
    EXPECT_LT(numberText(format, 1, 2).size(), 10000) << "an absurd length is bounded";
}

TEST(RomanNumerals, AgreeWithTheirRules)
{
    const std::vector<std::pair<std::int32_t, const char*>> cases = {
        {1, "i"},         {3, "iii"},     {14, "xiv"},     {40, "xl"},      {49, "xlix"},
        {90, "xc"},       {400, "cd"},    {444, "cdxliv"}, {999, "cmxcix"}, {1900, "mcm"},
        {2024, "mmxxiv"}, {4000, "mmmm"}, {0, ""},         {-5, ""}};
    for (const auto& [number, text] : cases)
        EXPECT_EQ(romanNumeralsFromInt(number).toStdString(), text);
}

} // namespace
} // namespace quillfern
