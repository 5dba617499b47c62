#include "config/PreviewModel.h"

#include "config/Numbering.h"
#include "platform/drawing/TextShaper.h"
#include "stamps/StampBase.h"
#include "support/Paths.h"

namespace quillfern {
namespace {

/// Records the arguments of draw() and paints its place red.
class SpyStamp final : public StampBase
{
  public:
    struct Call
    {
        std::int64_t page, total;
        bool isHighlighted;
        QRectF area;
        MarginAnchor anchor;
    };

    void setData(const store::Record*) override {}
    std::optional<store::Record> getData() const override { return store::Record(); }
    QString description() const override { return {}; }
    std::unique_ptr<IStampItem> clone() const override { return std::make_unique<SpyStamp>(*this); }
    void draw(drawing::Canvas& canvas, const QRectF& rect, MarginAnchor anchor, std::int64_t page,
              std::int64_t total, bool isHighlighted) const override
    {
        calls->push_back({page, total, isHighlighted, rect, anchor});
        canvas.fillRect(QRectF(rect.center(), QSizeF(10, 10)), Qt::red);
    }

    /// The calls of the stamp and of all its copies.
    std::shared_ptr<std::vector<Call>> calls = std::make_shared<std::vector<Call>>();
};

/// Pages of 300 by 400 points, light blue; files with "bad" in their names cannot be shown.
class PlainPages final : public pageimages::PageImageSource
{
  public:
    std::optional<pageimages::PageImage> page(const pageimages::PageImageRequest& request) override
    {
        requests.push_back(request);
        if (request.path.name() == "bad"_L1) return std::nullopt;
        const QSizeF size(300, 400);
        QImage image(pageimages::pixelSize(size, request), QImage::Format_RGB32);
        image.setDevicePixelRatio(pageimages::pixelsPerPoint(size, request));
        image.fill(paper);
        return pageimages::PageImage{image, size};
    }

    static constexpr QRgb paper = 0xFFCCDDFF;
    std::vector<pageimages::PageImageRequest> requests;
};

class PreviewTest : public testing::Test
{
  protected:
    PreviewTest()
    {
        number.stamps.push_back(spy);
        state.size = {60, 85};
    }

    void setFiles(const std::vector<std::int32_t>& pageCounts) { state.filePagesList = pageCounts; }
    void selectFile(int row)
    {
        state.selectedFile = row;
        state.selectedPath = row < 0 ? FilePath() : asPath(u"/file%1"_s.arg(row));
    }

    /// Draws the picture of the present state and returns the only call of the spy stamp.
    SpyStamp::Call drawn()
    {
        spy->calls->clear();
        picture = model.PropertyChanged(number.configuration(), state).value_or(QImage());
        EXPECT_EQ(spy->calls->size(), 1U);
        return spy->calls->empty() ? SpyStamp::Call{} : spy->calls->front();
    }

