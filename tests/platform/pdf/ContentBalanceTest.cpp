#include "platform/pdf/ContentBalance.h"

#include "platform/system/Failure.h"
#include "support/Cases.h"

#include <random>

namespace quillfern::pdf {
namespace {

ContentBalance balance(const QByteArray& content)
{
    return balanceOfContent(content.constData(), static_cast<std::size_t>(content.size()));
}

TEST(ContentBalanceTest, SeesWhatIsLeftOpenAndWhatIsClosedTooOften)
{
    const Rows<const char*, QByteArray, const char*, std::vector<std::size_t>> cases = {
        {"nothing", "", "", {}},
        {"sound", "q 1 0 0 1 5 5 cm Q BT (x) Tj ET /P BMC EMC", "", {}},
        {"open in order", "q BT /Span <</MCID 1>> BDC", "EMC ET Q ", {}},
        {"crossed", "q BT Q ET q", "Q ", {}},
        {"stray", "Q q Q Q 5 Q", "", {0, 6, 10}},
        {"names and words that only look like it", "/q /Q qq QQ Qx xQ q1 1q .Q -q", "", {}},
        {"after delimiters", "[q]Q", "", {}},
        {"strings with everything", "(q \\( Q \\) (q) \\\\) Tj q", "Q ", {}},
        {"an escaped line end", "(a\\\nq) Tj", "", {}},
        {"hex strings and dictionaries", "<71 51> Tj /A <</B (q)/C <71>>> DP", "", {}},
        {"comments", "% q q q\rq % Q\n Q", "", {}},
        {"an open string", "q (abc (d", "))\nQ ", {}},
        {"an open string that ends in a backslash", "(abc\\", "))\n", {}},
        {"an open comment", "q % Q", "\nQ ", {}},
        {"a pending clip", "0 0 1 1 re W* ", "n ", {}},
        {"a finished clip", "0 0 1 1 re W n", "", {}},
        {"an inline image", "BI /W 1 ID q\x80 EIQ Q\nEI q", "Q ", {}},
        {"binary after a false end", QByteArray("BI /W 9 ID x\nEI \x01\x02 Q\nEI Q", 25), "", {24}},
        {"binary text behind",
         "BI /W 2 /H 2 /BPC 8 /CS /G ID \x01\x10\xa0\xff EI Q BT (\x01) Tj ET",
         "",
         {38}},
        {"no white space before the end",
         "BI /W 2 /H 2 /BPC 8 /CS /G ID abc\xff"
         "EI q",
         "Q ",
         {}},
        {"an end in data of known length", "BI /W 8 /H 1 /BPC 8 /CS /G ID x EI (yz EI q", "Q ", {}},
        {"data with a mark of their own", "BI /W 1 /F /A85 ID 87c\nEI(Q Q)~> EI q", "Q ", {}},
        {"an array cut off", "q BT [(Hello) 20 (Wor", ")]\nET Q ", {}},
        {"a dictionary cut off", "/P <</MCID [0", "]>>\n", {}},
        {"an image cut off in its dictionary", "q BI /W 1 /H 1", "\nID \nEI\nQ ", {}},
        {"an array of operators is none", "[ q ] 1 m S", "Q ", {}},
        {"extra ends of text and marks are harmless", "ET EMC q Q", "", {}},
    };
    for (const auto& [what, content, closing, stray] : cases) {
        const ContentBalance result = balance(content);
        EXPECT_EQ(result.closing.toStdString(), closing) << what;
        EXPECT_EQ(result.strayRestores, stray) << what;
    }
}

TEST(ContentBalanceTest, KnowsWhatNoContentMayHold)
{
    const Rows<QByteArray, bool> cases = {
        {"q 1 0 0 1 5 5 cm BT /F1 9 Tf (x) Tj [(a)-2(b)] TJ T* ET Q", false},
        {"q q BT /Span <</A true/B null>> BDC", false}, // open, but each word has its meaning
        {"Q Q EMC ET", false},
        {"BX foo EX /X gs 1 0 0 rg 0 0 9 9 re B* n", false},
        {"BI /W 2 /H 1 /BPC 8 /CS /G ID ab EI Q", false},
        {"BI /W 2 /H 1 /BPC 8 /CS /G /F /Fl ID abcde EI Q", false},
        {"BI /W 2 /H 1 /F /A85 ID 87cURD~> EI Q", false},
        {"% a comment with words (", false},
        {"1 0 0 xg", true},
        {"0 0 m strok", true},
        {"191m", true},
        {"BT [(more)-200(ail) Tj ET", true},
        {"BT [(more)-200(ail) TJ ET", true},
        {"1 0 0 1 5 cm", true},
        {"(a) Tj 0 l", true},
        {"BI /W 2 /H \n/CS /G ID ab EI Q", true},
        {"BI /W 8 /H 1 /F /CCF /DP <</K -1/Columns 8>> /IM true ID ab EI Q", false},
        {"[1 2]0 d[]0 d/G gs(a)Tj/F1 9 Tf/P<</X 1>>BDC EMC<41>Tj", false},
        {"BI /W 2 /H 1 /BPC 8 /CS [/I /RGB 0 <000000>] /D [1 0] ID ab EI Q", false},
        {"(a) Tj \x80\x81", true},
        {"(a)) Tj", true},
        {"<41>> Tj", true},
        {"{1 add}", true},
        {"(never ends", true},
        {"<41", true},
        {"[(a)", true},
        {"/A <</MCID 0", true},
        {"BI /W 200 /H 1 /BPC 8 /CS /G ID ab EI Q", true}, // fewer bytes than it says
        {"BI /W 1 /H 1 /BPC 8 /CS /G ID abcdef EI Q", true},
        {"BI /W 2 /H 1 /F /A85 ID 87cURD EI Q", true},
        {"BI /W 2 /H 1", true},
        {"BI /W 2 ID never", true},
    };
    for (const auto& [content, damaged] : cases)
        EXPECT_EQ(balance(content).damaged, damaged) << content.toStdString();
}

/// The reader passes over most bytes in blocks; where a block ends must not matter.
TEST(ContentBalanceTest, DoesNotDependOnWhereThingsStand)
{
    const QList<QByteArray> pieces =
        QByteArray("q |Q |(a) Tj |(b (c) \\) \\\\) Tj |[(x)-250(yz)] TJ |<41> Tj |% c (\n|"
                   "/N gs |BT |ET |12.5 0 Td |) |((((nested)))) Tj ")
            .split('|');
    std::mt19937 random(7);
    for (int round = 0; round < 400; ++round) {
        QByteArray content;
        int depth = 0;
        int stray = 0;
        while (content.size() < 300) {
            const QByteArray& piece = pieces[static_cast<qsizetype>(random() % 13)];
            content += piece;
            if (piece == "q ") ++depth;
            if (piece == "Q ") depth > 0 ? --depth : ++stray;
        }
        for (int shift = 0; shift < 64; shift += 7) {
            const ContentBalance result = balance(QByteArray(shift, ' ') + content);
            ASSERT_EQ(result.closing.count('Q'), depth) << content.toStdString();
            ASSERT_EQ(static_cast<int>(result.strayRestores.size()), stray) << content.toStdString();
        }
    }
}

TEST(ContentBalanceTest, SurvivesAnyBytes)
{
    std::mt19937 random(11);
    const QByteArray alphabet("qQ()<>[]%/\\ \nBIDETM\x80\0E", 22);
    for (int round = 0; round < 3000; ++round) {
        QByteArray content;
        for (auto size = random() % 200; size > 0; --size)
            content += alphabet[static_cast<qsizetype>(random() % static_cast<std::size_t>(alphabet.size()))];
        const ContentBalance result = balance(content);
        // Content that is followed by its own `closing` must be sound.
        if (result.strayRestores.empty()) {
            EXPECT_TRUE(balance(content + '\n' + result.closing).sound())
                << content.toStdString() << " + " << result.closing.toStdString();
        }
    }
    EXPECT_THROW(static_cast<void>(balance(QByteArray("q ").repeated(1'500'000))), Failure);
    EXPECT_THROW(static_cast<void>(balance(QByteArray("Q ").repeated(1'500'000))), Failure);
    // Marked content and text objects that overlap instead of nesting must not make this slow.
    const QByteArray crossed = QByteArray("/A BMC ").repeated(400'000) + QByteArray("BT ").repeated(400'000) +
                               QByteArray("EMC ").repeated(400'000) + QByteArray("ET ").repeated(400'000);
    EXPECT_TRUE(balance(crossed).sound());
}

} // namespace
} // namespace quillfern::pdf
