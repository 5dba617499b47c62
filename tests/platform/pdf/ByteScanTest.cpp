#include "platform/pdf/ByteScan.h"

#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <string_view>

namespace quillfern::pdf {
namespace {

constexpr std::size_t longest = 130;

/// A copy of a text at a chosen distance from an aligned address. No allocated byte follows its end, so that
/// sanitizers find a read behind it.
class PlacedText
{
  public:
    PlacedText(std::string_view text, std::size_t alignment)
        : bytes_(new (std::align_val_t{64}) char[alignment + text.size()]), begin_(bytes_.get() + alignment),
          size_(text.size())
    {
        std::memcpy(begin_, text.data(), text.size());
    }
    [[nodiscard]] const char* begin() const { return begin_; }
    [[nodiscard]] const char* end() const { return begin_ + size_; }
    [[nodiscard]] std::size_t size() const { return size_; }

  private:
    struct Free
    {
        void operator()(char* bytes) const { ::operator delete[](bytes, std::align_val_t{64}); }
    };
    std::unique_ptr<char[], Free> bytes_;
    char* begin_;
    std::size_t size_;
};

template <class Accept>
std::size_t firstOf(std::string_view text, Accept accept)
{
    std::size_t at = 0;
    while (at < text.size() && !accept(text[at]))
        ++at;
    return at;
}

constexpr std::string_view filler("\0\t\n\f\r +,-.0123456789[]\x1F\x01", 24);

bool isOther(char c)
{
    return filler.find(c) == std::string_view::npos && static_cast<unsigned char>(c) > ' ';
}

/// Compares the results of `Scan` for a text with those of the simplest code that fits their definitions.
template <class Scan>
void expectRight(std::string_view text, std::size_t alignment)
{
    const PlacedText placed(text, alignment);
    const auto at = [&](const char* p) { return static_cast<std::size_t>(p - placed.begin()); };
    ASSERT_EQ(at(Scan::skipFiller(placed.begin(), placed.end())), firstOf(text, isOther))
        << testing::PrintToString(text) << " at " << alignment;
    ASSERT_EQ(
        at(Scan::findStringMark(placed.begin(), placed.end())),
        firstOf(text, [](char c) { return std::string_view("()\\").find(c) != std::string_view::npos; }))
        << testing::PrintToString(text) << " at " << alignment;
    if (text.size() < ContentMasks::size) return;
    const ContentMasks masks = Scan::masks(placed.begin());
    for (int i = 0; i < ContentMasks::size; ++i) {
        const char c = text[static_cast<std::size_t>(i)];
        const auto bit = [i](std::uint64_t mask) { return (mask >> i & 1) != 0; };
        ASSERT_EQ(bit(masks.open), c == '(') << testing::PrintToString(text) << ' ' << i;
        ASSERT_EQ(bit(masks.close), c == ')') << testing::PrintToString(text) << ' ' << i;
        ASSERT_EQ(bit(masks.backslash), c == '\\') << testing::PrintToString(text) << ' ' << i;
        ASSERT_EQ(bit(masks.filler), !isOther(c)) << testing::PrintToString(text) << ' ' << i;
    }
}

template <class Scan>
class ByteScanTest : public testing::Test
{
};

#if defined(__SSE2__)
using Scans = testing::Types<PortableByteScan, VectorByteScan>;
#else
using Scans = testing::Types<PortableByteScan>;
#endif
TYPED_TEST_SUITE(ByteScanTest, Scans);

TYPED_TEST(ByteScanTest, ReadsRandomBytesAtEveryLengthAndAlignment)
{
    std::mt19937 random(5);
    const std::string_view mostlyFiller("00112233445566778899  ..--[]\n\r()\\/BT\xFF");
    for (std::size_t length = 0; length <= longest; ++length)
        for (std::size_t alignment = 0; alignment < 64; ++alignment) {
            std::string text(length, ' ');
            for (char& c : text)
                c = alignment % 2 == 0 ? static_cast<char>(random())
                                       : mostlyFiller[random() % mostlyFiller.size()];
            ASSERT_NO_FATAL_FAILURE(expectRight<TypeParam>(text, alignment));
        }
}

TEST(BetweenMarksTest, CoversFromEachMarkToTheNext)
{
    EXPECT_EQ(betweenMarks(0), 0U);
    EXPECT_EQ(betweenMarks(0b1001000), 0b0111000U);
    EXPECT_EQ(betweenMarks(1), ~std::uint64_t{0});
    EXPECT_EQ(betweenMarks(std::uint64_t{1} << 63 | 1), ~std::uint64_t{0} >> 1);
}

} // namespace
} // namespace quillfern::pdf
