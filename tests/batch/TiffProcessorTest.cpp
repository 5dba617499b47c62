// Pages, numbers, files and compression codes in processTIFF(); the output is read back with libtiff.

#include "batch/RasterProcessing.h"
#include "platform/raster/PictureBytes.h"
#include "stamps/ImageStamp.h"

namespace quillfern {
namespace {

class TiffProcessing : public RasterProcessing
{
  protected:
    /// A file whose page i is a shade of its own, so that pages can be told apart.
    QString shades(int count, const TiffLayout& layout = {.photometric = 1, .compression = 5})
    {
        const QString source = path(u"shades.tif"_s);
        TiffBuilder builder(source);
        for (int i = 1; i <= count; ++i)
            builder.page(shade(i), layout);
        return source;
    }

    static QImage shade(int page)
    {
        QImage image(64, 88, QImage::Format_RGBA8888);
        const int grey = 255 - (page % 30) * 3;
        image.fill(QColor(grey, grey, grey));
        return image;
    }

    static int shadeOf(const TiffPage& page) { return page.image.pixelColor(3, 3).red(); }

    std::shared_ptr<TextStamp> text() const
    {
        return std::static_pointer_cast<TextStamp>(number.stamps.at(0));
    }
};

TEST_F(TiffProcessing, RangeAndParity)
{
    const Rows<int, int, PageRange, std::vector<int>, std::vector<bool>, int> cases = {
        {2, 4, PageRange::AllPages, {2, 3, 4}, {true, true, true}, 10 + 3 * 5},
        {1, 0, PageRange::OddPages, {1, 2, 3, 4, 5, 6}, {true, false, true, false, true, false}, 10 + 3 * 5},
        {2, 5, PageRange::EvenPages, {2, 3, 4, 5}, {true, false, true, false}, 10 + 2 * 5},
        {5, 99, PageRange::AllPages, {5, 6}, {true, true}, 10 + 2 * 5},
        {1, 0, PageRange{7}, {1, 2, 3, 4, 5, 6}, std::vector<bool>(6, false), 10},
    };
    const QString source = shades(6);
    addStamp();
    number.setStartNumber(10);
    number.setNumberSteps(5);
    for (const auto& [start, end, range, kept, stamped, numberAfter] : cases) {
        SCOPED_TRACE(testing::Message() << start << " to " << end << ", " << qToUnderlying(range));
        number.setStartPage(start);
        number.setEndPage(end);
        number.setPageRange(range);
        const auto pages = readTiff(process(source));
        ASSERT_EQ(pages.size(), kept.size());
        for (std::size_t i = 0; i < pages.size(); ++i) {
            EXPECT_NEAR(shadeOf(pages[i]), 255 - kept[i] * 3, 1);
            EXPECT_EQ(hasStamp(pages[i].image), stamped[i]);
        }
        EXPECT_EQ(nextNumber, numberAfter);
    }
}

TEST_F(TiffProcessing, RangeWithoutPagesWritesNothing)
{
    addStamp();
    number.setStartPage(7);
    const QString source = shades(6);
    process(source, false);
    EXPECT_TRUE(problem().contains(u"page range"_s)) << problem().toStdString();
    number.setStartPage(3);
    number.setEndPage(2);
    process(source, false);
}

TEST_F(TiffProcessing, TotalIsTheFilesOwnWhenNoneIsGiven)
{
    addStamp();
    text()->number.numberFormat = u"{0}{1}"_s;
    const QString source = shades(3);
    const auto own = readTiff(process(source));
    text()->number.numberFormat = u"{0}3"_s;
    const auto written = readTiff(process(source));
    ASSERT_EQ(own.size(), 3U);
    EXPECT_EQ(own[0].image, written[0].image);
}

TEST_F(TiffProcessing, EveryPageTakesTheFirstOnesPhysicalSize)
{
    const QString source = path(u"mixed.tif"_s);
    TiffBuilder(source)
        .page(colourPicture(120, 88), {.compression = 5, .xResolution = 240, .yResolution = 176})
        .page(colourPicture(200, 100), {.compression = 5, .xResolution = 72, .yResolution = 72})
        .page(colourPicture(64, 64), {.compression = 5});
    addStamp();
    const auto pages = readTiff(process(source));
    ASSERT_EQ(pages.size(), 3U);
    const float expected[][2] = {{240, 176}, {400, 200}, {128, 128}};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(pages[i].resolutionUnit, 2);
        EXPECT_FLOAT_EQ(pages[i].xResolution, expected[i][0]);
        EXPECT_FLOAT_EQ(pages[i].yResolution, expected[i][1]);
    }
}

TEST_F(TiffProcessing, ResolutionsOfAllUnits)
{
    const Rows<TiffLayout, double, double> cases = {
        {{.photometric = 0, .bits = 1, .compression = 3, .xResolution = 204, .yResolution = 98}, 204, 98},
        {{.compression = 5, .xResolution = 100, .yResolution = 50, .resolutionUnit = 3}, 254, 127},
        {{.compression = 5, .xResolution = 2, .yResolution = 1, .resolutionUnit = 1}, 72, 36},
        {{.compression = 5}, 72, 72},
        {{.compression = 5, .orientation = 6, .xResolution = 300, .yResolution = 150}, 150, 300},
    };
    addStamp();
    for (const auto& [layout, x, y] : cases) {
        const QString source = path(u"page.tif"_s);
        TiffBuilder(source).page(blackAndWhitePicture(), layout);
        const auto pages = readTiff(process(source));
        ASSERT_EQ(pages.size(), 1U);
        EXPECT_NEAR(pages[0].xResolution, x, 0.001);
        EXPECT_NEAR(pages[0].yResolution, y, 0.001);
    }
}

TEST_F(TiffProcessing, CompressionCodes)
{
    const QString rgb = path(u"rgb.tif"_s);
    TiffBuilder(rgb).page(colourPicture(), {.compression = 5});
    const QString alpha = path(u"alpha.tif"_s);
    TiffBuilder(alpha).page(colourPicture(), {.compression = 5, .extraSample = 2});
    const QString bilevel = path(u"bilevel.tif"_s);
    TiffBuilder(bilevel).page(blackAndWhitePicture(), {.photometric = 0, .bits = 1, .compression = 4});
    // the codes asked for and those written
    const Rows<QString, std::map<int, int>> cases = {
        {rgb, {{1, 1}, {5, 5}, {7, 7}, {8, 8}, {32946, 32946}, {32773, 32773}}},
        {rgb, {{6, 7}, {2, 5}, {3, 5}, {4, 5}, {34925, 5}, {0, 5}, {-3, 5}}},
        {alpha, {{7, 5}, {8, 8}, {4, 5}}},
        {bilevel, {{7, 5}, {8, 8}, {1, 1}, {2, 2}, {3, 3}, {4, 4}, {32773, 32773}}},
    };
    addStamp();
    const QString target = scratch.path(u"copy.tif"_s);
    for (const auto& [source, codes] : cases)
        for (const auto& [asked, written] : codes) {
            SCOPED_TRACE(testing::Message() << source.toStdString() << " as " << asked);
            ASSERT_EQ(stamp(source, target, asked).status, FileStatus::Created);
            const auto pages = readTiff(target);
            ASSERT_EQ(pages.size(), 1U);
            EXPECT_EQ(pages[0].compression, written);
            const QImage picture = source == bilevel ? blackAndWhitePicture() : colourPicture();
            EXPECT_TRUE(showsSame(pages[0].image, picture, source == rgb ? 3 : 0));
        }
}

TEST_F(TiffProcessing, FaxPagesStayFaxPagesWhereTheStampsAllow)
{
    const QString source = path(u"fax.tif"_s);
    TiffBuilder(source).page(blackAndWhitePicture(), {.photometric = 0, .bits = 1, .compression = 4});
    auto picture = std::make_shared<ImageStamp>();
    picture->loadPicture(asPath(scratch.writePicture(u"logo.png"_s, {20, 20}, Qt::red)));
    picture->setMarginAnchor(MarginAnchor::BottomRight);
    const auto nothing = [] {};
    const Rows<const char*, QColor, std::function<void()>, bool> cases = {
        {"black", Qt::black, nothing, true},
        {"white", Qt::white, nothing, true},
        {"grey", Qt::gray, nothing, false},
        {"red", Qt::red, nothing, false},
        {"translucent", Qt::black, [&] { text()->textOpacity = 50; }, false},
        {"with a red outline", Qt::black, [&] { text()->outlineWidth = 10, text()->outlineColor = Qt::red; },
         false},
        {"a picture", Qt::black, [&] { number.stamps = {picture}; }, false},
        {"red, but disabled", Qt::red, [&] { text()->setIsSelected(false); }, true},
    };
    for (const auto& [what, colour, change, stays] : cases) {
        SCOPED_TRACE(what);
        number.stamps.clear();
        addStamp(colour);
        change();
        const auto pages = readTiff(process(source));
        ASSERT_EQ(pages.size(), 1U);
        EXPECT_EQ(pages[0].compression, stays ? 4 : 5);
        EXPECT_EQ(pages[0].samples, stays ? 1 : 3);
        EXPECT_TRUE(showsSame(pages[0].image, blackAndWhitePicture(), stays ? 0 : 3));
    }
}

TEST_F(TiffProcessing, BilevelPagesAreStampedAsIfTheirPixelsWereBytes)
{
    // Only pages of strips that are stored upright keep their bits; a mirrored page becomes bytes.
    const QString source = path(u"page.tif"_s);
    constexpr int mirrored = 2;
    const auto stamped = [&](TiffLayout layout) {
        layout.bits = 1;
        const QImage page = blackAndWhitePicture(123, 91);
        TiffBuilder(source).page(page, layout).page(page, layout);
        return readTiff(process(source));
    };
    const Rows<const char*, MarginAnchor, double, int, int, bool, bool, bool> cases = {
        {"at an edge", MarginAnchor::BottomMiddle, 0, 20, 0, false, false, false},
        {"facing pages", MarginAnchor::BottomLeft, 0, 12, 5, false, true, false},
        {"turned", MarginAnchor::BottomRight, 33, 20, 0, false, false, false},
        {"with a rim and lines", MarginAnchor::MiddleLeft, -90, 24, 0, false, false, true},
        {"white", MarginAnchor::TopLeft, 0, 30, 0, true, false, false},
        {"across the edges", MarginAnchor::TopRight, 10, 40, -20, false, true, true},
        {"larger than the page", MarginAnchor::BottomMiddle, 5, 300, 0, false, false, false},
        {"beside the page", MarginAnchor::TopLeft, 0, 20, 500, false, false, false},
    };
    for (const auto& [what, anchor, angle, fontSize, margin, isWhite, isSymmetric, isOutlined] : cases) {
        number.stamps.clear();
        addStamp(isWhite ? Qt::white : Qt::black);
        text()->setMarginAnchor(anchor);
        text()->setIsSymmetry(isSymmetric);
        text()->textRotation = angle;
        text()->font.fontSize = fontSize;
        text()->outlineWidth = isOutlined ? 20 : 0;
        text()->isUnderline = isOutlined;
        text()->underlineStyle = UnderlineStyle::Double;
        number.setMarginLeft(margin);
        number.setMarginTop(margin);
        const auto expected = stamped({.photometric = 1, .orientation = mirrored});
        ASSERT_EQ(expected.size(), 2U);
        const bool isMarked = margin < 500;
        EXPECT_EQ(expected[0].image != blackAndWhitePicture(123, 91), isMarked) << what;
        for (const int photometric : {0, 1}) {
            for (const int fillOrder : {1, 2}) {
                for (const int compression : {1, 4, 5}) {
                    SCOPED_TRACE(testing::Message()
                                 << what << ", as " << photometric << ' ' << fillOrder << ' ' << compression);
                    const auto pages = stamped({.photometric = photometric,
                                                .compression = compression,
                                                .xResolution = 204,
                                                .yResolution = 98,
                                                .fillOrder = fillOrder});
                    ASSERT_EQ(pages.size(), 2U);
                    for (std::size_t i = 0; i < 2; ++i) {
                        EXPECT_EQ(pages[i].image, expected[i].image);
                        EXPECT_EQ(pages[i].photometric, photometric);
                        EXPECT_EQ(pages[i].bits, 1);
                    }
                }
            }
        }
    }
}

TEST_F(TiffProcessing, GreyPagesTakeColourOnlyWithColouredStamps)
{
    const QString source = path(u"grey.tif"_s);
    TiffBuilder(source).page(greyPicture(), {.photometric = 1, .compression = 8});
    addStamp(Qt::black);
    text()->textOpacity = 40;
    EXPECT_EQ(readTiff(process(source)).at(0).samples, 1);
    text()->font.fontColor = Qt::blue;
    const auto pages = readTiff(process(source));
    EXPECT_EQ(pages.at(0).samples, 3);
    EXPECT_EQ(pages.at(0).compression, 8);
    EXPECT_TRUE(showsSame(pages[0].image, greyPicture(), 3));
}

TEST_F(TiffProcessing, InPlaceKeepsABackupAndAFailureHarmsNothing)
{
    addStamp();
    const QString source = shades(2);
    const QByteArray before = readFile(source);
    const QByteArray cutOff = before.chopped(40);
    scratch.write(u"in/shades.tif"_s, cutOff);
    EXPECT_EQ(stamp(source, source, 5).status, FileStatus::Failed);
    EXPECT_EQ(readFile(source), cutOff);
    EXPECT_EQ(stamp(scratch.path(u"gone.tif"_s), source, 5).status, FileStatus::Failed);
    EXPECT_FALSE(problem().isEmpty());
    EXPECT_EQ(readFile(source), cutOff);

    scratch.write(u"in/shades.tif"_s, before);
    number.setIsBackupFile(true);
    ASSERT_EQ(stamp(source, source, 5).status, FileStatus::Created);
    EXPECT_EQ(readFile(source + u".bak"_s), before);
    const auto pages = readTiff(source);
    ASSERT_EQ(pages.size(), 2U);
    EXPECT_TRUE(hasStamp(pages[1].image));
}

TEST_F(TiffProcessing, StopsAfterThePageInWork)
{
    addStamp();
    const QString source = shades(6);
    const QString target = scratch.path(u"part.tif"_s);
    int done = 0;
    const JobConfiguration job = number.configuration();
    JobRun run(job, [&] {
        if (++done == 2) run.cancelUpdate();
    });
    const FileOutcome part =
        makeDocumentProcessors(job)->processTIFF(asPath(source), asPath(target), run, 5).commit();
    EXPECT_EQ(part.status, FileStatus::Created);
    EXPECT_EQ(part.pages, 2);
    EXPECT_EQ(part.numbers, (NumbersUsed{1, 2}));
    EXPECT_EQ(readTiff(target).size(), 2U);
}

TEST_F(TiffProcessing, SymmetricStampsChangeSidesOnStampedPages)
{
    addStamp();
    text()->setMarginAnchor(MarginAnchor::BottomLeft);
    text()->setIsSymmetry(true);
    number.setPageRange(PageRange::OddPages);
    const auto pages = readTiff(process(shades(5)));
    ASSERT_EQ(pages.size(), 5U);
    const auto isLeft = [](const TiffPage& page) {
        for (int y = stampTop; y < 88; ++y)
            for (int x = 0; x < 32; ++x)
                if (page.image.pixelColor(x, y).red() < 100) return true;
        return false;
    };
    EXPECT_TRUE(isLeft(pages[0]));
    EXPECT_FALSE(isLeft(pages[2]));
    EXPECT_TRUE(isLeft(pages[4]));
}

} // namespace
} // namespace quillfern