    drawing::TextShaper shaper;
    PlainPages pages;
    Numbering number;
    std::shared_ptr<SpyStamp> spy = std::make_shared<SpyStamp>();
    Preview preview{shaper, pages};
    PreviewModel model{preview};
    PreviewState state;
    QImage picture;
};

TEST_F(PreviewTest, SamplePageShowsTheAreaInsideTheMargins)
{
    number.setMarginLeft(10);
    number.setMarginTop(20);
    number.setMarginRight(5);
    number.setMarginBottom(15);
    for (const double density : {1.0, 1.25, 2.0, 3.0}) {
        state.density = density;
        const auto call = drawn();
        EXPECT_EQ(call.area, QRectF(10, 20, 45, 50));
        EXPECT_EQ(picture.size(), QSize(static_cast<int>(60 * density), static_cast<int>(85 * density)));
        EXPECT_EQ(picture.devicePixelRatio(), density);
        const auto at = [&](double x, double y) {
            return picture.pixelColor(static_cast<int>(x * density), static_cast<int>(y * density));
        };
        for (const QPointF& outside : {QPointF(4, 40), QPointF(30, 10), QPointF(57, 40), QPointF(30, 78)}) {
            EXPECT_NEAR(at(outside.x(), outside.y()).alphaF(), 0.5, 0.01);
            EXPECT_EQ(at(outside.x(), outside.y()).red(), 0);
        }
        EXPECT_EQ(at(20, 30), QColor(Qt::white));
        EXPECT_EQ(at(37, 50), QColor(Qt::red)) << density;
        int black = 0;
        for (int x = static_cast<int>(10 * density); x < static_cast<int>(55 * density); ++x)
            black += picture.pixelColor(x, static_cast<int>(21.5 * density)) == QColor(Qt::black) ||
                     picture.pixelColor(x, static_cast<int>(20.5 * density)) == QColor(Qt::black);
        EXPECT_GT(black, 15 * density) << "no outline";
        EXPECT_LT(black, 40 * density) << "not dashed";
    }
}

TEST_F(PreviewTest, PageTotalsFollowTheRule)
{
    const Rows<std::vector<std::int32_t>, bool, std::int64_t, std::int64_t> cases = {
        {{}, false, 0, 4},   {{}, true, 2, 4},      {{10, 3}, false, 0, 10}, {{10, 3}, true, 0, 13},
        {{10}, false, 2, 2}, {{10}, false, 20, 10}, {{10, 3}, true, 12, 12}, {{0, 3}, false, 0, 0},
    };
    for (const auto& [files, continuous, endPage, total] : cases) {
        setFiles(files);
        selectFile(static_cast<int>(files.size()) - 1); // the total is the first file's all the same
        number.setIsContinuousNumbering(continuous);
        number.setEndPage(endPage);
        EXPECT_EQ(drawn().total, total);
        EXPECT_TRUE(pages.requests.empty()) << "live preview is off";
    }
}

TEST_F(PreviewTest, LivePagesAreNumberedAsTheJobWould)
{
    const Rows<const char*, std::vector<std::int32_t>, int, bool, std::int64_t, std::int64_t, std::int64_t,
               std::int64_t, PageRange, std::int64_t, std::int64_t>
        cases = {
            {"second, continuous", {3, 5}, 1, true, 1, 0, 1, 1, PageRange::AllPages, 4, 8},
            {"second, each anew", {3, 5}, 1, false, 1, 0, 1, 1, PageRange::AllPages, 1, 5},
            {"own start and step", {3, 5}, 1, true, 1, 0, 10, 5, PageRange::AllPages, 25, 8},
            {"even counts the first", {3, 5}, 1, true, 1, 0, 1, 1, PageRange::EvenPages, 3, 8},
            {"one page beyond the end page counts", {9, 5}, 1, true, 1, 2, 1, 1, PageRange::AllPages, 4, 2},
            {"first of one", {7}, 0, false, 1, 0, 3, 1, PageRange::AllPages, 3, 7},
            {"empty files between", {0, 0, 2}, 2, true, 1, 0, 1, 1, PageRange::AllPages, 1, 2},
        };
    number.setIsLivePreview(true);
    for (const auto& [what, files, selected, continuous, startPage, endPage, startNumber, steps, range, page,
                      total] : cases) {
        setFiles(files);
        selectFile(selected);
        number.setIsContinuousNumbering(continuous);
        number.setStartPage(startPage);
        number.setEndPage(endPage);
        number.setStartNumber(startNumber);
        number.setNumberSteps(steps);
        number.setPageRange(range);
        const auto call = drawn();
        EXPECT_EQ(call.page, page) << what;
        EXPECT_EQ(call.total, total) << what;
        EXPECT_EQ(call.area.size(), QSizeF(300, 400)) << what;
        EXPECT_EQ(pages.requests.back().path, state.selectedPath) << what;
    }
}

TEST_F(PreviewTest, PagesTheJobWouldPassOverShowNoStamps)
{
    setFiles({5});
    selectFile(0);
    number.setIsLivePreview(true);
    for (const auto& [startPage, range, stamped] :
         Rows<std::int64_t, PageRange, bool>{{1, PageRange::AllPages, true},
                                             {2, PageRange::AllPages, false},
                                             {1, PageRange::OddPages, false},
                                             {1, PageRange::EvenPages, true},
                                             {1, PageRange{7}, false}}) {
        number.setStartPage(startPage);
        number.setPageRange(range);
        spy->calls->clear();
        const auto image = model.PropertyChanged(number.configuration(), state);
        ASSERT_TRUE(image);
        EXPECT_EQ(spy->calls->size(), stamped ? 1U : 0U) << startPage << ' ' << qToUnderlying(range);
        EXPECT_EQ(image->pixel(5, 5), PlainPages::paper) << "the page itself is shown either way";
    }
}

TEST_F(PreviewTest, LivePicturesHaveThePixelsOfTheView)
{
    setFiles({1});
    selectFile(0);
    number.setIsLivePreview(true);
    number.setMarginLeft(30);
    for (const double density : {1.0, 2.0}) {
        state.density = density;
        const auto call = drawn();
        EXPECT_EQ(call.area, QRectF(30, 0, 270, 400)) << "the space is the page's, whatever the pixels";
        EXPECT_EQ(picture.size(), QSize(60, 80) * density);
        EXPECT_NEAR(picture.deviceIndependentSize().width(), 300, 1);
        const QPointF mark = (QPointF(165, 200) + QPointF(5, 5)) * picture.width() / 300;
        EXPECT_NEAR(qRed(picture.pixel(mark.toPoint())), 255, 60) << "the stamp is not where it should be";
        EXPECT_LT(qBlue(picture.pixel(mark.toPoint())), 200);
        EXPECT_NEAR(qRed(picture.pixel(1, 40)), qRed(PlainPages::paper) / 2, 2) << "the margin is not shaded";
    }
}

TEST_F(PreviewTest, WhatCannotBeShownGivesTheSamplePage)
{
    number.setIsLivePreview(true);
    const Preview::View view{{60, 85}, 1, -1};
    const FilePath a = asPath(u"/a"_s);
    const std::vector<Preview::LivePage> none = {{std::nullopt, 0, 1, {3}, 3},
                                                 {a, -1, 1, {3}, 3},
                                                 {a, 1, 1, {3}, 3},
                                                 {a, 0, 1, {}, 3},
                                                 {a, 0, 0, {3}, 3},
                                                 {asPath(u"/bad"_s), 0, 1, {3}, 3}};
    for (const Preview::LivePage& page : none) {
        spy->calls->clear();
        EXPECT_EQ(preview.previewLive(number.configuration(), page, view).size(), QSize(60, 85));
        ASSERT_EQ(spy->calls->size(), 1U);
        EXPECT_EQ(spy->calls->at(0).total, 3);
        EXPECT_EQ(spy->calls->at(0).area.size(), QSizeF(60, 85));
    }
    setFiles({5});
    selectFile(-1); // no selection
    EXPECT_EQ(drawn().area.size(), QSizeF(60, 85));
}

TEST_F(PreviewTest, TheSelectedStampStandsOut)
{
    auto disabled = std::make_shared<SpyStamp>();
    disabled->setIsSelected(false);
    auto third = std::make_shared<SpyStamp>();
    number.stamps = {spy, disabled, third};
    setFiles({2});
    for (const bool live : {false, true}) {
        number.setIsLivePreview(live);
        selectFile(0);
        for (const auto& [isOn, row, first, last] : Rows<bool, int, bool, bool>{{true, 2, false, true},
                                                                                {true, 0, true, false},
                                                                                {true, 1, false, false},
                                                                                {true, -1, false, false},
                                                                                {false, 2, false, false}}) {
            number.setIsHighlightStamp(isOn);
            state.selectedStamp = row;
            third->calls->clear();
            EXPECT_EQ(drawn().isHighlighted, first) << row;
            ASSERT_EQ(third->calls->size(), 1U);
            EXPECT_EQ(third->calls->at(0).isHighlighted, last) << row;
        }
    }
    EXPECT_TRUE(disabled->calls->empty());
}

TEST_F(PreviewTest, ViewsWithoutRoomGiveNoPictureAndAJobAtWorkNoneAtAll)
{
    for (const QSizeF& size : {QSizeF(0, 0), QSizeF(-5, 10), QSizeF(1e9, 1e9), QSizeF(10, 0.5)}) {
        state.size = size;
        const auto image = model.PropertyChanged(number.configuration(), state);
        ASSERT_TRUE(image);
        EXPECT_TRUE(image->isNull());
    }
    state.isJobRunning = true;
    EXPECT_FALSE(model.PropertyChanged(number.configuration(), state));
    EXPECT_TRUE(spy->calls->empty());
}

TEST(PreviewRule, CountsPagesAsItWalksThem)
{
    JobConfiguration job;
    for (const char* list : {"", "1", "2-5,9,11-", "3-", "4,6,8"})
        for (const std::int64_t startPage : {-3, 0, 1, 2, 5})
            for (const std::int64_t endPage : {-1, 0, 1, 2, 4, 9})
                for (std::int32_t range = 0; range <= 3; ++range) {
                    SCOPED_TRACE(testing::Message()
                                 << list << ' ' << startPage << '-' << endPage << ' ' << range);
                    job.options.pageList = PageList::parse(QString::fromLatin1(list));
                    job.startPage = startPage;
                    job.endPage = endPage;
                    job.pageRange = PageRange{range};
                    std::int64_t stamped = 0;
                    for (std::int64_t index = 0; index < 14; ++index) {
                        EXPECT_EQ(previewStampedPages(job, index), stamped) << index;
                        const bool isStamped = isPreviewStampedPage(job, index);
                        if (*list) { // which takes the place of start and end, as in the job
                            EXPECT_EQ(isStamped,
                                      isInPageRange(job, index + 1) && hasChosenParity(job, index + 1));
                        }
                        stamped += isStamped ? 1 : 0;
                    }
                }
}

TEST(PreviewLayout, CentresAPageInItsBox)
{
    const QRectF frame = previewFrame({800, 520});
    EXPECT_DOUBLE_EQ(frame.height(), 490);
    EXPECT_DOUBLE_EQ(frame.width(), 346);
    EXPECT_DOUBLE_EQ(frame.x(), 227);
    EXPECT_DOUBLE_EQ(frame.y(), 15);
    for (const double width : {1.0, 300.0, 1999.0})
        EXPECT_NEAR(previewFrame({width, tallestPreviewBox(width)}).width(), width, 1e-9);
}

} // namespace
} // namespace quillfern
