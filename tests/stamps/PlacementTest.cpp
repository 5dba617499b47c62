#include "stamps/Placement.h"

#include "stamps/StampRun.h"
#include "support/Cases.h"

#include <cmath>

namespace quillfern {
namespace {

TEST(Placement, PutsCornerZero)
{
    const QRectF page(0, 0, 600, 800);
    const QRectF inset(36, 36, 540, 720);
    const QSizeF text(100, 20);
    const Rows<const char*, QSizeF, int, QRectF, MarginAnchor, QPointF> cases = {
        {"top left", text, 0, page, MarginAnchor::TopLeft, {0, 0}},
        {"top middle", text, 0, page, MarginAnchor::TopMiddle, {250, 0}},
        {"top right", text, 0, page, MarginAnchor::TopRight, {500, 0}},
        {"middle left", text, 0, page, MarginAnchor::MiddleLeft, {0, 390}},
        {"centre", text, 0, page, MarginAnchor::MiddleMiddle, {250, 390}},
        {"middle right", text, 0, page, MarginAnchor::MiddleRight, {500, 390}},
        {"bottom left", text, 0, page, MarginAnchor::BottomLeft, {0, 780}},
        {"bottom middle", text, 0, page, MarginAnchor::BottomMiddle, {250, 780}},
        {"bottom right", text, 0, page, MarginAnchor::BottomRight, {500, 780}},
        {"the margin is taken out of the far edge", text, 0, inset, MarginAnchor::TopRight, {440, 0}},
        {"and of the lower one", text, 0, inset, MarginAnchor::BottomRight, {440, 700}},
        {"narrower than the near margin, too",
         {10, 8},
         0,
         {100, 36, 440, 720},
         MarginAnchor::TopRight,
         {430, 0}},
        {"middles are relative to the area", text, 0, inset, MarginAnchor::MiddleMiddle, {220, 350}},
        {"no anchor ends up at the top left", text, 0, page, MarginAnchor::None, {0, 0}},
        {"an unknown anchor counts as none", text, 0, page, MarginAnchor{12}, {0, 0}},
        {"fractions of a point stay", text, 0, {0.75, 0, 600, 800}, MarginAnchor::TopRight, {500.75, 0}},
        {"an empty area gives the origin", text, 45, {0, 0, 0, 0}, MarginAnchor::BottomRight, {0, 0}},
    };
    for (const auto& [what, size, angle, area, anchor, expected] : cases) {
        const QPointF corner = getTransformedPoint(size, angle, area, anchor, 0);
        EXPECT_NEAR(corner.x(), expected.x(), 1e-4) << what;
        EXPECT_NEAR(corner.y(), expected.y(), 1e-4) << what;
    }
}

TEST(Placement, AQuarterTurnAtTheTopLeftIsPushedInsideByWholePoints)
{
    // Centred at (50, 10), turned by 90 degrees counter-clockwise the box spans x 40..60 and y -40..60.
    const QPointF corner = getTransformedPoint({100, 20}, 90, {0, 0, 600, 800}, MarginAnchor::TopLeft, 0);
    EXPECT_NEAR(corner.x(), 40, 1e-3);
    EXPECT_NEAR(corner.y(), 100, 1.0 + 1e-3);
    EXPECT_NEAR(std::remainder(corner.y() - 60, 1.0), 0, 1e-3) << "the shift is whole points";
}

TEST(Placement, EveryAnchorAndAngleKeepsTheStampWithinAPointOfTheArea)
{
    for (const QRectF& area : {QRectF(0, 0, 600, 800), QRectF(90, 150, 500, 600)})
        for (const QSizeF& size : {QSizeF(120, 30), QSizeF(7, 13)}) // wider and narrower than the near margin
            for (int anchor = 1; anchor <= 9; ++anchor) {
                for (int angle = 0; angle < 360; angle += 15) {
                    for (int i = 0; i < 4; ++i) {
                        const QPointF p = getTransformedPoint(size, angle, area, MarginAnchor{anchor}, i);
                        EXPECT_GT(p.x(), -1.001) << anchor << ' ' << angle;
                        EXPECT_LT(p.x(), area.width() + 1.001) << anchor << ' ' << angle;
                        EXPECT_GT(p.y(), -1.001) << anchor << ' ' << angle;
                        EXPECT_LT(p.y(), area.height() + 1.001) << anchor << ' ' << angle;
                    }
                }
            }
}

TEST(Placement, TheCornerThatComesFirstDecides)
{
    // A square larger than the area, turned by 45 degrees, sticks out on all sides. The shift is the distance
    // of the first corner that sticks out, and the order of the corners depends on the angle and on the
    // anchor's group.
    const double half = 50 * std::sqrt(2.0);
    const Rows<const char*, int, MarginAnchor, QPointF> cases = {
        {"upright", 45, MarginAnchor::TopLeft, {50 - half + 20, 50 + 20}},
        {"upside down", 225, MarginAnchor::TopLeft, {50 + half + 20, 50 + 20}},
        {"another group, centred at 50, 30", 45, MarginAnchor::MiddleLeft, {50 - half - 60, 30 - 40}},
        {"a negative angle is in no half", 225 - 360, MarginAnchor::TopLeft, {50 + half - 60, 50 - 60}},
    };
    for (const auto& [what, angle, anchor, expected] : cases) {
        const QPointF corner = getTransformedPoint({100, 100}, angle, {0, 0, 60, 60}, anchor, 0);
        EXPECT_NEAR(corner.x(), expected.x(), 1e-3) << what;
        EXPECT_NEAR(corner.y(), expected.y(), 1e-3) << what;
    }
}

TEST(FacingPages, AlternateFromTheAnchorUntilReset)
{
    const std::vector<std::pair<MarginAnchor, std::vector<std::int32_t>>> cases = {
        {MarginAnchor::TopLeft, {1, 3, 1, 3}},      {MarginAnchor::TopRight, {3, 1, 3, 1}},
        {MarginAnchor::MiddleLeft, {4, 6, 4, 6}},   {MarginAnchor::BottomLeft, {7, 9, 7, 9}},
        {MarginAnchor::BottomRight, {9, 7, 9, 7}},  {MarginAnchor::TopMiddle, {2, 2, 2, 2}},
        {MarginAnchor::MiddleMiddle, {5, 5, 5, 5}}, {MarginAnchor::BottomMiddle, {8, 8, 8, 8}}};
    for (const auto& [anchor, expected] : cases) {
        StampRun run(1);
        for (int document = 0; document < 2; ++document) {
            for (const std::int32_t next : expected)
                EXPECT_EQ(run.getNextMarginAnchor(2, true, anchor), MarginAnchor{next});
            // The number of pages is odd, so that without reset() the next page would be on the other side.
            EXPECT_EQ(run.getNextMarginAnchor(2, true, anchor), anchor);
            EXPECT_EQ(run.getNextMarginAnchor(0, true, MarginAnchor::BottomRight), MarginAnchor::BottomRight)
                << "a stamp of its own";
            run.reset();
        }
    }
}

TEST(FacingPages, WithoutSymmetryNothingIsRemembered)
{
    StampRun run(1);
    EXPECT_EQ(run.getNextMarginAnchor(0, false, MarginAnchor::BottomLeft), MarginAnchor::BottomLeft);
    EXPECT_EQ(run.getNextMarginAnchor(0, true, MarginAnchor::TopRight), MarginAnchor::TopRight)
        << "the first symmetric page is the anchor's own";
    EXPECT_EQ(run.getNextMarginAnchor(0, true, MarginAnchor::BottomLeft), MarginAnchor::TopLeft)
        << "a new anchor counts after the reset only";
}

} // namespace
} // namespace quillfern
