#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quillfern::raster {

/// A code word of the fax codings of ITU-T T.4 and T.6.
struct FaxCode
{
    std::uint16_t bits = 0;
    std::uint16_t length = 0;

    constexpr FaxCode() = default;
    constexpr explicit FaxCode(std::string_view word) : length(static_cast<std::uint16_t>(word.size()))
    {
        for (const char c : word)
            bits = static_cast<std::uint16_t>(bits << 1U | (c == '1' ? 1U : 0U));
    }
};

/// The code words for run lengths of one colour: those below 64, and those for the multiples of 64 up to
/// 2560, which are written in front of them.
struct FaxRunCodes
{
    static constexpr std::size_t longest = 2560;
    std::array<FaxCode, 64> below64;
    std::array<FaxCode, longest / 64 + 1> multiples; ///< by the length divided by 64; the first is unused
};

/// Runs of 0 bits.
[[nodiscard]] const FaxRunCodes& faxWhiteRuns();
/// Runs of 1 bits.
[[nodiscard]] const FaxRunCodes& faxBlackRuns();

namespace faxMode {
inline constexpr FaxCode pass("0001");
inline constexpr FaxCode horizontal("001");
/// For a change that stands -3 to 3 pixels to the right of the one in the row above, in that order.
inline constexpr std::array<FaxCode, 7> vertical = {FaxCode("0000010"), FaxCode("000010"), FaxCode("010"),
                                                    FaxCode("1"),       FaxCode("011"),    FaxCode("000011"),
                                                    FaxCode("0000011")};
inline constexpr FaxCode endOfLine("000000000001");
} // namespace faxMode

} // namespace quillfern::raster
