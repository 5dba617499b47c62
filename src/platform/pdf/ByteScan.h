#pragma once

#include <bit>
#include <cstdint>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace quillfern {

/// Finds the bytes of page content that matter, sixteen at a time where the processor can: nearly all of a
/// page's content is text in strings and the numbers between them.

/// True for what cannot begin anything but a number or the like: digits, signs, white space, array brackets.
[[nodiscard]] inline bool isFiller(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return (byte <= ' ') || (byte >= '+' && byte <= '9' && byte != '/') || byte == '[' || byte == ']';
}

#if defined(__SSE2__)
[[nodiscard]] inline __m128i fillerOf(__m128i bytes)
{
    const auto equals = [&](char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
    // x <= limit for unsigned bytes is max(x, limit) == limit.
    const auto atMost = [](__m128i value, char limit) {
        return _mm_cmpeq_epi8(_mm_max_epu8(value, _mm_set1_epi8(limit)), _mm_set1_epi8(limit));
    };
    const __m128i blank = atMost(bytes, ' ');
    const __m128i number = atMost(_mm_sub_epi8(bytes, _mm_set1_epi8('+')), '9' - '+');
    const __m128i bracket = _mm_or_si128(equals('['), equals(']'));
    return _mm_or_si128(_mm_or_si128(blank, bracket), _mm_andnot_si128(equals('/'), number));
}
#endif

/// The first byte from `p` on that is no filler; `end` when there is none.
[[nodiscard]] inline const char* skipFiller(const char* p, const char* end)
{
#if defined(__SSE2__)
    while (end - p >= 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const unsigned other = ~static_cast<unsigned>(_mm_movemask_epi8(fillerOf(bytes))) & 0xFFFFU;
        if (other != 0) return p + std::countr_zero(other);
        p += 16;
    }
#endif
    while (p < end && isFiller(*p))
        ++p;
    return p;
}

#if defined(__SSE2__)
#define QUILLFERN_CHUNKED_SCAN

/// Which of 64 bytes are what, the first byte in the lowest bit.
struct ContentChunk
{
    static constexpr int size = 64;

    std::uint64_t open = 0;
    std::uint64_t close = 0;
    std::uint64_t backslash = 0;
    std::uint64_t filler = 0;

    explicit ContentChunk(const char* p)
    {
        for (int i = 0; i < 4; ++i) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p) + i);
            const auto equals = [&](char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
            const auto put = [i](std::uint64_t& mask, __m128i found) {
                mask |= static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(found)))
                        << (16 * i);
            };
            put(open, equals('('));
            put(close, equals(')'));
            put(backslash, equals('\\'));
            put(filler, fillerOf(bytes));
        }
    }

    /// The bytes from each parenthesis to the next, the first included, as if none were nested.
    [[nodiscard]] static std::uint64_t between(std::uint64_t marks)
    {
        for (int shift = 1; shift < size; shift *= 2)
            marks ^= marks << shift;
        return marks;
    }
};
#endif

/// The first parenthesis or backslash from `p` on; `end` when there is none.
[[nodiscard]] inline const char* findStringMark(const char* p, const char* end)
{
#if defined(__SSE2__)
    while (end - p >= 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const auto equals = [&](char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
        const __m128i mark = _mm_or_si128(_mm_or_si128(equals('('), equals(')')), equals('\\'));
        const auto found = static_cast<unsigned>(_mm_movemask_epi8(mark));
        if (found != 0) return p + std::countr_zero(found);
        p += 16;
    }
#endif
    while (p < end && *p != '(' && *p != ')' && *p != '\\')
        ++p;
    return p;
}

} // namespace quillfern
