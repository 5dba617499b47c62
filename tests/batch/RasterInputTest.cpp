// Every kind of raster page is stamped, and the output is read back with libtiff.

#include "batch/RasterProcessing.h"
#include "support/ImageBytes.h"

#include <QtEndian>

namespace quillfern {
namespace {

enum class Source { Colour, Grey, BlackAndWhite };

struct Kind
{
    const char* name;
    Source source;
    TiffLayout layout;
    const char* mode = "w";
    // The expected output.
    int compression;
    int bits = 8;
    int samples = 3;
    int tolerance = 3;
};

class RasterInput : public RasterProcessing, public testing::WithParamInterface<Kind>
{
};

TEST_P(RasterInput, ComesOutAsItWasWithAStamp)
{
    const Kind& kind = GetParam();
    const QImage picture = kind.source == Source::Colour ? colourPicture()
                           : kind.source == Source::Grey ? greyPicture()
                                                         : blackAndWhitePicture();
    const QString source = path(QStringLiteral("page.tif"));
    TiffBuilder(source, kind.mode).page(picture, kind.layout);
    addStamp();
    const auto pages = readTiff(process(source));
    ASSERT_EQ(pages.size(), 1U);
    EXPECT_TRUE(showsSame(pages[0].image, picture, kind.tolerance));
    EXPECT_TRUE(hasStamp(pages[0].image));
    EXPECT_EQ(pages[0].compression, kind.compression);
    EXPECT_EQ(pages[0].bits, kind.bits);
    EXPECT_EQ(pages[0].samples, kind.samples);
    const bool differences = kind.bits == 8 && (kind.compression == 5 || kind.compression == 8);
    EXPECT_EQ(pages[0].predictor, differences ? 2 : 1);
    if (kind.bits == 1) {
        EXPECT_EQ(pages[0].photometric, kind.layout.photometric);
    }
}

constexpr auto colour = Source::Colour;
constexpr auto grey = Source::Grey;
constexpr auto bilevel = Source::BlackAndWhite;

const std::vector<Kind> kinds = {
    {"Group3WhiteIsZero", bilevel, {.photometric = 0, .bits = 1, .compression = 3}, "w", 3, 1, 1, 0},
    {"Group3BlackIsZero", bilevel, {.photometric = 1, .bits = 1, .compression = 3}, "w", 3, 1, 1, 0},
    {"Group4WhiteIsZero", bilevel, {.photometric = 0, .bits = 1, .compression = 4}, "w", 4, 1, 1, 0},
    {"Group4BlackIsZero", bilevel, {.photometric = 1, .bits = 1, .compression = 4}, "w", 4, 1, 1, 0},
    {"FaxRunLength", bilevel, {.photometric = 0, .bits = 1, .compression = 2}, "w", 2, 1, 1, 0},
    {"BilevelLzw", bilevel, {.photometric = 1, .bits = 1, .compression = 5}, "w", 5, 1, 1, 0},
    {"Grey4", bilevel, {.photometric = 1, .bits = 4, .compression = 5}, "w", 5, 8, 1},
    {"Grey8", grey, {.photometric = 1, .compression = 8}, "w", 8, 8, 1},
    {"Grey8WhiteIsZero", grey, {.photometric = 0, .compression = 32773}, "w", 32773, 8, 1},
    {"Grey16", grey, {.photometric = 1, .bits = 16, .compression = 5}, "w", 5, 8, 1},
    {"Grey16OtherByteOrder", grey, {.photometric = 1, .bits = 16, .compression = 1}, "wb", 1, 8, 1},
    {"Grey8Signed", grey, {.photometric = 1, .compression = 5, .isSigned = true}, "w", 5, 8, 1},
    {"Grey16Signed", grey, {.photometric = 1, .bits = 16, .compression = 5, .isSigned = true}, "w", 5, 8, 1},
    {"Rgb32Signed", colour, {.bits = 32, .compression = 5, .isSigned = true}, "w", 5},
    {"Palette8", colour, {.photometric = 3, .compression = 5}, "w", 5},
    {"Palette4", colour, {.photometric = 3, .bits = 4, .compression = 1}, "w", 1},
    {"Rgb8", colour, {.compression = 5}, "w", 5},
    {"Grey2Bits", grey, {.photometric = 1, .bits = 2, .compression = 5}, "w", 5, 8, 1, 86},
    {"Grey3Bits", grey, {.photometric = 1, .bits = 3, .compression = 5}, "w", 5, 8, 1, 38},
    {"Grey5Bits", grey, {.photometric = 1, .bits = 5, .compression = 5}, "w", 5, 8, 1, 10},
    {"Grey6Bits", grey, {.photometric = 1, .bits = 6, .compression = 5}, "w", 5, 8, 1, 7},
    {"Grey7Bits", grey, {.photometric = 1, .bits = 7, .compression = 5}, "w", 5, 8, 1, 4},
    {"Grey10Bits", grey, {.photometric = 1, .bits = 10, .compression = 5}, "w", 5, 8, 1, 3},
    {"Grey12Bits", grey, {.photometric = 1, .bits = 12, .compression = 5}, "w", 5, 8, 1, 3},
    {"Grey14Bits", grey, {.photometric = 1, .bits = 14, .compression = 5}, "w", 5, 8, 1, 3},
    {"Grey24Bits", grey, {.photometric = 1, .bits = 24, .compression = 5}, "w", 5, 8, 1, 3},
    {"Grey32Bits", grey, {.photometric = 1, .bits = 32, .compression = 5}, "w", 5, 8, 1, 3},
    {"Rgb4Bits", colour, {.bits = 4, .compression = 1}, "w", 1, 8, 3, 20},
    {"Rgb10Bits", colour, {.bits = 10, .compression = 1}, "w", 1, 8, 3, 3},
    {"Rgb12Bits", colour, {.bits = 12, .compression = 1}, "w", 1, 8, 3, 3},
    {"Rgb24Bits", colour, {.bits = 24, .compression = 1}, "w", 1, 8, 3, 3},
    {"Rgb32Bits", colour, {.bits = 32, .compression = 1}, "w", 1, 8, 3, 3},
    {"Rgb12BitsOtherByteOrder", colour, {.bits = 12, .compression = 1}, "wb", 1},
    {"Rgb32BitsOtherByteOrder", colour, {.bits = 32, .compression = 1}, "wb", 1},
    {"Rgb24BitsOtherByteOrder", colour, {.bits = 24, .compression = 1}, "wb", 1},
    {"Palette3Bits", colour, {.photometric = 3, .bits = 3, .compression = 1}, "w", 1},
    {"PlanarRgb10Bits", colour, {.bits = 10, .compression = 5, .planar = true}, "w", 5},
    {"TiledCmyk12Bits", colour, {.photometric = 5, .bits = 12, .compression = 5, .tiled = true}, "w", 5},
    {"Float16", grey, {.photometric = 1, .bits = 16, .compression = 5, .floatRange = 1}, "w", 5, 8, 1},
    {"Float32", grey, {.photometric = 1, .bits = 32, .compression = 5, .floatRange = 1}, "w", 5, 8, 1},
    {"Float64", grey, {.photometric = 1, .bits = 64, .compression = 5, .floatRange = 1}, "w", 5, 8, 1},
    {"FloatRange", colour, {.bits = 32, .compression = 8, .floatRange = 1000, .predictor = 3}, "w", 8},
    {"FloatTiledPlanar",
     colour,
     {.bits = 32, .compression = 8, .planar = true, .tiled = true, .floatRange = 7, .predictor = 3},
     "w",
     8},
    {"FloatOtherByteOrder", colour, {.bits = 32, .compression = 1, .floatRange = 3}, "wb", 1},
    {"Rgb16", colour, {.bits = 16, .compression = 8}, "w", 8},
    {"Cmyk", colour, {.photometric = 5, .compression = 5}, "w", 5},
    {"Cmyk16", colour, {.photometric = 5, .bits = 16, .compression = 5}, "w", 5},
    {"YCbCrJpeg", colour, {.photometric = 6, .compression = 7}, "w", 7, 8, 3, 60},
    {"Planar", colour, {.compression = 5, .planar = true}, "w", 5},
    {"Planar16", colour, {.bits = 16, .compression = 5, .planar = true}, "w", 5},
    {"Tiled", colour, {.compression = 5, .tiled = true}, "w", 5},
    {"TiledPlanar", colour, {.compression = 8, .planar = true, .tiled = true}, "w", 8},
    {"TiledFax", bilevel, {.photometric = 0, .bits = 1, .compression = 4, .tiled = true}, "w", 4, 1, 1, 0},
    {"BigTiff", colour, {.compression = 5}, "w8", 5},
    {"Orientation2", colour, {.compression = 5, .orientation = 2}, "w", 5},
    {"Orientation3", colour, {.compression = 5, .orientation = 3}, "w", 5},
    {"Orientation4", colour, {.compression = 5, .orientation = 4}, "w", 5},
    {"Orientation5", colour, {.compression = 5, .orientation = 5}, "w", 5},
    {"Orientation6", colour, {.compression = 5, .orientation = 6}, "w", 5},
    {"Orientation7", colour, {.compression = 5, .orientation = 7}, "w", 5},
    {"Orientation8", colour, {.compression = 5, .orientation = 8}, "w", 5},
    {"Orientation6Fax",
     bilevel,
     {.photometric = 0, .bits = 1, .compression = 4, .orientation = 6},
     "w",
     4,
     1,
     1,
     0},
};

INSTANTIATE_TEST_SUITE_P(, RasterInput, testing::ValuesIn(kinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

class RasterFile : public RasterProcessing
{
  protected:
    /// A GIF of frames of one colour each.
    static QByteArray gif(int width, int height, const QList<QRgb>& frames)
    {
        std::vector<GifFrame> made;
        for (qsizetype i = 0; i < frames.size(); ++i)
            made.push_back(
                {QRect(0, 0, width, height), QByteArray(qsizetype{width} * height, static_cast<char>(i))});
        return gifFile({width, height}, frames, made);
    }

    /// A JPEG with an EXIF segment that says how to turn it.
    static QByteArray withOrientation(const QByteArray& jpeg, unsigned orientation)
    {
        const QByteArray exif = QByteArray("Exif\0\0", 6) + exifBlock({{0x112, 3, {}, orientation}});
        return withSegments(jpeg, jpegSegment(0xE1, exif));
    }
};

TEST_F(RasterFile, OtherFormatsBecomeTiffs)
{
    addStamp();
    const QImage opaque = colourPicture().convertToFormat(QImage::Format_RGB888);
    const Rows<const char*, QByteArray, int> cases = {
        {"a.png", encodedImage(opaque, "png"), 3},
        {"a.bmp", encodedImage(opaque, "bmp"), 3},
        {"a.jpg", encodedImage(opaque, "jpg"), 120},
        {"jpeg called.png", encodedImage(opaque, "jpg"), 120},
        {"png called.tif", encodedImage(opaque, "png"), 3},
        {"a.gif", gif(120, 88, {qRgb(255, 0, 0)}), 3},
    };
    for (const auto& [name, bytes, tolerance] : cases) {
        SCOPED_TRACE(name);
        const auto pages = readTiff(process(write(QString::fromLatin1(name), bytes)));
        ASSERT_EQ(pages.size(), 1U);
        const bool isGif = QByteArray(name).endsWith("gif");
        QImage red(120, 88, QImage::Format_RGBA8888);
        red.fill(Qt::red);
        EXPECT_TRUE(showsSame(pages[0].image, isGif ? red : colourPicture(), tolerance));
        EXPECT_TRUE(hasStamp(pages[0].image));
        EXPECT_EQ(pages[0].compression, 1);
        EXPECT_EQ(pages[0].samples, 3);
    }
}

TEST_F(RasterFile, ExifOrientationIsApplied)
{
    const QImage upright = colourPicture();
    // Orientation 6: the stored rows are the columns of the picture, from the right.
    const QImage stored =
        upright.transformed(QTransform().rotate(-90)).convertToFormat(QImage::Format_RGB888);
    const auto pages =
        readTiff(process(write(QStringLiteral("a.jpg"), withOrientation(encodedImage(stored, "jpg"), 6))));
    ASSERT_EQ(pages.size(), 1U);
    EXPECT_TRUE(showsSame(pages[0].image, upright, 120));
}

TEST_F(RasterFile, OldStyleJpeg)
{
    addStamp();
    const QImage picture = colourPicture(112, 80).convertToFormat(QImage::Format_RGB888);
    const auto pages = readTiff(
        process(write(QStringLiteral("old.tif"), oldJpegTiff(encodedImage(picture, "jpg"), 112, 80))));
    ASSERT_EQ(pages.size(), 1U);
    EXPECT_EQ(pages[0].compression, 7);
    EXPECT_TRUE(showsSame(pages[0].image, colourPicture(112, 80), 90));
}

TEST_F(RasterFile, AlphaIsKept)
{
    QImage picture = colourPicture();
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 40; ++x)
            picture.setPixelColor(x, y, QColor(200, 100, 50, 4 * y));
    picture.setPixelColor(0, 0, QColor(0, 0, 0, 0));
    const QString associated = path(QStringLiteral("associated.tif"));
    TiffBuilder(associated).page(picture, {.compression = 5, .extraSample = 1});
    const QString straight = path(QStringLiteral("straight.tif"));
    TiffBuilder(straight).page(picture, {.bits = 16, .compression = 5, .extraSample = 2});
    const QString unstated = path(QStringLiteral("unstated.tif"));
    TiffBuilder(unstated).page(picture, {.compression = 5, .extraSample = 9});
    const QString planar = path(QStringLiteral("planar.tif"));
    TiffBuilder(planar).page(picture, {.compression = 5, .planar = true, .extraSample = 2});
    const QString png = write(QStringLiteral("a.png"), encodedImage(picture, "png"));
    const QString inks = path(QStringLiteral("inks.tif"));
    TiffBuilder(inks).page(picture, {.photometric = 5, .compression = 5, .extraSample = 2});
    addStamp();
    for (const QString& source : {associated, straight, unstated, planar, png, inks}) {
        SCOPED_TRACE(source.toStdString());
        const auto pages = readTiff(process(source));
        ASSERT_EQ(pages.size(), 1U);
        EXPECT_EQ(pages[0].samples, 4);
        EXPECT_EQ(pages[0].extraSample, 2);
        EXPECT_TRUE(hasStamp(pages[0].image));
        const bool isExact = source != associated && source != inks;
        // With associated alpha, colours of a low opacity are already rounded in the file, and inks are
        // rounded anyway; the opacity is exact.
        for (int y = isExact ? 1 : 16; y < stampTop; ++y) {
            const QColor pixel = pages[0].image.pixelColor(20, y);
            EXPECT_EQ(pixel.alpha(), 4 * y);
            EXPECT_NEAR(pixel.red(), 200, isExact ? 0 : 4);
            EXPECT_NEAR(pixel.green(), 100, isExact ? 0 : 4);
        }
    }
}

TEST_F(RasterFile, CutOffFilesFailAndLeaveNothing)
{
    addStamp();
    const QImage opaque = colourPicture().convertToFormat(QImage::Format_RGB888);
    const auto tiffOf = [&](const TiffLayout& layout, const QImage& picture) {
        const QString whole = path(QStringLiteral("whole.tif"));
        TiffBuilder(whole).page(picture, layout).page(picture, layout);
        return readFile(whole);
    };
    const Rows<const char*, QByteArray> cases = {
        {"lzw.tif", tiffOf({.compression = 5}, colourPicture())},
        {"plain.tif", tiffOf({.compression = 1}, colourPicture())},
        {"jpeg.tif", tiffOf({.photometric = 6, .compression = 7}, colourPicture())},
        {"g4.tif", tiffOf({.photometric = 0, .bits = 1, .compression = 4}, blackAndWhitePicture())},
        {"a.png", encodedImage(opaque, "png")},
        {"a.jpg", encodedImage(opaque, "jpg")},
        {"a.bmp", encodedImage(opaque, "bmp")},
        {"a.gif", gif(60, 40, {qRgb(255, 0, 0), qRgb(0, 255, 0)})},
    };
    for (const auto& [name, bytes] : cases) {
        for (const double part : {0.1, 0.5, 0.8, 0.98}) {
            SCOPED_TRACE(testing::Message() << name << " at " << part);
            const auto length = static_cast<qsizetype>(static_cast<double>(bytes.size()) * part);
            process(write(QString::fromLatin1(name), bytes.left(length)), false);
            EXPECT_FALSE(problem().isEmpty());
        }
    }
    EXPECT_TRUE(QDir(scratch.path(QStringLiteral("out"))).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

TEST_F(RasterFile, DamagedPixelsFail)
{
    addStamp();
    const QString source = path(QStringLiteral("lzw.tif"));
    TiffBuilder(source).page(colourPicture(), {.compression = 5});
    QByteArray bytes = readFile(source);
    for (qsizetype i = 100; i < 160; ++i)
        bytes[i] = static_cast<char>(i * 37);
    process(write(QStringLiteral("lzw.tif"), bytes), false);
    EXPECT_TRUE(problem().contains(QStringLiteral("damaged"))) << problem().toStdString();
}

TEST_F(RasterFile, HugeClaimsAreRefusedBeforeMemoryIsTaken)
{
    addStamp();
    const QString tiff = path(QStringLiteral("huge.tif"));
    TiffBuilder(tiff).page(colourPicture(), {.compression = 5});
    QByteArray bytes = readFile(tiff);
    // Width and height are the first two entries of the directory.
    const auto directory = qFromLittleEndian<quint32>(bytes.constData() + 4);
    for (const qsizetype entry : {qsizetype{directory} + 2, qsizetype{directory} + 14}) {
        qToLittleEndian<quint16>(4, bytes.data() + entry + 2);
        qToLittleEndian<quint32>(100000, bytes.data() + entry + 8);
    }
    QByteArray png = encodedImage(colourPicture(), "png");
    qToBigEndian<quint32>(100000, png.data() + 16);
    qToBigEndian<quint32>(100000, png.data() + 20);
    png.replace(8, 25, pngChunk("IHDR", png.mid(16, 13)));
    QByteArray bmp = encodedImage(colourPicture().convertToFormat(QImage::Format_RGB888), "bmp");
    qToLittleEndian<qint32>(100000, bmp.data() + 18);
    qToLittleEndian<qint32>(100000, bmp.data() + 22);
    for (const auto& [name, claim] :
         Rows<const char*, QByteArray>{{"huge.tif", bytes}, {"huge.png", png}, {"huge.bmp", bmp}}) {
        process(write(QString::fromLatin1(name), claim), false, 5);
        EXPECT_TRUE(problem().contains("100000 x 100000"_L1)) << problem().toStdString();
    }
}

TEST_F(RasterFile, FilesThatAreNoPicturesSaySo)
{
    addStamp();
    const Rows<const char*, const char*> cases = {
        {"%PDF-1.7\n", "PDF"}, {"hello, world, this is text", "picture"}, {"", "empty"}, {"II*", "read"}};
    for (const auto& [bytes, word] : cases) {
        process(write(QStringLiteral("a.tif"), bytes), false);
        EXPECT_TRUE(problem().contains(QLatin1String(word))) << problem().toStdString();
    }
}

} // namespace
} // namespace quillfern
