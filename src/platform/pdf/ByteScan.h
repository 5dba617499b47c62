#pragma once

#include <array>
#include <bit>
#include <cstdint>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace quillfern::pdf {

// Finds the bytes of page content that matter: nearly all of a page's content is text in strings and the
// numbers between them. PortableByteScan runs on every processor, VectorByteScan takes sixteen bytes at a
// time; both give the same results, and ByteScan names the fastest one that the processor can run.

/// True for what cannot begin anything but a number or the like: digits, signs, white space, array brackets.
[[nodiscard]] constexpr bool isFiller(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return (byte <= ' ') || (byte >= '+' && byte <= '9' && byte != '/') || byte == '[' || byte == ']';
}

/// True for the bytes that have a meaning inside a string.
[[nodiscard]] constexpr bool isStringMark(char c)
{
    return c == '(' || c == ')' || c == '\\';
}

/// For each kind of byte, which of 64 successive bytes are of that kind; the first byte is the lowest bit.
struct ContentMasks
{
    static constexpr int size = 64;

    std::uint64_t open = 0;
    std::uint64_t close = 0;
    std::uint64_t backslash = 0;
    std::uint64_t filler = 0;
};

/// The bits from the first mark (included) to the second (excluded), from the third to the fourth, and so on:
/// for the parentheses of content without nested ones, the strings.
[[nodiscard]] constexpr std::uint64_t betweenMarks(std::uint64_t marks)
{
    for (int shift = 1; shift < ContentMasks::size; shift *= 2)
        marks ^= marks << shift;
    return marks;
}

/// Byte by byte, for any processor.
struct PortableByteScan
{
    /// The first byte from `p` on that is no filler; `end` when there is none.
    [[nodiscard]] static const char* skipFiller(const char* p, const char* end)
    {
        while (p < end && isFiller(*p))
            ++p;
        return p;
    }

    /// The first parenthesis or backslash from `p` on; `end` when there is none.
    [[nodiscard]] static const char* findStringMark(const char* p, const char* end)
    {
        while (p < end && !isStringMark(*p))
            ++p;
        return p;
    }

    /// The masks of the ContentMasks::size bytes from `p` on.
    [[nodiscard]] static ContentMasks masks(const char* p)
    {
        ContentMasks masks;
        for (int i = 0; i < ContentMasks::size; ++i) {
            const std::uint64_t kinds = kindOf[static_cast<unsigned char>(p[i])];
            masks.open |= (kinds & 1) << i;
            masks.close |= (kinds >> 1 & 1) << i;
            masks.backslash |= (kinds >> 2 & 1) << i;
            masks.filler |= (kinds >> 3 & 1) << i;
        }
        return masks;
    }

  private:
    static constexpr std::array<std::uint8_t, 256> kindOf = [] {
        std::array<std::uint8_t, 256> kinds = {};
        for (unsigned byte = 0; byte < kinds.size(); ++byte) {
            const char c = static_cast<char>(byte);
            kinds[byte] = static_cast<std::uint8_t>((c == '(' ? 1 : 0) | (c == ')' ? 2 : 0) |
                                                    (c == '\\' ? 4 : 0) | (isFiller(c) ? 8 : 0));
        }
        return kinds;
    }();
};

#if defined(__SSE2__)
/// Sixteen bytes at a time.
struct VectorByteScan
{
    [[nodiscard]] static const char* skipFiller(const char* p, const char* end)
    {
        for (; end - p >= width; p += width) {
            const unsigned other = ~bitsOf(fillerIn(load(p))) & 0xFFFFU;
            if (other != 0) return p + std::countr_zero(other);
        }
        return PortableByteScan::skipFiller(p, end);
    }

    [[nodiscard]] static const char* findStringMark(const char* p, const char* end)
    {
        for (; end - p >= width; p += width) {
            const __m128i bytes = load(p);
            const unsigned found =
                bitsOf(_mm_or_si128(_mm_or_si128(equal(bytes, '('), equal(bytes, ')')), equal(bytes, '\\')));
            if (found != 0) return p + std::countr_zero(found);
        }
        return PortableByteScan::findStringMark(p, end);
    }

    [[nodiscard]] static ContentMasks masks(const char* p)
    {
        ContentMasks masks;
        for (int at = 0; at < ContentMasks::size; at += width) {
            const __m128i bytes = load(p + at);
            masks.open |= std::uint64_t{bitsOf(equal(bytes, '('))} << at;
            masks.close |= std::uint64_t{bitsOf(equal(bytes, ')'))} << at;
            masks.backslash |= std::uint64_t{bitsOf(equal(bytes, '\\'))} << at;
            masks.filler |= std::uint64_t{bitsOf(fillerIn(bytes))} << at;
        }
        return masks;
    }

  private:
    static constexpr int width = 16;

    static __m128i load(const char* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
    static __m128i equal(__m128i bytes, char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); }
    static unsigned bitsOf(__m128i found) { return static_cast<unsigned>(_mm_movemask_epi8(found)); }
    /// Which of `bytes` are at most `limit`, unsigned: those for which max(byte, limit) is limit.
    static __m128i atMost(__m128i bytes, char limit)
    {
        return equal(_mm_max_epu8(bytes, _mm_set1_epi8(limit)), limit);
    }
    static __m128i fillerIn(__m128i bytes)
    {
        const __m128i number = atMost(_mm_sub_epi8(bytes, _mm_set1_epi8('+')), '9' - '+');
        const __m128i bracket = _mm_or_si128(equal(bytes, '['), equal(bytes, ']'));
        return _mm_or_si128(_mm_or_si128(atMost(bytes, ' '), bracket),
                            _mm_andnot_si128(equal(bytes, '/'), number));
    }
};
using ByteScan = VectorByteScan;
#else
using ByteScan = PortableByteScan;
#endif

} // namespace quillfern::pdf
