#include "platform/pdf/ContentBalance.h"

#include "platform/pdf/ByteScan.h"
#include "platform/system/Failure.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace quillfern {

namespace {

enum CharacterClass : unsigned char { Regular, White, Delimiter };

constexpr std::array<unsigned char, 256> makeClasses()
{
    std::array<unsigned char, 256> classes = {};
    for (const char c : {'\0', '\t', '\n', '\f', '\r', ' '})
        classes[static_cast<unsigned char>(c)] = White;
    for (const char c : {'(', ')', '<', '>', '[', ']', '{', '}', '/', '%'})
        classes[static_cast<unsigned char>(c)] = Delimiter;
    return classes;
}

constexpr std::array<unsigned char, 256> classes = makeClasses();

unsigned char classOf(char c)
{
    return classes[static_cast<unsigned char>(c)];
}

constexpr std::size_t deepestNesting = 1'000'000;

constexpr unsigned code(const char* word)
{
    unsigned value = 0;
    for (; *word; ++word)
        value = value << 8 | static_cast<unsigned char>(*word);
    return value;
}

class Scanner
{
  public:
    Scanner(const char* data, std::size_t size) : begin_(data), p_(data), end_(data + size) {}

    ContentBalance run()
    {
        while (advance()) {
            if (classOf(*p_) == Delimiter)
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
#ifdef QUILLFERN_CHUNKED_SCAN
        bool inside = false; // of a string, at the chunk's first byte
        while (end_ - p_ >= ContentChunk::size) {
            const ContentChunk chunk(p_);
            const std::uint64_t strings =
                ContentChunk::between(chunk.open | chunk.close) ^ (inside ? ~std::uint64_t{0} : 0);
            // Nested or stray parentheses and escapes end the easy part.
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
            inside = strings >> (ContentChunk::size - 1) != 0;
            p_ += ContentChunk::size;
        }
        if (inside) finishString(1);
#endif
        p_ = skipFiller(p_, end_);
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
        while (p_ < end_ && classOf(*p_) == Regular)
            ++p_;
    }

    /// From a string's opening parenthesis (depth 0), or from inside it, to behind its end.
    void finishString(int depth)
    {
        while ((p_ = findStringMark(p_, end_)) < end_) {
            if (*p_ == '\\') {
                if (p_ + 1 == end_) break;
                p_ += 2;
                continue;
            }
            depth += *p_++ == '(' ? 1 : -1;
            if (depth == 0) return;
        }
        // A backslash at the very end takes the first parenthesis of the closing for itself.
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
            balance_.closing += '>';
        }
    }

    void token()
    {
        const char* start = p_;
        skipRegular();
        const auto length = p_ - start;
        // The tail of something that began like a number is no operator.
        if (length > 3 || (start > begin_ && classOf(start[-1]) == Regular)) return;
        unsigned word = 0;
        for (const char* c = start; c < p_; ++c)
            word = word << 8 | static_cast<unsigned char>(*c);
        operation(word, start);
    }

    void operation(unsigned word, const char* start)
    {
        switch (word) {
        case code("q"):
            push('q');
            break;
        case code("Q"):
            if (!pop('q')) balance_.strayRestores.push_back(static_cast<std::size_t>(start - begin_));
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
        default:
            break;
        }
    }

    void push(char kind)
    {
        open_.push_back(kind);
        checkDepth(open_.size());
    }

    static void checkDepth(std::size_t depth)
    {
        if (depth > deepestNesting)
            throw Failure(QStringLiteral("the content of a page is nested too deeply"));
    }

    bool pop(char kind)
    {
        // The common case first; otherwise the innermost of this kind, below others left open inside it.
        if (!open_.empty() && open_.back() == kind) {
            open_.pop_back();
            return true;
        }
        const auto found = std::find(open_.rbegin(), open_.rend(), kind);
        if (found == open_.rend()) return false;
        open_.erase(std::next(found).base());
        return true;
    }

    /// The image's data has no length; it ends at an EI between white space that is followed by something
    /// that reads as content, not by more binary data.
    void inlineImage()
    {
        // The dictionary up to the ID operator.
        while (p_ < end_) {
            if (classOf(*p_) != Regular) {
                if (classOf(*p_) == White)
                    ++p_;
                else
                    delimiter(*p_);
                continue;
            }
            const char* start = p_;
            skipRegular();
            if (p_ - start == 2 && start[0] == 'I' && start[1] == 'D') break;
            if (p_ - start == 2 && start[0] == 'E' && start[1] == 'I') return; // no data at all
        }
        const char* data = p_;
        for (const char* c = data; c + 1 < end_; ++c) {
            c = static_cast<const char*>(std::memchr(c, 'E', static_cast<std::size_t>(end_ - c - 1)));
            if (!c) break;
            if (c[1] == 'I' && c > data && classOf(c[-1]) == White && endsImage(c + 2)) {
                p_ = c + 2;
                return;
            }
        }
        p_ = end_;
        balance_.closing += "\nEI\n";
    }

    bool endsImage(const char* after) const
    {
        if (after >= end_) return true;
        if (classOf(*after) == Regular) return false;
        const char* until = std::min(end_, after + 24);
        return std::all_of(after, until, [](char c) {
            const auto byte = static_cast<unsigned char>(c);
            return (byte >= 0x20 && byte < 0x7F) || byte == '\n' || byte == '\r' || byte == '\t';
        });
    }

    void finish()
    {
        QByteArray& closing = balance_.closing;
        if (!closing.isEmpty() && !closing.endsWith('\n')) closing += '\n';
        if (pathPending_) closing += "n ";
        for (auto kind = open_.rbegin(); kind != open_.rend(); ++kind)
            closing += *kind == 'q' ? "Q " : *kind == 't' ? "ET " : "EMC ";
    }

    const char* begin_;
    const char* p_;
    const char* end_;
    std::vector<char> open_;
    bool pathPending_ = false;
    ContentBalance balance_;
};

} // namespace

ContentBalance balanceOfContent(const char* data, std::size_t size)
{
    return Scanner(data, size).run();
}

} // namespace quillfern
