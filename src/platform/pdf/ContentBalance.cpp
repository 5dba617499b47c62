#include "platform/pdf/ContentBalance.h"

#include "platform/pdf/ByteScan.h"
#include "platform/pdf/ContentOperators.h"
#include "platform/pdf/ContentTokens.h"
#include "platform/pdf/InlineImage.h"
#include "platform/system/Cancellation.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quillfern::pdf {

namespace {

constexpr std::size_t deepestNesting = 1'000'000;

constexpr auto code = operatorCode;

class Scanner
{
  public:
    Scanner(const char* data, std::size_t size, const std::stop_token& stop)
        : begin_(data), p_(data), end_(data + size), stop_(stop), images_(data, end_, stop)
    {
    }

    ContentBalance run()
    {
        while (advance()) {
            if (p_ >= nextLook_) {
                throwIfCancelled(stop_);
                nextLook_ = end_ - p_ > stride ? p_ + stride : end_;
            }
            if (contentClassOf(*p_) == ContentClass::Delimiter)
                delimiter(*p_);
            else
                token();
        }
        finish();
        return std::move(balance_);
    }

  private:
    /// Goes to the next byte that is neither filler nor part of a string; false at the end.
    bool advance()
    {
        bool inside = false; // whether the chunk's first byte is inside a string
        while (end_ - p_ >= ContentMasks::size) {
            const ContentMasks chunk = ByteScan::masks(p_);
            const std::uint64_t strings =
                betweenMarks(chunk.open | chunk.close) ^ (inside ? ~std::uint64_t{0} : 0);
            // `strings` is right only up to the first nested or stray parenthesis or escape.
            const std::uint64_t hard =
                (chunk.open & ~strings) | (chunk.close & strings) | (chunk.backslash & strings);
            const std::uint64_t other = ~(chunk.filler | strings | chunk.close);
            if (other != 0 && std::countr_zero(other) < std::countr_zero(hard)) {
                p_ += std::countr_zero(other);
                return true;
            }
            if (hard != 0) {
                p_ += std::countr_zero(hard);
                const std::uint64_t at = hard & (~hard + 1);
                if ((at & chunk.close) != 0) return true; // one too many; skipped as a delimiter
                finishString(1);
                inside = false;
                continue;
            }
            inside = strings >> (ContentMasks::size - 1) != 0;
            p_ += ContentMasks::size;
        }
        if (inside) finishString(1);
        p_ = ByteScan::skipFiller(p_, end_);
        return p_ < end_;
    }

    void delimiter(char c)
    {
        switch (c) {
        case '%':
            while (p_ < end_ && *p_ != '\n' && *p_ != '\r')
                ++p_;
            if (p_ == end_) balance_.closing += '\n';
            break;
        case '(':
            finishString(0);
            break;
        case '<':
            ++p_;
            if (p_ < end_ && *p_ == '<')
                ++p_;
            else
                hexString();
            break;
        case '>':
            ++p_;
            if (p_ < end_ && *p_ == '>')
                ++p_;
            else
                balance_.damaged = true;
            break;
        case ')':
        case '{':
        case '}':
            ++p_;
            balance_.damaged = true;
            break;
        case '/':
            ++p_;
            skipRegular();
            break;
        default:
            ++p_;
        }
    }

    void skipRegular()
    {
        while (p_ < end_ && contentClassOf(*p_) == ContentClass::Regular)
            ++p_;
    }

    /// From a string's opening parenthesis (depth 0), or from inside it, to behind its end.
    void finishString(int depth)
    {
        while ((p_ = ByteScan::findStringMark(p_, end_)) < end_) {
            if (*p_ == '\\') {
                if (p_ + 1 == end_) break;
                p_ += 2;
                continue;
            }
            depth += *p_++ == '(' ? 1 : -1;
            if (depth == 0) return;
        }
        // A backslash at the very end escapes the first parenthesis of the closing, so one more is needed.
        balance_.damaged = true;
        if (p_ < end_) balance_.closing += ')';
        p_ = end_;
        balance_.closing += QByteArray(depth, ')');
        checkDepth(static_cast<std::size_t>(depth));
    }

    void hexString()
    {
        const void* found = std::memchr(p_, '>', static_cast<std::size_t>(end_ - p_));
        if (found) {
            p_ = static_cast<const char*>(found) + 1;
        } else {
            p_ = end_;
            balance_.damaged = true;
            balance_.closing += '>';
        }
    }

    void token()
    {
        const char* start = p_;
        skipRegular();
        const auto length = p_ - start;
        // The tail of something that began like a number is no operator.
        const bool isTail = start > begin_ && contentClassOf(start[-1]) == ContentClass::Regular;
        if (isTail || length > 3) {
            noteWord({start, static_cast<std::size_t>(length)});
            return;
        }
        unsigned word = 0;
        for (const char* c = start; c < p_; ++c)
            word = word << 8 | static_cast<unsigned char>(*c);
        operation(word, start);
        lastOperator_ = p_;
    }

