#include "platform/pdf/CffCharset.h"

#include "platform/pdf/FontBuilder.h"
#include "support/Cases.h"
#include "support/ImageBytes.h"

#include <random>

namespace quillfern::pdf {
namespace {

using Cids = std::vector<std::uint16_t>;

QByteArray table(int glyphs, const QByteArray& charset, bool cidKeyed = true, int predefined = 0)
{
    CffPlan plan;
    plan.cidKeyed = cidKeyed;
    plan.glyphs.resize(glyphs);
    plan.charset = charset;
    plan.predefinedCharset = predefined;
    return cffTable(plan);
}

/// 0 and `count` successive numbers from `first` on.
Cids run(int first, int count)
{
    Cids cids{0};
    for (int i = 0; i < count; ++i)
        cids.push_back(static_cast<std::uint16_t>(first + i));
    return cids;
}

TEST(CffCharsetTest, GivesEachGlyphTheNumberThatTheFontGivesIt)
{
    const QByteArray format0('\0' + bigEndian16(9) + bigEndian16(5) + bigEndian16(65535));
    const Rows<const char*, QByteArray, std::optional<Cids>> cases = {
        {"one by one", table(4, format0), Cids{0, 9, 5, 65535}},
        {"more than glyphs", table(3, format0), Cids{0, 9, 5}},
        {"only .notdef", table(1, QByteArray(1, '\0')), Cids{0}},
        {"ranges", table(7, "\1" + bigEndian16(700) + '\2' + bigEndian16(3) + '\0' + bigEndian16(10) + '\1'),
         Cids{0, 700, 701, 702, 3, 10, 11}},
        {"a range longer than the font", table(3, "\1" + bigEndian16(20) + '\xFF'), Cids{0, 20, 21}},
        {"the longest short range", table(257, "\1" + bigEndian16(20) + '\xFF'), run(20, 256)},
        {"long ranges", table(1001, "\2" + bigEndian16(500) + bigEndian16(999)), run(500, 1000)},
        {"two long ranges",
         table(5, "\2" + bigEndian16(9) + bigEndian16(1) + bigEndian16(4) + bigEndian16(300)),
         Cids{0, 9, 10, 4, 5}},
        {"an unknown format", table(4, '\3' + format0.mid(1)), std::nullopt},
        {"names, and a charset for them", table(4, format0, false), Cids{}},
        {"names of a predefined charset", table(4, {}, false, 1), Cids{}},
        {"a predefined charset of names in a font without", table(4, {}, true, 0), std::nullopt},
        {"another", table(4, {}, true, 2), std::nullopt},
        {"no table", {}, std::nullopt},
        {"a header alone", QByteArray("\1\0\4\2", 4), std::nullopt},
        {"no top dictionary", QByteArray("\1\0\4\2\0\0\0\0", 8), std::nullopt},
        {"an offset size that there is none of", QByteArray("\1\0\4\2\0\1\5\0\0\0", 10), std::nullopt},
        {"a header that leads out of the table", QByteArray("\1\0\xFF\2", 4), std::nullopt},
    };
    for (const auto& [what, bytes, cids] : cases)
        EXPECT_EQ(cidsByGlyph(bytes), cids) << what;
}

TEST(CffCharsetTest, ATableCutAnywhereIsNotRead)
{
    for (const QByteArray& charset :
         {'\0' + bigEndian16(9) + bigEndian16(5) + bigEndian16(7),
          "\1" + bigEndian16(7) + '\0' + bigEndian16(3) + '\1',
          "\2" + bigEndian16(500) + bigEndian16(0) + bigEndian16(20) + bigEndian16(1)}) {
        const QByteArray whole = table(4, charset);
        ASSERT_TRUE(cidsByGlyph(whole));
        for (qsizetype length = 0; length < whole.size(); ++length)
            EXPECT_FALSE(cidsByGlyph(whole.left(length))) << length << " of " << whole.size();
    }
    // A font with glyph names is recognised by its top dictionary; nothing behind it is read.
    const QByteArray named = table(4, {}, false);
    for (qsizetype length = 0; length < named.size(); ++length)
        EXPECT_EQ(cidsByGlyph(named.left(length)).value_or(Cids{}), Cids{}) << length;
}

TEST(CffCharsetTest, SurvivesAnyBytes)
{
    const QByteArray whole = table(4, "\1" + bigEndian16(7) + '\0' + bigEndian16(3) + '\1');
    std::mt19937 random(3);
    for (int round = 0; round < 20'000; ++round) {
        QByteArray damaged = whole;
        for (auto changes = 1 + random() % 4; changes > 0; --changes)
            damaged[static_cast<qsizetype>(random() % static_cast<std::size_t>(damaged.size()))] =
                static_cast<char>(random());
        const auto cids = cidsByGlyph(damaged);
        EXPECT_LE(cids.value_or(Cids{}).size(), 65'536U);
    }
}

} // namespace
} // namespace quillfern::pdf
