// Pages, numbers, files and compression codes in processTIFF(); the output is read back with libtiff.

#include "batch/RasterProcessing.h"
#include "platform/raster/PictureBytes.h"
#include "stamps/ImageStamp.h"

#include <QFileInfo>

namespace quillfern {
namespace {

class TiffProcessing : public RasterProcessing
{
  protected:
    /// A file whose page i is a shade of its own, so that pages can be told apart.
    QString shades(int count, const TiffLayout& layout = {.photometric = 1, .compression = 5})
    {
        const QString source = path(QStringLiteral("shades.tif"));
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
    struct Case
    {
        int start;
        int end;
        PageRange range;
        std::vector<int> pages;
        std::vector<bool> stamped;
        int nextNumber;
    };
    const std::vector<Case> cases = {
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
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.start << " to " << c.end << ", " << qToUnderlying(c.range));
        number.setStartPage(c.start);
        number.setEndPage(c.end);
        number.setPageRange(c.range);
        const auto pages = readTiff(process(source));
        ASSERT_EQ(pages.size(), c.pages.size());
        for (std::size_t i = 0; i < pages.size(); ++i) {
            EXPECT_NEAR(shadeOf(pages[i]), 255 - c.pages[i] * 3, 1);
            EXPECT_EQ(hasStamp(pages[i].image), c.stamped[i]);
        }
        EXPECT_EQ(nextNumber, c.nextNumber);
    }
}

TEST_F(TiffProcessing, RangeWithoutPagesWritesNothing)
{
    addStamp();
    number.setStartPage(7);
    const QString source = shades(6);
    process(source, false);
    EXPECT_TRUE(problem().contains(QStringLiteral("page range"))) << problem().toStdString();
    number.setStartPage(3);
    number.setEndPage(2);
    process(source, false);
}

TEST_F(TiffProcessing, TotalIsTheFilesOwnWhenNoneIsGiven)
{
    addStamp();
    text()->number.numberFormat = QStringLiteral("{0}{1}");
    const QString source = shades(3);
    const auto own = readTiff(process(source));
    text()->number.numberFormat = QStringLiteral("{0}3");
    const auto written = readTiff(process(source));
    ASSERT_EQ(own.size(), 3U);
    EXPECT_EQ(own[0].image, written[0].image);
}

TEST_F(TiffProcessing, EveryPageTakesTheFirstOnesPhysicalSize)
{
    const QString source = path(QStringLiteral("mixed.tif"));
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
    const struct
    {
        TiffLayout layout;
        double x;
        double y;
    } cases[] = {
        {{.photometric = 0, .bits = 1, .compression = 3, .xResolution = 204, .yResolution = 98}, 204, 98},
        {{.compression = 5, .xResolution = 100, .yResolution = 50, .resolutionUnit = 3}, 254, 127},
        {{.compression = 5, .xResolution = 2, .yResolution = 1, .resolutionUnit = 1}, 72, 36},
        {{.compression = 5}, 72, 72},
        {{.compression = 5, .orientation = 6, .xResolution = 300, .yResolution = 150}, 150, 300},
    };
    addStamp();
    for (const auto& c : cases) {
        const QString source = path(QStringLiteral("page.tif"));
        TiffBuilder(source).page(blackAndWhitePicture(), c.layout);
        const auto pages = readTiff(process(source));
        ASSERT_EQ(pages.size(), 1U);
        EXPECT_NEAR(pages[0].xResolution, c.x, 0.001);
        EXPECT_NEAR(pages[0].yResolution, c.y, 0.001);
    }
}

TEST_F(TiffProcessing, CompressionCodes)
{
    const QString rgb = path(QStringLiteral("rgb.tif"));
    TiffBuilder(rgb).page(colourPicture(), {.compression = 5});
    const QString alpha = path(QStringLiteral("alpha.tif"));
    TiffBuilder(alpha).page(colourPicture(), {.compression = 5, .extraSample = 2});
    const QString bilevel = path(QStringLiteral("bilevel.tif"));
    TiffBuilder(bilevel).page(blackAndWhitePicture(), {.photometric = 0, .bits = 1, .compression = 4});
    const struct
    {
        QString source;
        int asked;
        int written;
    } cases[] = {
        {rgb, 1, 1},
        {rgb, 5, 5},
        {rgb, 7, 7},
        {rgb, 8, 8},
        {rgb, 32946, 32946},
        {rgb, 6, 7},
        {rgb, 32773, 32773},
        {rgb, 2, 5},
        {rgb, 3, 5},
        {rgb, 4, 5},
        {rgb, 34925, 5},
        {rgb, 0, 5},
        {rgb, -3, 5},
        {alpha, 7, 5},
        {alpha, 8, 8},
        {alpha, 4, 5},
        {bilevel, 7, 5},
        {bilevel, 8, 8},
        {bilevel, 1, 1},
        {bilevel, 2, 2},
        {bilevel, 3, 3},
        {bilevel, 4, 4},
        {bilevel, 32773, 32773},
    };
    addStamp();
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.source.toStdString() << " as " << c.asked);
        const QString target = scratch.path(QStringLiteral("copy.tif"));
        ASSERT_EQ(stamp(c.source, target, c.asked).status, FileStatus::Created);
        const auto pages = readTiff(target);
        ASSERT_EQ(pages.size(), 1U);
        EXPECT_EQ(pages[0].compression, c.written);
        EXPECT_TRUE(showsSame(pages[0].image, c.source == bilevel ? blackAndWhitePicture() : colourPicture(),
                              c.source == rgb ? 3 : 0));
    }
}

