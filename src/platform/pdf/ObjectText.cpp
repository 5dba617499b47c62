#include "platform/pdf/ObjectText.h"

#include "platform/pdf/ContentTokens.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace quillfern::pdf {

namespace {

/// qpdf gives up at 500.
constexpr std::size_t deepestNesting = 400;

bool isWholeNumber(std::string_view token)
{
    const std::string_view digits =
        token.substr(!token.empty() && (token[0] == '-' || token[0] == '+') ? 1 : 0);
    return !digits.empty() &&
           std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// True for what surely fits into the 64 bits that qpdf has for a whole number.
bool fits(std::string_view wholeNumber)
{
    constexpr std::size_t most = 18;
    return wholeNumber.size() - std::min(wholeNumber.size(), wholeNumber.find_first_not_of("+-0")) <= most;
}

class ObjectMender
{
  public:
    explicit ObjectMender(std::string_view text)
        : text_(text), tokens_(text.data(), text.data() + text.size())
    {
    }

    std::string run()
    {
        while (const auto token = tokens_.next()) {
            if (*token == "endobj" || *token == "endstream") break;
            if (open_.empty() && !mended_.empty()) {
                if (isDictionary_ && *token == "stream") return mended_ + '\n' + std::string(from(*token));
                break;
            }
            take(*token);
        }
        mended_ += tokens_.unclosedString();
        while (!open_.empty())
            close();
        return mended_ == " null" ? std::string() : mended_;
    }

  private:
    [[nodiscard]] std::string_view from(std::string_view token) const
    {
        return text_.substr(static_cast<std::size_t>(token.data() - text_.data()));
    }

    void put(std::string_view token)
    {
        if (open_.size() > deepestNesting) return;
        mended_ += ' ';
        mended_ += token;
    }

    void take(std::string_view token)
    {
        const char c = token.front();
        if (token == "[" || token == "<<") {
            if (open_.size() == deepestNesting) put("0");
            open_.push_back(c);
            if (open_.size() == 1) isDictionary_ = c == '<';
            put(token);
        } else if (token == "]" || token == ">>") {
            const char opening = c == ']' ? '[' : '<';
            if (!open_.empty() && open_.back() == opening) close();
        } else if (c == '(' || c == '<' || c == '/') {
            put(token);
        } else if (isWholeNumber(token)) {
            put(fits(token) ? std::string(token) : std::string(token) + '.');
        } else if (c == ')' || c == '{' || c == '}' || c == '>') {
            return;
        } else {
            const bool known = token == "true" || token == "false" || token == "null" || token == "R" ||
                               isContentOperand(token);
            put(known ? token : std::string_view("0"));
        }
    }

    void close()
    {
        put(open_.back() == '[' ? "]" : ">>");
        open_.pop_back();
    }

    std::string_view text_;
    ContentTokens tokens_;
    std::string mended_;
    std::vector<char> open_;
    bool isDictionary_ = false;
};

} // namespace

std::string mendedObjectText(std::string_view text)
{
    return ObjectMender(text).run();
}

} // namespace quillfern::pdf