    void operation(unsigned word, const char* start)
    {
        switch (word) {
        case code("q"):
            push('q');
            break;
        case code("Q"):
            if (!pop('q')) {
                balance_.strayRestores.push_back(static_cast<std::size_t>(start - begin_));
                checkDepth(balance_.strayRestores.size());
            }
            break;
        case code("BT"):
            push('t');
            break;
        case code("ET"):
            pop('t');
            break;
        case code("BMC"):
        case code("BDC"):
            push('m');
            break;
        case code("EMC"):
            pop('m');
            break;
        case code("BI"):
            inlineImage();
            break;
        case code("m"):
        case code("re"):
        case code("l"):
        case code("c"):
        case code("v"):
        case code("y"):
        case code("W"):
        case code("W*"):
            pathPending_ = true;
            break;
        case code("S"):
        case code("s"):
        case code("f"):
        case code("F"):
        case code("f*"):
        case code("B"):
        case code("B*"):
        case code("b"):
        case code("b*"):
        case code("n"):
            pathPending_ = false;
            break;
        case code("BX"):
            mayHoldOtherWords_ = true;
            break;
        default:
            break;
        }
        const int operands = leastOperands(word);
        if (operands < 0)
            noteWord({start, static_cast<std::size_t>(p_ - start)});
        else if ((operands > 0 && !operandsBefore(start, operands)) || followsOpenArray(word, start))
            balance_.damaged = true;
    }

    /// Whether an array stands before an operator that takes none, or none before TJ: its end is missing
    /// then.
    bool followsOpenArray(unsigned word, const char* start) const
    {
        if (word == code("d") || word == code("BDC") || word == code("DP")) return false;
        const char* first = lastOperator_;
        while (first < start && contentClassOf(*first) == ContentClass::White)
            ++first;
        if (word != code("TJ")) return first < start && *first == '[';
        const char* behind = start;
        while (behind > first && contentClassOf(behind[-1]) == ContentClass::White)
            --behind;
        return behind == first || behind[-1] != ']';
    }

    /// Whether at least `count` operands stand between the operator before and `end`. What stands in an array
    /// counts as well.
    bool operandsBefore(const char* end, int count) const
    {
        bool apart = true; // from the operand before
        for (const char* p = lastOperator_; p < end; ++p) {
            const ContentClass kind = contentClassOf(*p);
            if (kind != ContentClass::White && (apart || kind == ContentClass::Delimiter) && --count == 0)
                return true;
            apart = kind == ContentClass::White;
        }
        return false;
    }

    /// A word that is no operator. Between BX and EX there may be any.
    void noteWord(std::string_view word)
    {
        if (word != "true" && word != "false" && word != "null" && !mayHoldOtherWords_)
            balance_.damaged = true;
    }

    void push(char kind)
    {
        places_[kindIndex(kind)].push_back(open_.size());
        open_.push_back(kind);
        checkDepth(open_.size());
    }

    static void checkDepth(std::size_t depth)
    {
        if (depth > deepestNesting)
            throw Failure(
                QT_TRANSLATE_NOOP("quillfern::Failure", "The content of a page is nested too deeply."));
    }

    static std::size_t kindIndex(char kind) { return kind == 'q' ? 0 : kind == 't' ? 1 : 2; }

    /// Ends the innermost open item of a kind, even when items of other kinds are still open inside it.
    bool pop(char kind)
    {
        std::vector<std::size_t>& places = places_[kindIndex(kind)];
        if (places.empty()) return false;
        open_[places.back()] = closed;
        places.pop_back();
        while (!open_.empty() && open_.back() == closed)
            open_.pop_back();
        return true;
    }

    void inlineImage()
    {
        const InlineImageEnd image = images_.endOf(p_);
        p_ = image.after;
        balance_.damaged = balance_.damaged || image.damaged;
        checkDepth(image.closing.size());
        balance_.closing += QByteArray::fromStdString(image.closing);
    }

    /// Closes arrays and dictionaries that the content ends in the middle of. These can only stand behind its
    /// last operator.
    void closeOperands()
    {
        QByteArray open;
        ContentTokens tokens(lastOperator_, end_);
        while (const auto token = tokens.next()) {
            if (*token == "[") open += '[';
            if (*token == "<<") open += '<';
            const char ended = *token == "]" ? '[' : *token == ">>" ? '<' : '\0';
            if (ended != '\0' && open.endsWith(ended)) open.chop(1);
        }
        for (auto kind = open.rbegin(); kind != open.rend(); ++kind)
            balance_.closing += *kind == '[' ? "]" : ">>";
        balance_.damaged = balance_.damaged || !open.isEmpty();
        checkDepth(static_cast<std::size_t>(open.size()));
    }

    void finish()
    {
        QByteArray& closing = balance_.closing;
        closeOperands();
        balance_.unfinished = !closing.isEmpty();
        if (!closing.isEmpty() && !closing.endsWith('\n')) closing += '\n';
        if (pathPending_) closing += "n ";
        for (auto kind = open_.rbegin(); kind != open_.rend(); ++kind)
            if (*kind != closed) closing += *kind == 'q' ? "Q " : *kind == 't' ? "ET " : "EMC ";
    }

    /// Between two looks at the stop token.
    static constexpr std::ptrdiff_t stride = std::ptrdiff_t{1} << 16;

    const char* begin_;
    const char* p_;
    const char* end_;
    const char* nextLook_ = begin_;
    const std::stop_token& stop_;
    const char* lastOperator_ = begin_;
    InlineImages images_;
    static constexpr char closed = ' ';
    std::vector<char> open_; ///< the kinds of open items in order; those ended out of order are `closed`
    std::array<std::vector<std::size_t>, 3> places_; ///< where in open_ each kind stands
    bool pathPending_ = false;
    bool mayHoldOtherWords_ = false;
    ContentBalance balance_;
};

} // namespace

ContentBalance balanceOfContent(const char* data, std::size_t size, const std::stop_token& stop)
{
    return Scanner(data, size, stop).run();
}

} // namespace quillfern::pdf
