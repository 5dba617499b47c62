#include "platform/pdf/InlineImage.h"

#include "platform/pdf/ContentBalance.h"

#include <QByteArray>
#include <gtest/gtest.h>

namespace quillfern::pdf {
namespace {

const std::stop_token neverStopped;

ContentBalance balance(const QByteArray& content)
{
    return balanceOfContent(content.constData(), static_cast<std::size_t>(content.size()));
}

TEST(InlineImagesTest, OneImageAfterTheOtherEndsWhereItsOwnDataEnd)
{
    // A mark that was found ahead of one image must not be taken for the end of an image behind that mark.
    const QByteArray content = "BI /F /A85 ID aEI b~> EI 1 g "
                               "BI /F /AHx ID 4145> EI 2 g "
                               "BI /F /A85 ID 87 EI(~>\n EI 3 g "
                               "BI /W 2 /H 1 /BPC 8 /CS /G ID EI EI 4 g "
                               "BI /F /Fl ID x EI \x01 y EI 5 g "
                               "BI /F /A85 ID 00~> EI 6 g "
                               "BI /F /AHx ID 00 EI 7 g "
                               "BI ID never \xFF";
    InlineImages images(content.constBegin(), content.constEnd(), neverStopped);
    QByteArray found;
    for (qsizetype at = content.indexOf("BI "); at >= 0;) {
        const InlineImageEnd image = images.endOf(content.constData() + at + 2);
        const auto behind = static_cast<qsizetype>(image.after - content.constData());
        found += content.mid(behind, 3) + (image.closing.empty() ? "" : "open");
        at = content.indexOf("BI ", behind);
    }
    EXPECT_EQ(found.toStdString(), " 1  2  3  4  5  6  7 open");
}

TEST(InlineImagesTest, AFewWordsBehindAnEndDecideWhetherItIsOne)
{
    const QByteArray image = "BI ID x EI ";
    const QByteArray real = " EI Q";
    const std::vector<std::tuple<const char*, QByteArray, bool>> cases = {
        {"an operator", "Q ", true},
        {"numbers and an operator", "1 0 0 1 0 0 cm ", true},
        {"a number that is none", "1 0x ", false},
        {"a long blank", QByteArray(5000, ' ') + "\x01", true},
        {"a long comment of text", "% " + QByteArray(5000, 'c') + "\n\x01", true},
        {"a long string of text", "(" + QByteArray(5000, 'c') + ") Tj ", true},
        {"a long string of binary data", "(" + QByteArray(5000, '\x02') + ")", false},
        {"a number that reaches beyond all that is read", QByteArray(5000, '7') + " w ", true},
        {"numbers beyond any operator's", QByteArray("1 ").repeated(50), false},
    };
    for (const auto& [what, behind, ends] : cases) {
        const QByteArray content = image + behind + real;
        InlineImages images(content.constBegin(), content.constEnd(), neverStopped);
        const InlineImageEnd end = images.endOf(content.constData() + 2);
        EXPECT_EQ(end.after - content.constData(), ends ? 10 : content.size() - 2) << what;
    }
}

TEST(InlineImagesTest, SizesBeyondAllReasonSayNothingOfTheData)
{
    for (const char* size : {"/W 9999999999 /H 9999999999 /BPC 9999999999", "/W 9999999999 /H 1 /BPC 16",
                             "/W 1 /H 9999999999 /BPC 1", "/W 1 /H 1 /BPC 17", "/W -1 /H -1 /BPC 8"}) {
        const QByteArray content = QByteArray("q BI /CS /CMYK ") + size + " ID ab EI q";
        EXPECT_EQ(balance(content).closing.toStdString(), "Q Q ") << size;
    }
}

/// To read the rest of one of these contents for every image in it takes longer than a test may last.
TEST(InlineImagesTest, ReadsAnyContentInOnePass)
{
    constexpr qsizetype size = 32 << 20;
    const auto filled = [](const QByteArray& unit) { return unit.repeated(size / unit.size()); };
    QByteArray lengths; // each image's size leads into the white space at the end
    for (qsizetype i = 0; lengths.size() < size / 2; ++i)
        lengths += "BI /W " + QByteArray::number(size / 2).rightJustified(9, '0') +
                   " /H 1 /BPC 8 /CS /G ID EI \x01 ";
    const std::vector<std::pair<const char*, QByteArray>> cases = {
        {"end marks that never come", filled("BI /W 9 /H 9 /F/A85 ID EI ")},
        {"hexadecimal end marks that never come", filled("BI /F/AHx ID EI ")},
        {"one end mark for all, and no end behind it", filled("BI /F/A85 ID EI ") + "~> x"},
        {"both marks in turn", filled("BI /F/A85 ID EI BI /F/AHx ID EI ") + "~ x > x"},
        {"ends that nothing of content follows", filled("BI ID x EI \x01 ")},
        {"one good end for all", filled("BI ID x EI \x01 ") + " EI 1 g"},
        {"ends within nested strings",
         "BI ID " + filled(QByteArray("EI(").repeated(3000) + QByteArray(3000, ')') + "\x01 ")},
        {"ends within nested short strings",
         "BI ID " + filled(QByteArray("EI(").repeated(50) + QByteArray(50, ')') + "\x01 ")},
        {"ends before one comment", "BI ID " + filled("EI %\x01") + "\n\x01"},
        {"ends before one hexadecimal string", "BI ID " + filled("EI <\x01") + ">\x01"},
        {"lengths that lead into white space", lengths + QByteArray(size / 2, ' ') + "\x01"},
    };
    for (const auto& [what, content] : cases)
        EXPECT_EQ(balance("q " + content).closing.toStdString(), "Q ") << what << ": the last image ends";
}

} // namespace
} // namespace quillfern::pdf
