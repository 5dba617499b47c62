#include "config/Margins.h"

#include "config/PageArea.h"
#include "support/Cases.h"

#include <cmath>

namespace quillfern {
namespace {

void setMargins(Numbering& number, double left, double top, double right, double bottom)
{
    number.setMarginLeft(left);
    number.setMarginTop(top);
    number.setMarginRight(right);
    number.setMarginBottom(bottom);
}

TEST(Margins, AreConvertedBetweenUnits)
{
    const Rows<MarginUnit, MarginUnit, double, double> cases = {
        {MarginUnit::Millimetres, MarginUnit::Points, 10, 28.34645669291339},
        {MarginUnit::Millimetres, MarginUnit::Inches, 25.4, 1},
        {MarginUnit::Inches, MarginUnit::Points, 0.5, 36},
        {MarginUnit::Inches, MarginUnit::Millimetres, 1, 25.4},
        {MarginUnit::Points, MarginUnit::Inches, 36, 0.5},
        {MarginUnit::Points, MarginUnit::Millimetres, 72, 25.4},
        {MarginUnit::Points, MarginUnit::Points, 7, 7},
        {MarginUnit::Inches, MarginUnit{9}, 3, 3},
        {MarginUnit{-1}, MarginUnit::Points, 3, 3},
    };
    for (const auto& [from, to, value, expected] : cases) {
        Numbering number;
        number.setMarginUnit(from);
        setMargins(number, value, value, value, value);
        Margins(number).unitChanged(to);
        EXPECT_DOUBLE_EQ(number.marginTop(), expected) << qToUnderlying(from) << " to " << qToUnderlying(to);
        EXPECT_EQ(number.marginTop(), number.marginLeft());
        EXPECT_EQ(number.marginTop(), number.marginRight());
        EXPECT_EQ(number.marginTop(), number.marginBottom());
        EXPECT_EQ(number.marginUnit(), to);
    }
}

TEST(Margins, OfZeroOrLessAreNeverConvertedAndCountAsNone)
{
    Numbering number;
    number.setMarginUnit(MarginUnit::Millimetres);
    setMargins(number, -5, 0, 10, -1);
    Margins margins(number);
    margins.unitChanged(MarginUnit::Points);
    EXPECT_EQ(number.marginLeft(), -5);
    EXPECT_EQ(number.marginBottom(), -1);
    EXPECT_EQ(marginRect(number.fields(), {200, 100}), QRectF(0, 0, 200 - number.marginRight(), 100));
}

TEST(Margins, RectangleInUnitsAndPercent)
{
    Numbering number;
    Margins margins(number);
    number.setMarginUnit(MarginUnit::Inches);
    setMargins(number, 1, 0.5, 2, 0.25);
    EXPECT_EQ(marginRect(number.fields(), {600, 800}), QRectF(72, 36, 600 - 72 - 144, 800 - 36 - 18));
    number.setMarginUnit(MarginUnit::Points);
    number.setIsMarginInPercentage(true);
    setMargins(number, 0, 25, 10, 0);
    EXPECT_EQ(marginRect(number.fields(), {600, 800}), QRectF(0, 200, 540, 600));
    EXPECT_EQ(lengthRect(number.fields(), {600, 800}), QRectF(0, 25, 590, 775))
        << "documents take the number as a length";
    setMargins(number, 50, 0, 60, 0);
    EXPECT_NEAR(marginRect(number.fields(), {100, 100}).width(), -10, 1e-9)
        << "a negative area is used as it is";
}

TEST(Margins, PercentagesGoThereAndBack)
{
    Numbering number;
    number.setMarginUnit(MarginUnit::Millimetres);
    setMargins(number, 10, 20, 0, 5);
    Margins margins(number);
    number.setIsMarginInPercentage(true);
    margins.isMarginPercentageChanged({300, 400});
    EXPECT_NEAR(number.marginLeft(), 10 * 72 / 25.4 / 300 * 100, 1e-12);
    EXPECT_NEAR(number.marginTop(), 20 * 72 / 25.4 / 400 * 100, 1e-12);
    margins.unitChanged(MarginUnit::Inches);
    EXPECT_NEAR(number.marginLeft(), 10 * 72 / 25.4 / 300 * 100, 1e-12) << "percentages know no unit";
    number.setIsMarginInPercentage(false);
    margins.isMarginPercentageChanged({300, 400});
    EXPECT_NEAR(number.marginLeft(), 10 / 25.4, 1e-12) << "back in the unit that is chosen now";
    EXPECT_EQ(number.marginRight(), 0);

    number.setIsMarginInPercentage(true);
    margins.isMarginPercentageChanged({0, 400});
    EXPECT_TRUE(std::isinf(number.marginLeft()));
}

} // namespace
} // namespace quillfern
