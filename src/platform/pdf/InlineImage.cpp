#include "platform/pdf/InlineImage.h"

#include "platform/pdf/ContentTokens.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quillfern {

namespace {

/// What the image's dictionary says, as far as it tells how long the data are.
struct Facts
{
    std::int64_t width = 0;
    std::int64_t height = 0;
    std::int64_t bits = 0;
    std::int64_t channels = 0;
    std::string_view filter; ///< the outermost, without its slash; empty for none
};

std::int64_t wholeNumber(std::string_view text)
{
    std::int64_t value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9' || value > 1'000'000'000) return 0;
        value = value * 10 + (c - '0');
    }
    return value;
}

void note(Facts& facts, std::string_view key, std::string_view value)
{
    if (key == "/W" || key == "/Width") facts.width = wholeNumber(value);
    if (key == "/H" || key == "/Height") facts.height = wholeNumber(value);
    if (key == "/BPC" || key == "/BitsPerComponent") facts.bits = wholeNumber(value);
    if ((key == "/IM" || key == "/ImageMask") && value == "true") facts.bits = facts.channels = 1;
    if (key == "/CS" || key == "/ColorSpace") {
        if (value == "/G" || value == "/DeviceGray" || value == "/CalGray") facts.channels = 1;
        if (value == "/RGB" || value == "/DeviceRGB" || value == "/CalRGB") facts.channels = 3;
        if (value == "/CMYK" || value == "/DeviceCMYK") facts.channels = 4;
        if (value == "/I" || value == "/Indexed") facts.channels = 1;
    }
    if ((key == "/F" || key == "/Filter") && value.size() > 1 && value[0] == '/')
        facts.filter = value.substr(1);
}

/// Reads the dictionary; leaves `tokens` behind the ID operator. False when that never comes.
bool readDictionary(ContentTokens& tokens, Facts& facts)
{
    std::string_view key;
    while (const auto token = tokens.next()) {
        if (*token == "ID") return true;
        if (*token == "[") continue; // the value is the array's first element
        if (key.empty()) {
            if (token->front() == '/') key = *token;
        } else {
            note(facts, key, *token);
            key = {};
            if (tokens.inArray()) tokens.skipArray();
        }
    }
    return false;
}

/// The place behind an EI that stands at `p` after any white space; null when none does.
const char* endOperatorAt(const char* p, const char* end)
{
    while (p < end && contentClassOf(*p) == ContentClass::White)
        ++p;
    if (end - p < 2 || p[0] != 'E' || p[1] != 'I') return nullptr;
    return p + 2 == end || contentClassOf(p[2]) != ContentClass::Regular ? p + 2 : nullptr;
}

const char* endByLength(const Facts& facts, const char* data, const char* end)
{
    if (!facts.filter.empty() || facts.width <= 0 || facts.height <= 0 || facts.bits <= 0 ||
        facts.channels <= 0)
        return nullptr;
    const std::int64_t row = (facts.width * facts.channels * facts.bits + 7) / 8;
    if (row > (end - data) / facts.height) return nullptr;
    return endOperatorAt(data + row * facts.height, end);
}

const char* endByMark(const Facts& facts, const char* data, const char* end)
{
    std::string_view mark;
    if (facts.filter == "A85" || facts.filter == "ASCII85Decode") mark = "~>";
    if (facts.filter == "AHx" || facts.filter == "ASCIIHexDecode") mark = ">";
    if (mark.empty()) return nullptr;
    const std::string_view rest(data, static_cast<std::size_t>(end - data));
    const std::size_t found = rest.find(mark);
    return found == std::string_view::npos ? nullptr : endOperatorAt(data + found + mark.size(), end);
}

/// True when what follows reads as content up to its first operator.
bool readsAsContent(const char* p, const char* end)
{
    constexpr int mostOperands = 40;
    ContentTokens tokens(p, end);
    for (int i = 0; i < mostOperands; ++i) {
        const auto token = tokens.next();
        if (!token) return true;
        if (isContentOperator(*token)) return true;
        if (!isContentOperand(*token)) return false;
    }
    return false;
}

const char* endByLooking(const char* data, const char* end)
{
    const char* plausible = nullptr;
    const std::string_view rest(data, static_cast<std::size_t>(end - data));
    for (std::size_t at = rest.find("EI"); at != std::string_view::npos; at = rest.find("EI", at + 1)) {
        const char* after = endOperatorAt(data + at, end);
        if (!after) continue;
        if (readsAsContent(after, end)) return after;
        const bool standsAlone = at == 0 || contentClassOf(rest[at - 1]) == ContentClass::White;
        if (!plausible && standsAlone) plausible = after;
    }
    return plausible;
}

} // namespace

InlineImageEnd endOfInlineImage(const char* dictionary, const char* end)
{
    ContentTokens tokens(dictionary, end);
    Facts facts;
    if (!readDictionary(tokens, facts)) {
        const std::string arrays(static_cast<std::size_t>(tokens.openArrays()), ']');
        return {end, tokens.unclosedString() + arrays + "\nID \nEI\n"};
    }
    // One white-space character separates the data from ID; text filters allow more.
    const char* data = std::min(tokens.position() + 1, end);
    const char* after = endByLength(facts, data, end);
    if (!after) after = endByMark(facts, data, end);
    if (!after) after = endByLooking(data, end);
    if (after) return {after, {}};
    return {end, "\nEI\n"};
}

} // namespace quillfern