TEST_F(TiffProcessing, FaxPagesStayFaxPagesWhereTheStampsAllow)
{
    const QString source = path(QStringLiteral("fax.tif"));
    TiffBuilder(source).page(blackAndWhitePicture(), {.photometric = 0, .bits = 1, .compression = 4});
    const QString logo = scratch.path(QStringLiteral("logo.png"));
    ASSERT_TRUE(colourPicture(20, 20).save(logo));
    enum Kind { Black, White, Grey, Red, Translucent, OutlinedRed, Picture, Disabled };
    for (const Kind kind : {Black, White, Grey, Red, Translucent, OutlinedRed, Picture, Disabled}) {
        SCOPED_TRACE(kind);
        number.stamps.clear();
        addStamp(kind == White                     ? Qt::white
                 : kind == Grey                    ? Qt::gray
                 : kind == Red || kind == Disabled ? Qt::red
                                                   : Qt::black);
        if (kind == Translucent) text()->textOpacity = 50;
        if (kind == OutlinedRed) {
            text()->outlineWidth = 10;
            text()->outlineColor = Qt::red;
        }
        if (kind == Disabled) text()->setIsSelected(false);
        if (kind == Picture) {
            auto picture = std::make_shared<ImageStamp>();
            picture->loadPicture(asPath(logo));
            picture->setMarginAnchor(MarginAnchor::BottomRight);
            number.stamps = {picture};
        }
        const auto pages = readTiff(process(source));
        ASSERT_EQ(pages.size(), 1U);
        const bool stays = kind == Black || kind == White || kind == Disabled;
        EXPECT_EQ(pages[0].compression, stays ? 4 : 5);
        EXPECT_EQ(pages[0].samples, stays ? 1 : 3);
        EXPECT_TRUE(showsSame(pages[0].image, blackAndWhitePicture(), stays ? 0 : 3));
    }
}

