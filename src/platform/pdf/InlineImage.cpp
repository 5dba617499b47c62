#include "platform/pdf/InlineImage.h"

#include "platform/pdf/ContentTokens.h"
#include "platform/system/Cancellation.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quillfern::pdf {

namespace {

/// The entries of the image's dictionary from which the length of its data follows.
struct Facts
{
    std::int64_t width = 0;
    std::int64_t height = 0;
    std::int64_t bits = 0;
    std::int64_t channels = 0;
    std::string_view filter; ///< the outermost, without its slash; empty for none
    bool paired = true;      ///< keys and values alternate
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
bool readDictionary(ContentTokens& tokens, Facts& facts, const std::stop_token& stop)
{
    std::string_view key;
    while (const auto token = tokens.next()) {
        throwIfCancelled(stop);
        if (*token == "ID") {
            facts.paired = facts.paired && key.empty();
            return true;
        }
        if (*token == "[") continue; // the value is the array's first element
        if (key.empty()) {
            if (token->front() == '/')
                key = *token;
            else if (*token != "]" && *token != ">>")
                facts.paired = false;
        } else {
            note(facts, key, *token);
            key = {};
            if (tokens.inArray()) tokens.skipArray();
        }
    }
    return false;
}

/// The place behind the EI that stands at `p`; null when none does.
const char* endOperatorAt(const char* p, const char* end)
{
    if (end - p < 2 || p[0] != 'E' || p[1] != 'I') return nullptr;
    return p + 2 == end || contentClassOf(p[2]) != ContentClass::Regular ? p + 2 : nullptr;
}

/// The same for an EI with a little white space before it, as writers put it behind the data.
const char* endOperatorNear(const char* p, const char* end)
{
    constexpr std::ptrdiff_t mostWhite = 64;
    const char* limit = p + std::min(mostWhite, end - p);
    while (p < limit && contentClassOf(*p) == ContentClass::White)
        ++p;
    return endOperatorAt(p, end);
}

bool hasKnownLength(const Facts& facts)
{
    constexpr std::int64_t mostBits = 16;
    return facts.filter.empty() && facts.width > 0 && facts.height > 0 && facts.bits > 0 &&
           facts.bits <= mostBits && facts.channels > 0;
}

const char* endByLength(const Facts& facts, const char* data, const char* end)
{
    const std::int64_t row = (facts.width * facts.channels * facts.bits + 7) / 8;
    if (row > (end - data) / facts.height) return nullptr;
    return endOperatorNear(data + row * facts.height, end);
}

bool isControl(char c)
{
    return static_cast<unsigned char>(c) < ' ' && contentClassOf(c) != ContentClass::White;
}

/// What is read behind a possible end to see whether content follows.
constexpr std::ptrdiff_t mostLookedAt = 256;

/// True when what follows reads as content up to its first operator. Of a very long string or comment only
/// the beginning is read; it counts as content when that is text. `read` receives how far that was.
bool readsAsContent(const char* p, const char* end, const char*& read)
{
    constexpr int mostOperands = 40;
    const char* limit = p + std::min(mostLookedAt, end - p);
    ContentTokens tokens(p, limit);
    for (int i = 0; i < mostOperands; ++i) {
        const auto token = tokens.next();
        read = tokens.position();
        if (tokens.position() == limit && limit < end) return std::none_of(p, limit, isControl);
        if (!token) return true;
        if (isContentOperator(*token)) return true;
        if (!isContentOperand(*token)) return false;
    }
    return false;
}

/// The next EI from `p` on that `accept` takes, given its place and the place behind it.
template <class Accept>
const char* nextEndOperator(const char* p, const char* end, Accept accept)
{
    const std::string_view rest(p, static_cast<std::size_t>(end - p));
    for (std::size_t at = rest.find("EI"); at != std::string_view::npos; at = rest.find("EI", at + 1)) {
        const char* after = endOperatorAt(p + at, end);
        if (after && accept(p + at, after)) return p + at;
    }
    return nullptr;
}

} // namespace

const char* InlineImages::endByMark(Next& next, const char* mark, const char* data)
{
    if (!next.at || next.at < data) {
        const std::string_view text(mark);
        const std::string_view rest(data, static_cast<std::size_t>(end_ - data));
        const std::size_t found = rest.find(text);
        if (found == std::string_view::npos)
            next = {end_, nullptr};
        else
            next = {data + found, endOperatorNear(data + found + text.size(), end_)};
    }
    return next.after;
}

InlineImages::InlineImages(const char* contentBegin, const char* contentEnd, const std::stop_token& stop)
    : end_(contentEnd), stop_(stop)
{
    // Far more than any real content needs, and still in proportion to the content.
    constexpr std::size_t times = 8;
    constexpr std::size_t least = std::size_t{1} << 20;
    mayLookAt_ = times * static_cast<std::size_t>(contentEnd - contentBegin) + least;
}

/// Whether an EI that ends at `after` is followed by content. Content that consists of nothing but possible
/// ends uses up what may be looked at; no end is believed from then on.
bool InlineImages::looksAhead(const char* after)
{
    throwIfCancelled(stop_);
    if (mayLookAt_ < static_cast<std::size_t>(mostLookedAt)) return false;
    const char* read = after;
    const bool accepted = readsAsContent(after, end_, read);
    mayLookAt_ -= static_cast<std::size_t>(read - after);
    return accepted;
}

const char* InlineImages::endByLooking(const char* data)
{
    const auto find = [&](Next& next, auto accept) {
        if (next.at && next.at >= data) return next.after;
        const char* found = nextEndOperator(data, end_, accept);
        next = found ? Next{found, found + 2} : Next{end_, nullptr};
        return next.after;
    };
    if (const char* after =
            find(operator_, [this](const char*, const char* behind) { return looksAhead(behind); }))
        return after;
    if (const char* after = endOperatorAt(data, end_)) return after;
    return find(apart_, [data](const char* at, const char*) {
        return at > data && contentClassOf(at[-1]) == ContentClass::White;
    });
}

InlineImageEnd InlineImages::endOf(const char* dictionary)
{
    ContentTokens tokens(dictionary, end_);
    Facts facts;
    if (!readDictionary(tokens, facts, stop_)) {
        const std::string arrays(static_cast<std::size_t>(tokens.openArrays()), ']');
        return {end_, tokens.unclosedString() + arrays + "\nID \nEI\n", true};
    }
    // One white-space character separates the data from ID; text filters allow more.
    const char* data = std::min(tokens.position() + 1, end_);
    const bool knownLength = hasKnownLength(facts);
    const char* after = knownLength ? endByLength(facts, data, end_) : nullptr;
    bool damaged = !facts.paired || (knownLength && !after);
    if (!after && (facts.filter == "A85" || facts.filter == "ASCII85Decode"))
        damaged = !(after = endByMark(text85_, "~>", data)) || damaged;
    if (!after && (facts.filter == "AHx" || facts.filter == "ASCIIHexDecode"))
        damaged = !(after = endByMark(textHex_, ">", data)) || damaged;
    if (!after) after = endByLooking(data);
    if (after) return {after, {}, damaged};
    return {end_, "\nEI\n", true};
}

} // namespace quillfern::pdf
