#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace quillfern::pdf {

enum class ContentClass : unsigned char { Regular, White, Delimiter };

namespace detail {
constexpr std::array<ContentClass, 256> makeContentClasses()
{
    std::array<ContentClass, 256> classes = {};
    for (const char c : {'\0', '\t', '\n', '\f', '\r', ' '})
        classes[static_cast<unsigned char>(c)] = ContentClass::White;
    for (const char c : {'(', ')', '<', '>', '[', ']', '{', '}', '/', '%'})
        classes[static_cast<unsigned char>(c)] = ContentClass::Delimiter;
    return classes;
}
inline constexpr std::array<ContentClass, 256> contentClasses = makeContentClasses();
} // namespace detail

/// How a byte counts in page content (ISO 32000-1, 7.2.2).
[[nodiscard]] inline ContentClass contentClassOf(char c)
{
    return detail::contentClasses[static_cast<unsigned char>(c)];
}

/// Reads page content token by token, for the few places where every token counts.
class ContentTokens
{
  public:
    ContentTokens(const char* begin, const char* end) : p_(begin), end_(end) {}

    /// The next token: a number, a name with its slash, an operator, a whole string "(…)" or "<…>" (as far as
    /// it goes when it never ends), or one of [ ] << >> { }. Comments are passed over. Nothing at the end.
    std::optional<std::string_view> next();
    [[nodiscard]] const char* position() const { return p_; }
    /// True between a [ and its ], as far as tokens were taken.
    [[nodiscard]] bool inArray() const { return arrays_ > 0; }
    /// Passes over the rest of the open arrays.
    void skipArray();
    [[nodiscard]] int openArrays() const { return arrays_; }
    /// The bytes that close the string which the content ends inside of; empty when it ends outside of
    /// strings.
    [[nodiscard]] const std::string& unclosedString() const { return unclosed_; }

  private:
    std::string_view string();

    const char* p_;
    const char* end_;
    int arrays_ = 0;
    std::string unclosed_;
};

/// True for an operator of page content (ISO 32000-1, annex A).
[[nodiscard]] bool isContentOperator(std::string_view token);
/// True for what may stand before an operator: a number, a name, a string, a part of an array or dictionary.
[[nodiscard]] bool isContentOperand(std::string_view token);

} // namespace quillfern::pdf