TEST_F(TiffProcessing, BilevelPagesAreStampedAsIfTheirPixelsWereBytes)
{
    // Only pages of strips that are stored upright keep their bits; a mirrored page becomes bytes.
    const QString name = QStringLiteral("page.tif");
    constexpr int mirrored = 2;
    const auto stamped = [&](TiffLayout layout) {
        layout.bits = 1;
        const QImage page = blackAndWhitePicture(123, 91);
        TiffBuilder(path(name)).page(page, layout).page(page, layout);
        return readTiff(process(path(name)));
    };
    const struct
    {
        const char* name;
        MarginAnchor anchor;
        double angle;
        int fontSize;
        int margin;
        bool isWhite;
        bool isSymmetric;
        bool isOutlined;
    } cases[] = {
        {"at an edge", MarginAnchor::BottomMiddle, 0, 20, 0, false, false, false},
        {"facing pages", MarginAnchor::BottomLeft, 0, 12, 5, false, true, false},
        {"turned", MarginAnchor::BottomRight, 33, 20, 0, false, false, false},
        {"with a rim and lines", MarginAnchor::MiddleLeft, -90, 24, 0, false, false, true},
        {"white", MarginAnchor::TopLeft, 0, 30, 0, true, false, false},
        {"across the edges", MarginAnchor::TopRight, 10, 40, -20, false, true, true},
        {"larger than the page", MarginAnchor::BottomMiddle, 5, 300, 0, false, false, false},
        {"beside the page", MarginAnchor::TopLeft, 0, 20, 500, false, false, false},
    };
    for (const auto& c : cases) {
        number.stamps.clear();
        addStamp(c.isWhite ? Qt::white : Qt::black);
        text()->setMarginAnchor(c.anchor);
        text()->setIsSymmetry(c.isSymmetric);
        text()->textRotation = c.angle;
        text()->font.fontSize = c.fontSize;
        text()->outlineWidth = c.isOutlined ? 20 : 0;
        text()->isUnderline = c.isOutlined;
        text()->underlineStyle = UnderlineStyle::Double;
        number.setMarginLeft(c.margin);
        number.setMarginTop(c.margin);
        const auto expected = stamped({.photometric = 1, .orientation = mirrored});
        ASSERT_EQ(expected.size(), 2U);
        const bool isMarked = c.margin < 500;
        EXPECT_EQ(expected[0].image != blackAndWhitePicture(123, 91), isMarked) << c.name;
        for (const int photometric : {0, 1}) {
            for (const int fillOrder : {1, 2}) {
                for (const int compression : {1, 4, 5}) {
                    SCOPED_TRACE(testing::Message() << c.name << ", as " << photometric << ' ' << fillOrder
                                                    << ' ' << compression);
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
    const QString source = path(QStringLiteral("grey.tif"));
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

TEST_F(TiffProcessing, InPlaceKeepsABackupWhenAsked)
{
    addStamp();
    const QString source = shades(2);
    const QByteArray before = readFile(source);
    number.setIsBackupFile(true);
    ASSERT_EQ(stamp(source, source, 5).status, FileStatus::Created);
    EXPECT_EQ(readFile(source + QStringLiteral(".bak")), before);
    const auto pages = readTiff(source);
    ASSERT_EQ(pages.size(), 2U);
    EXPECT_TRUE(hasStamp(pages[1].image));
}

TEST_F(TiffProcessing, InPlaceFailureHarmsNothing)
{
    addStamp();
    const QString source = shades(2);
    QByteArray bytes = readFile(source);
    bytes.truncate(bytes.size() - 40);
    scratch.write(QStringLiteral("in/shades.tif"), bytes);
    EXPECT_EQ(stamp(source, source, 5).status, FileStatus::Failed);
    EXPECT_EQ(readFile(source), bytes);
    EXPECT_EQ(stamp(scratch.path(QStringLiteral("gone.tif")), source, 5).status, FileStatus::Failed);
    EXPECT_FALSE(problem().isEmpty());
    EXPECT_EQ(readFile(source), bytes);
}

TEST_F(TiffProcessing, StopsAfterThePageInWork)
{
    addStamp();
    const QString source = shades(6);
    const QString target = scratch.path(QStringLiteral("part.tif"));
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

TEST_F(TiffProcessing, MarginsMoveTheStampByPixels)
{
    addStamp();
    text()->setMarginAnchor(MarginAnchor::TopLeft);
    number.setMarginLeft(30);
    number.setMarginTop(40);
    const auto pages = readTiff(process(shades(1)));
    QRect dark;
    for (int y = 0; y < 88; ++y)
        for (int x = 0; x < 64; ++x)
            if (pages.at(0).image.pixelColor(x, y).red() < 100) dark |= QRect(x, y, 1, 1);
    EXPECT_GE(dark.left(), 30);
    EXPECT_LT(dark.left(), 34);
    EXPECT_GE(dark.top(), 40);
    EXPECT_LT(dark.top(), 50);
}

} // namespace
} // namespace quillfern
