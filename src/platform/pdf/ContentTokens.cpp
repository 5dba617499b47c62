#include "platform/pdf/ContentTokens.h"

#include <algorithm>

namespace quillfern::pdf {

std::optional<std::string_view> ContentTokens::next()
{
    for (;;) {
        while (p_ < end_ && contentClassOf(*p_) == ContentClass::White)
            ++p_;
        if (p_ == end_) return std::nullopt;
        if (*p_ != '%') break;
        while (p_ < end_ && *p_ != '\n' && *p_ != '\r')
            ++p_;
    }
    const char* start = p_++;
    const auto taken = [&] { return std::string_view(start, static_cast<std::size_t>(p_ - start)); };
    switch (*start) {
    case '(':
        --p_;
        return string();
    case '[':
        ++arrays_;
        return taken();
    case ']':
        arrays_ = std::max(0, arrays_ - 1);
        return taken();
    case '<':
        if (p_ < end_ && *p_ == '<') {
            ++p_;
            return taken();
        }
        p_ = std::find(p_, end_, '>');
        if (p_ < end_)
            ++p_;
        else
            unclosed_.assign(1, '>');
        return taken();
    case '>':
        if (p_ < end_ && *p_ == '>') ++p_;
        return taken();
    case ')':
    case '{':
    case '}':
        return taken();
    default:
        while (p_ < end_ && contentClassOf(*p_) == ContentClass::Regular)
            ++p_;
        return taken();
    }
}

std::string_view ContentTokens::string()
{
    const char* start = p_;
    int depth = 0;
    for (; p_ < end_; ++p_) {
        if (*p_ == '\\' && p_ + 1 < end_)
            ++p_;
        else if (*p_ == '(')
            ++depth;
        else if (*p_ == ')' && --depth == 0) {
            ++p_;
            return {start, static_cast<std::size_t>(p_ - start)};
        }
    }
    unclosed_.assign(static_cast<std::size_t>(depth), ')');
    return {start, static_cast<std::size_t>(p_ - start)};
}

void ContentTokens::skipArray()
{
    while (inArray() && next()) {
    }
}

bool isContentOperator(std::string_view token)
{
    static constexpr std::array<std::string_view, 73> operators = {
        "\"", "'",  "B",  "B*", "BDC", "BI", "BMC", "BT", "BX",  "CS", "DP", "Do", "EI",  "EMC", "ET",
        "EX", "F",  "G",  "ID", "J",   "K",  "M",   "MP", "Q",   "RG", "S",  "SC", "SCN", "T*",  "TD",
        "TJ", "TL", "Tc", "Td", "Tf",  "Tj", "Tm",  "Tr", "Ts",  "Tw", "Tz", "W",  "W*",  "b",   "b*",
        "c",  "cm", "cs", "d",  "d0",  "d1", "f",   "f*", "g",   "gs", "h",  "i",  "j",   "k",   "l",
        "m",  "n",  "q",  "re", "rg",  "ri", "s",   "sc", "scn", "sh", "v",  "w",  "y"};
    static_assert(std::is_sorted(operators.begin(), operators.end()));
    return std::binary_search(operators.begin(), operators.end(), token);
}

bool isContentOperand(std::string_view token)
{
    const char c = token.front();
    if (c == '/' || c == '(' || c == '<' || c == '[' || c == ']' || token == ">>") return true;
    if (token == "true" || token == "false" || token == "null") return true;
    return std::all_of(token.begin(), token.end(),
                       [](char d) { return (d >= '0' && d <= '9') || d == '.' || d == '-' || d == '+'; });
}

} // namespace quillfern::pdf
