#include "platform/pdf/PlainParser.h"

#include "platform/pdf/ContentTokens.h"

#include <algorithm>
#include <charconv>

namespace quillfern::pdf {

namespace {

constexpr int deepestValue = 100;
constexpr int highestPlainNumber = 10'000'000;
/// Pages and catalogues have a dozen.
constexpr std::size_t mostEntries = 200;

bool isDecimal(char c)
{
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c)
{
    return isDecimal(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

} // namespace

void PlainParser::skipSpace()
{
    while (at_ != end_ && contentClassOf(*at_) == ContentClass::White)
        ++at_;
}

bool PlainParser::take(std::string_view keyword)
{
    skipSpace();
    const auto left = static_cast<std::size_t>(end_ - at_);
    if (left < keyword.size()) ranOut_ = true;
    if (!std::string_view(at_, left).starts_with(keyword)) return false;
    at_ += keyword.size();
    return true;
}

bool PlainParser::takeWord(std::string_view word)
{
    if (!take(word)) return false;
    if (at_ == end_ || contentClassOf(*at_) != ContentClass::Regular) return true;
    at_ -= word.size();
    return false;
}

std::optional<std::int64_t> PlainParser::takeNumber()
{
    skipSpace();
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(at_, end_, number);
    if (end == end_) ranOut_ = true;
    if (error != std::errc() || number < 0 || (end != end_ && (*end == '.' || *end == '-')))
        return std::nullopt;
    at_ = end;
    return number;
}

std::optional<int> PlainParser::takeReference()
{
    const auto number = takeNumber();
    if (!number || *number < 1 || *number > highestPlainNumber || takeNumber() != 0) return std::nullopt;
    // To some readers "0R" is a word.
    const char* const behind = at_;
    if (!take("R") || at_ == behind + 1 || (at_ != end_ && contentClassOf(*at_) == ContentClass::Regular))
        return std::nullopt;
    highest_ = std::max(highest_, static_cast<int>(*number));
    return static_cast<int>(*number);
}

bool PlainParser::takeLineEnd()
{
    if (at_ != end_ && *at_ == '\r') ++at_;
    if (at_ == end_ || *at_ != '\n') return false;
    ++at_;
    return true;
}

std::optional<std::string_view> PlainParser::takeValue()
{
    skipSpace();
    const char* const start = at_;
    if (!skipValue(0)) {
        ranOut_ = ranOut_ || at_ == end_;
        return std::nullopt;
    }
    return std::string_view(start, static_cast<std::size_t>(at_ - start));
}

bool PlainParser::skipName()
{
    ++at_;
    while (at_ != end_ && contentClassOf(*at_) == ContentClass::Regular)
        ++at_;
    return true;
}

bool PlainParser::skipString()
{
    int open = 0;
    for (; at_ != end_; ++at_) {
        if (*at_ == '\\') {
            if (++at_ == end_) return false;
        } else if (*at_ == '(') {
            ++open;
        } else if (*at_ == ')' && --open == 0) {
            ++at_;
            return true;
        }
    }
    return false;
}

bool PlainParser::skipHexString()
{
    for (++at_; at_ != end_ && (isHexDigit(*at_) || contentClassOf(*at_) == ContentClass::White); ++at_)
        ;
    if (at_ == end_ || *at_ != '>') return false;
    ++at_;
    return true;
}

bool PlainParser::skipNumberOrReference()
{
    constexpr std::ptrdiff_t mostDigits = 15;
    const char* const start = at_;
    if (*at_ == '+' || *at_ == '-') ++at_;
    const char* const digits = at_;
    while (at_ != end_ && isDecimal(*at_))
        ++at_;
    std::ptrdiff_t count = at_ - digits;
    if (at_ != end_ && *at_ == '.') {
        const char* const fraction = ++at_;
        while (at_ != end_ && isDecimal(*at_))
            ++at_;
        count += at_ - fraction;
        if (count == 0 || count > mostDigits) return false;
        return at_ == end_ || contentClassOf(*at_) != ContentClass::Regular;
    }
    if (count == 0 || count > mostDigits || (at_ != end_ && contentClassOf(*at_) == ContentClass::Regular))
        return false;
    // "12 0 R", else the number alone.
    const char* const behind = at_;
    if (digits != start) return true;
    skipSpace();
    const char* const generation = at_;
    while (at_ != end_ && isDecimal(*at_))
        ++at_;
    const bool hasGeneration = at_ != generation;
    const char* const behindBoth = at_;
    skipSpace();
    if (at_ == end_) {
        ranOut_ = true; // an "R" may follow
    } else if (hasGeneration && *at_ == 'R' &&
               (at_ + 1 == end_ || contentClassOf(at_[1]) != ContentClass::Regular)) {
        ++at_;
        std::int64_t number = 0;
        std::from_chars(start, behind, number);
        highest_ = std::max(highest_, static_cast<int>(std::min<std::int64_t>(number, highestPlainNumber)));
        if (marks_) {
            const bool isPlain = std::string_view(generation, behindBoth) == "0" &&
                                 number < static_cast<std::int64_t>(marks_->size());
            (*marks_)[isPlain ? static_cast<std::size_t>(number) : 0] = true;
        }
        return number > 0 && number < highestPlainNumber && *behindBoth != 'R';
    }
    at_ = behind;
    return true;
}

bool PlainParser::skipValue(int depth)
{
    if (at_ == end_ || depth > deepestValue) return false;
    switch (*at_) {
    case '/':
        return skipName();
    case '(':
        return skipString();
    case '[':
        for (++at_, skipSpace(); at_ != end_ && *at_ != ']'; skipSpace())
            if (!skipValue(depth + 1)) return false;
        if (at_ == end_) return false;
        ++at_;
        return true;
    case '<':
        if (at_ + 1 == end_) {
            ++at_;
            return false;
        }
        if (at_[1] != '<') return skipHexString();
        at_ += 2;
        while (!take(">>")) {
            if (at_ == end_ || *at_ != '/') return false;
            skipName();
            skipSpace();
            if (!skipValue(depth + 1)) return false;
        }
        return true;
    case 't':
        return takeWord("true");
    case 'f':
        return takeWord("false");
    case 'n':
        return takeWord("null");
    default:
        return skipNumberOrReference();
    }
}

std::optional<PlainDictionary> PlainDictionary::take(PlainParser& parser)
{
    if (!parser.take("<<")) return std::nullopt;
    PlainDictionary result;
    while (!parser.take(">>")) {
        if (parser.at_ == parser.end_ || *parser.at_ != '/') return std::nullopt;
        const char* const start = parser.at_;
        parser.skipName();
        const std::string_view key(start, static_cast<std::size_t>(parser.at_ - start));
        if (key.find('#') != std::string_view::npos || !result.value(key).empty()) return std::nullopt;
        const auto value = parser.takeValue();
        if (!value || result.entries_.size() == mostEntries) return std::nullopt;
        result.entries_.push_back({key, *value});
    }
    return result;
}

std::optional<PlainDictionary> PlainDictionary::read(std::string_view text)
{
    PlainParser parser(text);
    return take(parser);
}

std::string_view PlainDictionary::value(std::string_view key) const
{
    for (const Entry& entry : entries_)
        if (entry.key == key) return entry.value;
    return {};
}

std::optional<std::int64_t> PlainDictionary::number(std::string_view key) const
{
    return plainNumber(value(key));
}

std::optional<int> PlainDictionary::reference(std::string_view key) const
{
    return plainReference(value(key));
}

std::optional<std::int64_t> plainNumber(std::string_view value)
{
    PlainParser parser(value);
    const auto number = parser.takeNumber();
    return number && parser.used() == value.size() ? number : std::nullopt;
}

std::optional<int> plainReference(std::string_view value)
{
    PlainParser parser(value);
    const auto number = parser.takeReference();
    return number && parser.used() == value.size() ? number : std::nullopt;
}

} // namespace quillfern::pdf
