// The options of a job on pages of pixels, alone and together; read back with libtiff.

#include "batch/RasterProcessing.h"
#include "stamps/ImageStamp.h"

namespace quillfern {
namespace {

class RasterOptions : public RasterProcessing
{
  protected:
    /// A black square of so many units, which can be measured in pixels.
    void addSquare(int side, MarginAnchor anchor)
    {
        auto stamp = std::make_shared<ImageStamp>();
        stamp->loadPicture(asPath(scratch.writePicture(u"black.png"_s, {4, 4}, Qt::black)));
        stamp->stampImageWidth = stamp->stampImageHeight = side;
        stamp->setMarginAnchor(anchor);
        number.stamps.push_back(stamp);
    }

    /// The rectangle around what is dark.
    static QRect marks(const QImage& image)
    {
        QRect rect;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (qGray(image.pixel(x, y)) < 128) rect |= QRect(x, y, 1, 1);
        return rect;
    }

    static void expectRect(const QRect& actual, const QRect& expected)
    {
        EXPECT_NEAR(actual.left(), expected.left(), 1);
        EXPECT_NEAR(actual.top(), expected.top(), 1);
        EXPECT_NEAR(actual.width(), expected.width(), 1);
        EXPECT_NEAR(actual.height(), expected.height(), 1);
    }

    static QImage paper(int width, int height)
    {
        QImage image(width, height, QImage::Format_RGBA8888);
        image.fill(Qt::white);
        return image;
    }
};

TEST_F(RasterOptions, WorkTogether)
{
    constexpr int count = 7;
    const QString fax = path(u"fax.tif"_s);
    const QString colour = path(u"colour.tif"_s);
    const TiffLayout dots{.xResolution = 144, .yResolution = 144};
    TiffLayout bits = dots;
    bits.photometric = 0;
    bits.bits = 1;
    bits.compression = 4;
    {
        TiffBuilder faxPages(fax);
        TiffBuilder colourPages(colour);
        for (int i = 1; i <= count; ++i) {
            QImage page = paper(200, 120);
            for (int x = 0; x < 8 * i; ++x) // what tells pages apart
                page.setPixelColor(x, 0, Qt::black);
            faxPages.page(page, bits);
            colourPages.page(page, dots);
        }
    }
    addSquare(20, MarginAnchor::BottomRight);
    number.setMarginRight(10);
    number.setStartNumber(10);
    number.setNumberSteps(5);
    for (const char* pageList : {"", "2,4-5,7-"})
        for (const PageRange parity : {PageRange::AllPages, PageRange::OddPages, PageRange::EvenPages})
            for (const bool keeps : {false, true})
                for (const bool realSize : {false, true})
                    for (const QString& source : {fax, colour}) {
                        SCOPED_TRACE(testing::Message()
                                     << '"' << pageList << "\", parity " << qToUnderlying(parity)
                                     << ", keeps " << keeps << ", real size " << realSize << ", "
                                     << source.toStdString());
                        number.setPageRange(parity);
                        // What is of documents has no effect here.
                        number.setOptions({.pageList = PageList::parse(QString::fromLatin1(pageList)),
                                           .keepOtherPages = keeps,
                                           .realSize = realSize,
                                           .visiblePage = true});
                        std::vector<int> expected;
                        for (int i = 1; i <= count; ++i)
                            if (*pageList == 0 || (i != 1 && i != 3 && i != 6)) expected.push_back(i);
                        const auto pages = readTiff(process(source));
                        ASSERT_EQ(pages.size(), expected.size());
                        int stamped = 0;
                        for (std::size_t k = 0; k < pages.size(); ++k) {
                            const int i = expected[k];
                            SCOPED_TRACE(i);
                            const QImage& page = pages[k].image;
                            EXPECT_LT(qGray(page.pixel(8 * i - 1, 0)), 128);
                            EXPECT_GT(qGray(page.pixel(8 * i, 0)), 128);
                            EXPECT_FLOAT_EQ(pages[k].xResolution, 144);
                            const bool hasParity = parity == PageRange::AllPages ||
                                                   (i % 2 == 1) == (parity == PageRange::OddPages);
                            const QRect square = marks(page.copy(0, 1, 200, 119)).translated(0, 1);
                            EXPECT_EQ(!square.isEmpty(), hasParity);
                            if (!hasParity) continue;
                            ++stamped;
                            // Twice as many pixels as points.
                            expectRect(square, realSize ? QRect(140, 80, 40, 40) : QRect(170, 100, 20, 20));
                        }
                        EXPECT_EQ(nextNumber, 10 + 5 * stamped);
                    }
}

TEST_F(RasterOptions, RealSizeGoesByEachPagesResolution)
{
    number.setMarginLeft(10);
    number.setMarginTop(5);
    addSquare(20, MarginAnchor::TopLeft);
    number.setOptions({.realSize = true});
    const QString source = path(u"mixed.tif"_s);
    TiffBuilder(source)
        .page(paper(300, 300), {.xResolution = 144, .yResolution = 72})
        .page(paper(300, 300), {.xResolution = 216, .yResolution = 216})
        .page(paper(300, 300), {})
        .page(paper(300, 300), {.orientation = 6, .xResolution = 144, .yResolution = 72})
        .page(paper(300, 300), {.xResolution = 50, .yResolution = 50, .resolutionUnit = 3});
    const Rows<QRect, float, float> expected = {
        {{20, 5, 40, 20}, 144, 72},  {{30, 15, 60, 60}, 216, 216}, {{10, 5, 20, 20}, 72, 72},
        {{10, 10, 20, 40}, 72, 144}, {{18, 9, 35, 35}, 127, 127},
    };
    const auto pages = readTiff(process(source));
    ASSERT_EQ(pages.size(), 5U);
    for (std::size_t i = 0; i < 5; ++i) {
        SCOPED_TRACE(i + 1);
        const auto& [square, x, y] = expected[i];
        expectRect(marks(pages[i].image), square);
        EXPECT_NEAR(pages[i].xResolution, x, 0.01) << "each page keeps its own";
        EXPECT_NEAR(pages[i].yResolution, y, 0.01);
    }
}

TEST_F(RasterOptions, RealSizeOnPicturesOfOtherFormats)
{
    addSquare(20, MarginAnchor::BottomRight);
    number.setOptions({.realSize = true});
    for (const char* format : {"png", "jpg", "bmp"})
        for (const int scale : {1, 2}) {
            SCOPED_TRACE(testing::Message() << format << ", " << scale);
            const QString source = path(u"picture."_s + QLatin1String(format));
            QImage image = paper(300, 200).convertToFormat(QImage::Format_RGB32);
            image.setDotsPerMeterX(static_cast<int>(std::lround(scale * 72 / 0.0254)));
            image.setDotsPerMeterY(image.dotsPerMeterX());
            ASSERT_TRUE(image.save(source, format, 100));
            const auto pages = readTiff(process(source));
            ASSERT_EQ(pages.size(), 1U);
            const int side = 20 * scale;
            expectRect(marks(pages[0].image), {300 - side, 200 - side, side, side});
            EXPECT_NEAR(pages[0].xResolution, 72 * scale, 0.2);
        }
}

} // namespace
} // namespace quillfern
