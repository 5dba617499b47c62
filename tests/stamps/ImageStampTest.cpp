#include "stamps/ImageStamp.h"

#include "platform/drawing/RasterCanvas.h"
#include "platform/drawing/TextShaper.h"
#include "support/Records.h"
#include "support/Tools.h"

#include <QPainter>

namespace quillfern {
namespace {

class ImageStampTest : public testing::Test
{
  protected:
    /// Left half red, right half blue; with alpha, the lower half is clear.
    QString picture(const char* name, bool hasAlpha = false, int width = 40, int height = 20) const
    {
        QImage image(width, height, hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                image.setPixelColor(x, y,
                                    hasAlpha && y >= height / 2 ? QColor(0, 255, 0, 0)
                                    : x < width / 2             ? Qt::red
                                                                : Qt::blue);
        const QString path = scratch.path(QString::fromLatin1(name));
        EXPECT_TRUE(image.save(path, nullptr, 100));
        return path;
    }

    QImage draw(ImageStamp& stamp, MarginAnchor anchor, bool highlight = false)
    {
        QImage page(200, 100, QImage::Format_RGB32);
        page.fill(Qt::white);
        QPainter painter(&page);
        drawing::RasterCanvas canvas(painter, shaper);
        const QRectF area(0, 0, 200, 100);
        stamp.draw(canvas, area, anchor, 1, 1, highlight);
        painter.end();
        return page;
    }

    bool drawsNothing(ImageStamp& stamp)
    {
        QImage blank(200, 100, QImage::Format_RGB32);
        blank.fill(Qt::white);
        return draw(stamp, MarginAnchor::TopLeft, true) == blank;
    }

    Scratch scratch;
    drawing::TextShaper shaper;
};

TEST_F(ImageStampTest, DrawsNothingWithoutPictureSizeOrOpacity)
{
    ImageStamp empty;
    EXPECT_TRUE(drawsNothing(empty));
    empty.stampImageWidth = empty.stampImageHeight = 30;
    EXPECT_TRUE(drawsNothing(empty));
    const QString path = picture("a.png");
    for (std::int64_t ImageStamp::*field :
         {&ImageStamp::stampImageWidth, &ImageStamp::stampImageHeight, &ImageStamp::stampImageOpacity}) {
        ImageStamp stamp;
        stamp.loadPicture(asPath(path));
        EXPECT_FALSE(drawsNothing(stamp));
        stamp.*field = 0;
        EXPECT_TRUE(drawsNothing(stamp));
    }
}

TEST_F(ImageStampTest, StandsAtItsAnchorTurnedAndScaled)
{
    ImageStamp stamp;
    stamp.loadPicture(asPath(picture("a.png")));
    EXPECT_EQ(stamp.stampImageWidth, 40);
    EXPECT_EQ(stamp.stampImageHeight, 20);
    QImage page = draw(stamp, MarginAnchor::BottomRight);
    EXPECT_EQ(page.pixelColor(165, 85), QColor(Qt::red));
    EXPECT_EQ(page.pixelColor(195, 95), QColor(Qt::blue));
    EXPECT_EQ(page.pixelColor(155, 90), QColor(Qt::white));
    EXPECT_EQ(page.pixelColor(180, 75), QColor(Qt::white));

    stamp.stampImageWidth = 100;
    stamp.stampImageHeight = 50;
    page = draw(stamp, MarginAnchor::TopLeft);
    EXPECT_EQ(page.pixelColor(5, 45), QColor(Qt::red));
    EXPECT_EQ(page.pixelColor(95, 5), QColor(Qt::blue));

    stamp.stampImageWidth = 40;
    stamp.stampImageHeight = 20;
    stamp.stampImageRotation = 90; // counter-clockwise: the right half goes up
    page = draw(stamp, MarginAnchor::MiddleMiddle);
    EXPECT_EQ(page.pixelColor(100, 35), QColor(Qt::blue));
    EXPECT_EQ(page.pixelColor(100, 65), QColor(Qt::red));
    EXPECT_EQ(page.pixelColor(115, 50), QColor(Qt::white));
}

TEST_F(ImageStampTest, OpacityAlphaAndHighlightMix)
{
    ImageStamp stamp;
    stamp.loadPicture(asPath(picture("a.png", true)));
    QImage page = draw(stamp, MarginAnchor::TopLeft);
    EXPECT_EQ(page.pixelColor(5, 5), QColor(Qt::red));
    EXPECT_EQ(page.pixelColor(5, 15), QColor(Qt::white));
    stamp.stampImageOpacity = 50;
    page = draw(stamp, MarginAnchor::TopLeft);
    EXPECT_NEAR(page.pixelColor(30, 5).red(), 128, 2);
    EXPECT_NEAR(page.pixelColor(30, 5).blue(), 255, 2);
    page = draw(stamp, MarginAnchor::TopLeft, true);
    EXPECT_NEAR(page.pixelColor(5, 15).green(), 128, 2); // the highlight covers the transparent half, too
    EXPECT_NEAR(page.pixelColor(5, 15).red(), 255, 2);
}

TEST_F(ImageStampTest, SmallDrawingsOfLargePicturesAreAveraged)
{
    QImage stripes(1600, 1600, QImage::Format_RGB32);
    for (int y = 0; y < 1600; ++y)
        for (int x = 0; x < 1600; ++x)
            stripes.setPixelColor(x, y, x % 16 < 8 ? Qt::black : Qt::white);
    const QString path = scratch.path(u"stripes.png"_s);
    ASSERT_TRUE(stripes.save(path));
    ImageStamp stamp;
    stamp.loadPicture(asPath(path));
    stamp.stampImageWidth = stamp.stampImageHeight = 50; // two stripes of the picture fall on each pixel
    const QImage page = draw(stamp, MarginAnchor::TopLeft);
    for (int x = 5; x < 45; ++x)
        EXPECT_NEAR(page.pixelColor(x, 25).red(), 128, 12);
}

TEST_F(ImageStampTest, PicturesOfAllKindsComeBackFromTheirRecord)
{
    for (const char* name : {"a.png", "a.bmp", "a.jpg"}) {
        SCOPED_TRACE(name);
        ImageStamp stamp;
        stamp.loadPicture(asPath(picture(name)));
        // The bytes are a TIFF that other programs can read, whatever the format of the file was.
        const QString tiff = scratch.write(u"kept.tif"_s, *stamp.stampImage());
        const ToolResult info = runTool("tiffinfo -D", {tiff});
        EXPECT_EQ(info.exitCode, 0);
        EXPECT_TRUE(info.out.contains("Image Width: 40 Image Length: 20")) << info.out.toStdString();
        EXPECT_TRUE(info.err.isEmpty()) << info.err.toStdString();

        ImageStamp copy;
        const auto record = stamp.getData();
        ASSERT_TRUE(record);
        copy.setData(&*record);
        ASSERT_TRUE(copy.cacheImage());
        EXPECT_EQ(copy.cacheImage()->image(), stamp.cacheImage()->image());
        EXPECT_EQ(draw(copy, MarginAnchor::TopLeft), draw(stamp, MarginAnchor::TopLeft));
        const QColor red = copy.cacheImage()->image().pixelColor(2, 2);
        EXPECT_GT(red.red(), 245);
        EXPECT_LT(red.green(), 12);
    }
}

TEST_F(ImageStampTest, AJpegIsKeptAsItIs)
{
    const QString path = picture("photo.jpg", false, 400, 300);
    ImageStamp stamp;
    stamp.loadPicture(asPath(path));
    EXPECT_EQ(stamp.cacheImage()->jpeg(), readFile(path));
    EXPECT_LT(stamp.stampImage()->size(), readFile(path).size() + 400);
}

TEST_F(ImageStampTest, RecordKeysStandInOrderAndEndAtTheFirstAbsentValue)
{
    const QString first = u"stampImageRotation stampImageOpacity stampImageHeight stampImageWidth"_s;
    const auto keys = [](const ImageStamp& stamp) { return keysOf(*stamp.getData()).join(u' '); };
    ImageStamp stamp;
    EXPECT_EQ(keys(stamp), first +
                               u" stampImage stampImagePath isSymmetry isDrawUnderPDFContent marginAnchor "
                               "label isSelected"_s);
    stamp.stampImagePath.reset();
    EXPECT_EQ(keys(stamp), first + u" stampImage"_s);
    stamp.setStampImage(std::nullopt);
    EXPECT_EQ(keys(stamp), first);
}

TEST_F(ImageStampTest, BytesThatAreNoPictureLoadAndDrawNothing)
{
    ImageStamp good;
    good.loadPicture(asPath(picture("a.png")));
    QByteArray damaged = *good.stampImage();
    for (qsizetype i = 16; i < damaged.size() / 2; ++i)
        damaged[i] = '\x55';
    for (const QByteArray& bytes : {QByteArray("no picture"), QByteArray("II*\0\x08\0\0\0", 8), damaged,
                                    good.stampImage()->left(good.stampImage()->size() - 60)}) {
        store::Record record = *good.getData();
        record.set(u"stampImage"_s, bytes);
        record.set(u"label"_s, u"seal"_s);
        ImageStamp stamp;
        stamp.loadPicture(asPath(picture("a.png")));
        stamp.setData(&record);
        EXPECT_FALSE(stamp.cacheImage());
        EXPECT_EQ(stamp.stampImage(), bytes);
        EXPECT_EQ(stamp.label(), u"seal"_s);
        EXPECT_TRUE(drawsNothing(stamp));
    }
    ImageStamp forgetful;
    forgetful.loadPicture(asPath(picture("a.png")));
    forgetful.setData(nullptr);
    EXPECT_FALSE(forgetful.cacheImage());
    EXPECT_EQ(forgetful.stampImageWidth, 40);
}

} // namespace
} // namespace quillfern
