// Kinds of PNG, what JPEG and PNG files say of themselves, and damage that costs no pixel.

#include "batch/RasterProcessing.h"
#include "support/ImageBytes.h"

#include <QColorSpace>

namespace quillfern {
namespace {

struct PngKind
{
    const char* name;
    int depth;
    int colourType; ///< 0 grey, 2 RGB, 3 palette, 4 grey with opacity, 6 RGB with opacity
    int samples;    ///< expected
    bool isInterlaced = false;
    QByteArray transparent = {}; ///< the tRNS chunk
};

/// The picture as a PNG of that kind, without filters.
class PngBuilder
{
  public:
    PngBuilder(const QImage& image, const PngKind& kind) : image_(image), kind_(kind) {}

    QByteArray build() const
    {
        QByteArray rows;
        const int steps[][4] = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                                {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}};
        if (kind_.isInterlaced)
            for (const auto& [x, y, stepX, stepY] : steps)
                rows += pass(x, y, stepX, stepY);
        else
            rows = pass(0, 0, 1, 1);
        QByteArray bytes("\x89PNG\r\n\x1A\n");
        bytes += pngChunk("IHDR", bigEndian32(static_cast<unsigned>(image_.width())) +
                                      bigEndian32(static_cast<unsigned>(image_.height())) +
                                      static_cast<char>(kind_.depth) + static_cast<char>(kind_.colourType) +
                                      QByteArray(2, '\0') + static_cast<char>(kind_.isInterlaced));
        QByteArray palette;
        for (int i = 0; i < (kind_.depth == 1 ? 2 : 4); ++i)
            for (const int part : {qRed(colour(i)), qGreen(colour(i)), qBlue(colour(i))})
                palette += static_cast<char>(part);
        if (kind_.colourType == 3) bytes += pngChunk("PLTE", palette);
        if (!kind_.transparent.isEmpty()) bytes += pngChunk("tRNS", kind_.transparent);
        return bytes + pngChunk("IDAT", qCompress(rows).mid(4)) + pngChunk("IEND", {});
    }

  private:
    [[nodiscard]] QRgb colour(int index) const
    {
        const QRgb few[] = {qRgb(255, 255, 255), qRgb(0, 0, 0), qRgb(255, 0, 0), qRgb(0, 0, 255)};
        return few[index];
    }

    [[nodiscard]] QByteArray pass(int left, int top, int stepX, int stepY) const
    {
        QByteArray rows;
        for (int y = top; y < image_.height(); y += stepY) {
            if (left >= image_.width()) break;
            rows += '\0';
            unsigned pending = 0;
            int filled = 0;
            for (int x = left; x < image_.width(); x += stepX)
                for (const int sample : samples(image_.pixelColor(x, y))) {
                    if (kind_.depth == 16) rows += static_cast<char>(sample);
                    if (kind_.depth >= 8) {
                        rows += static_cast<char>(sample);
                        continue;
                    }
                    pending = pending << kind_.depth | static_cast<unsigned>(sample);
                    filled += kind_.depth;
                    if (filled == 8) {
                        rows += static_cast<char>(pending);
                        filled = 0;
                    }
                }
            if (filled > 0) rows += static_cast<char>(pending << (8 - filled));
        }
        return rows;
    }

    [[nodiscard]] std::vector<int> samples(const QColor& c) const
    {
        if (kind_.colourType == 3) {
            for (int i = 0; i < 4; ++i)
                if (colour(i) == c.rgb()) return {i};
            return {0};
        }
        std::vector<int> values = (kind_.colourType & 2) != 0
                                      ? std::vector<int>{c.red(), c.green(), c.blue()}
                                      : std::vector<int>{qGray(c.rgb()) >> (8 - std::min(8, kind_.depth))};
        if ((kind_.colourType & 4) != 0) values.push_back(c.alpha());
        return values;
    }

    const QImage& image_;
    const PngKind& kind_;
};

class PngInput : public RasterProcessing, public testing::WithParamInterface<PngKind>
{
};

TEST_P(PngInput, ComesOutAsItWas)
{
    const PngKind& kind = GetParam();
    const bool isFew = kind.depth < 8;
    QImage picture = kind.colourType == 3 && kind.depth > 1 ? colourPicture(121, 87)
                     : isFew                                ? blackAndWhitePicture(121, 87)
                     : (kind.colourType & 2) != 0           ? colourPicture(121, 87)
                                                            : greyPicture();
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            QColor c = picture.pixelColor(x, y);
            if (kind.colourType == 3 && c == QColor(Qt::green)) c = Qt::blue;
            if (kind.colourType >= 4) c.setAlpha(200 - y);
            picture.setPixelColor(x, y, c);
        }
    addStamp();
    const QByteArray bytes = PngBuilder(picture, kind).build();
    const auto pages = readTiff(process(scratch.write(QStringLiteral("in/a.png"), bytes)));
    ASSERT_EQ(pages.size(), 1U);
    if (!kind.transparent.isEmpty())
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (picture.pixelColor(x, y) == QColor(Qt::white))
                    picture.setPixelColor(x, y, QColor(255, 255, 255, 0));
    EXPECT_TRUE(showsSame(pages[0].image, picture, kind.samples == 4 ? 0 : 3));
    EXPECT_EQ(pages[0].samples, kind.samples);
    EXPECT_EQ(pages[0].bits, kind.depth == 1 && kind.samples == 1 ? 1 : 8);
}

const QByteArray white1("\0\1", 2);
const QByteArray white8("\0\xFF\0\xFF\0\xFF", 6);

INSTANTIATE_TEST_SUITE_P(
    , PngInput,
    testing::Values(PngKind{"Grey1", 1, 0, 1}, PngKind{"Grey1Interlaced", 1, 0, 1, true},
                    PngKind{"Grey1Transparent", 1, 0, 4, false, white1}, PngKind{"Grey2", 2, 0, 1},
                    PngKind{"Grey4", 4, 0, 1}, PngKind{"Grey8", 8, 0, 1}, PngKind{"Grey16", 16, 0, 1},
                    PngKind{"Grey8Transparent", 8, 0, 4, false, white8.left(2)},
                    PngKind{"GreyOpacity8", 8, 4, 4}, PngKind{"GreyOpacity16", 16, 4, 4},
                    PngKind{"Rgb8", 8, 2, 3}, PngKind{"Rgb16", 16, 2, 3},
                    PngKind{"Rgb16Interlaced", 16, 2, 3, true},
                    PngKind{"Rgb8Transparent", 8, 2, 4, false, white8}, PngKind{"Rgba8", 8, 6, 4},
                    PngKind{"Rgba16", 16, 6, 4}, PngKind{"Rgba16Interlaced", 16, 6, 4, true},
                    PngKind{"Palette1", 1, 3, 1}, PngKind{"Palette2", 2, 3, 3}, PngKind{"Palette4", 4, 3, 3},
                    PngKind{"Palette8", 8, 3, 3}, PngKind{"Palette8Interlaced", 8, 3, 3, true},
                    PngKind{"Palette1Transparent", 1, 3, 4, false, QByteArray(1, '\0')},
                    PngKind{"Palette4Transparent", 4, 3, 4, false, QByteArray(1, '\0')}),
    [](const auto& kind) { return std::string(kind.param.name); });

class ImageFile : public RasterProcessing
{
  protected:
    static QImage rgbPicture() { return colourPicture().convertToFormat(QImage::Format_RGB888); }

    /// A JPEG whose JFIF segment has such a unit and such numbers.
    static QByteArray jpegWithUnit(int unit, int x, int y)
    {
        QByteArray jpeg = encodedImage(rgbPicture(), "jpg");
        jpeg[13] = static_cast<char>(unit);
        return jpeg.replace(14, 4, bigEndian16(x) + bigEndian16(y));
    }

    static QByteArray exif(int unit, unsigned x, unsigned y)
    {
        const QByteArray block = exifBlock(
            {{0x11A, 5, {}, x, 1}, {0x11B, 5, {}, y, 1}, {0x128, 3, {}, static_cast<unsigned>(unit)}});
        return jpegSegment(0xE1, QByteArray("Exif\0\0", 6) + block);
    }

    /// The resources of an image editor: a resolution behind another resource whose name and size are odd.
    static QByteArray resources(unsigned x, unsigned y)
    {
        const QByteArray number = bigEndian32(x << 16) + QByteArray("\0\1\0\1", 4) + bigEndian32(y << 16) +
                                  QByteArray("\0\1\0\1", 4);
        return jpegSegment(0xED, QByteArray("Photoshop 3.0\0", 14) + "8BIM" + bigEndian16(0x0400) +
                                     QByteArray("\2ab\0", 4) + bigEndian32(1) + QByteArray("x\0", 2) +
                                     "8BIM" + bigEndian16(0x03ED) + QByteArray(2, '\0') + bigEndian32(16) +
                                     number);
    }
};

TEST_F(ImageFile, ResolutionsOfJpegs)
{
    const Rows<const char*, QByteArray, double, double> cases = {
        {"per inch", jpegWithUnit(1, 300, 150), 300, 150},
        {"per centimetre", jpegWithUnit(2, 100, 50), 254, 127},
        {"a shape only", jpegWithUnit(0, 1, 1), 72, 72},
        {"EXIF, per inch", withSegments(jpegWithUnit(0, 1, 1), exif(2, 200, 100)), 200, 100},
        {"EXIF, per centimetre", withSegments(jpegWithUnit(0, 1, 1), exif(3, 100, 50)), 254, 127},
        {"EXIF without a unit", withSegments(jpegWithUnit(0, 1, 1), exif(1, 100, 50)), 72, 72},
        {"resources", withSegments(jpegWithUnit(0, 1, 1), resources(240, 120)), 240, 120},
        {"EXIF and resources", withSegments(jpegWithUnit(0, 1, 1), resources(240, 120) + exif(2, 200, 100)),
         200, 100},
        {"JFIF before others", withSegments(jpegWithUnit(1, 300, 300), exif(2, 200, 100)), 300, 300},
        {"EXIF cut off",
         withSegments(jpegWithUnit(0, 1, 1),
                      jpegSegment(0xE1, QByteArray("Exif\0\0MM\0*\0\0\0\x08\0\x09", 16))),
         72, 72},
    };
    for (const auto& [name, bytes, x, y] : cases) {
        SCOPED_TRACE(name);
        const auto pages = readTiff(process(write(QStringLiteral("a.jpg"), bytes)));
        ASSERT_EQ(pages.size(), 1U);
        EXPECT_NEAR(pages[0].xResolution, x, 0.01);
        EXPECT_NEAR(pages[0].yResolution, y, 0.01);
    }
}

TEST_F(ImageFile, DamageBesideThePixelsIsPassedOver)
{
    const QByteArray jpeg = encodedImage(rgbPicture(), "jpg");
    const QByteArray png = encodedImage(rgbPicture(), "png");
    QByteArray badText = pngChunk("tEXt", QByteArray("Comment\0abc", 11));
    badText.back() = static_cast<char>(badText.back() + 1);
    const Rows<const char*, QByteArray, bool> cases = {
        {"stray bytes before a marker.jpg", withSegments(jpeg, "stray"), true},
        {"stray bytes before the end.jpg", jpeg.chopped(2) + "stray" + jpeg.right(2), true},
        {"no end mark.jpg", jpeg.chopped(2), true},
        {"bytes behind the end.jpg", jpeg + QByteArray(1000, 'x'), true},
        {"fill bytes.jpg", withSegments(jpeg, "\xFF\xFF\xFF"), true},
        {"checksum of a text.png", withChunks(png, badText), false},
        {"no end.png", png.chopped(12), false},
        {"half an end.png", png.chopped(5), false},
        {"unknown chunk.png", withChunks(png, pngChunk("quIl", "abc")), false},
        {"bytes behind the end.png", png + "xyz", false},
    };
    for (const auto& [name, bytes, isJpeg] : cases) {
        SCOPED_TRACE(name);
        const auto pages = readTiff(process(write(QString::fromLatin1(name), bytes)));
        ASSERT_EQ(pages.size(), 1U);
        EXPECT_TRUE(showsSame(pages[0].image, colourPicture(), isJpeg ? 120 : 3));
    }
    // The pixels themselves: bits that change the course of the codes, and a wrong checksum.
    QByteArray wrongPng = png;
    const qsizetype pixels = wrongPng.indexOf("IDAT") + 20;
    wrongPng[pixels] = static_cast<char>(wrongPng[pixels] ^ 0x55);
    process(write(QStringLiteral("a.png"), wrongPng), false);
    const QByteArray progressive = encodedImage(rgbPicture(), "jpg", true);
    process(write(QStringLiteral("a.jpg"), progressive.left(progressive.lastIndexOf("\xFF\xDA"))), false);
}

TEST_F(ImageFile, PngOrientation)
{
    const QImage upright = colourPicture().convertToFormat(QImage::Format_RGB888);
    const QImage stored = upright.transformed(QTransform().rotate(-90));
    const QByteArray chunk = pngChunk("eXIf", exifBlock({{0x112, 3, {}, 6}}));
    const QByteArray resolution = pngChunk("pHYs", bigEndian32(11811) + bigEndian32(5906) + '\1');
    QImage bilevel = blackAndWhitePicture().transformed(QTransform().rotate(-90));
    bilevel.convertTo(QImage::Format_Mono);
    for (const bool isBilevel : {false, true}) {
        QByteArray png = encodedImage(isBilevel ? bilevel : stored, "png");
        png = withChunks(png.replace("pHYs", "qHYs"), resolution + chunk);
        const auto pages = readTiff(process(write(QStringLiteral("a.png"), png)));
        ASSERT_EQ(pages.size(), 1U);
        EXPECT_TRUE(showsSame(pages[0].image, isBilevel ? blackAndWhitePicture() : upright, 3));
        EXPECT_EQ(pages[0].bits, isBilevel ? 1 : 8);
        EXPECT_NEAR(pages[0].xResolution, 150, 0.1);
        EXPECT_NEAR(pages[0].yResolution, 300, 0.1);
    }
}

TEST_F(ImageFile, WhatAFileSaysOfItsPageIsKept)
{
    const QByteArray profile = QColorSpace(QColorSpace::AdobeRgb).iccProfile();
    const QByteArray xmp("<x:xmpmeta xmlns:x='adobe:ns:meta/'><a>\xC3\xA4</a></x:xmpmeta>");
    const QByteArray iptc("\x1C\2\x05\0\3abc", 8);
    const std::map<int, QByteArray> texts = {{270, "A letter"}, {271, "Maker"},
                                             {272, "M1"},       {306, "2020:01:02 03:04:05"},
                                             {315, "A"},        {33432, "nobody \xA9"}};
    std::map<int, QByteArray> all = texts;
    all[700] = xmp;
    all[33723] = iptc;
    all[34675] = profile;
    std::vector<ExifField> fields;
    for (const auto& [tag, text] : texts)
        fields.push_back({tag, 2, text});
    const QByteArray exifBytes = exifBlock(fields);
    const QByteArray jpeg =
        withSegments(encodedImage(rgbPicture(), "jpg"),
                     jpegSegment(0xE1, QByteArray("Exif\0\0", 6) + exifBytes) +
                         jpegSegment(0xE1, QByteArray("http://ns.adobe.com/xap/1.0/\0", 29) + xmp) +
                         jpegSegment(0xE2, QByteArray("ICC_PROFILE\0\1\1", 14) + profile) +
                         jpegSegment(0xED, QByteArray("Photoshop 3.0\0", 14) + "8BIM" + bigEndian16(0x0404) +
                                               QByteArray(2, '\0') +
                                               bigEndian32(static_cast<unsigned>(iptc.size())) + iptc));
    const QByteArray png = withChunks(
        encodedImage(rgbPicture(), "png"),
        pngChunk("iCCP", QByteArray("p\0\0", 3) + qCompress(profile).mid(4)) + pngChunk("eXIf", exifBytes) +
            pngChunk("iTXt", QByteArray("XML:com.adobe.xmp\0\0\0\0\0", 22) + xmp));
    const QString tiff = path(QStringLiteral("a.tif"));
    TiffBuilder(tiff)
        .page(colourPicture(), {.compression = 5, .tags = all})
        .page(colourPicture(), {.compression = 5})
        .page(colourPicture(), {.photometric = 6, .compression = 7, .tags = all});
    addStamp();
    std::map<int, QByteArray> withoutIptc = all;
    withoutIptc.erase(33723);
    const auto ofJpeg = readTiff(process(write(QStringLiteral("a.jpg"), jpeg)));
    EXPECT_EQ(ofJpeg.at(0).tags, all);
    const auto ofPng = readTiff(process(write(QStringLiteral("a.png"), png)));
    EXPECT_EQ(ofPng.at(0).tags, withoutIptc);
    const auto ofTiff = readTiff(process(tiff));
    ASSERT_EQ(ofTiff.size(), 3U);
    EXPECT_EQ(ofTiff[0].tags, all);
    EXPECT_TRUE(ofTiff[1].tags.empty());
    EXPECT_EQ(ofTiff[2].tags, all);
}

TEST_F(ImageFile, PackedTextsAndLongPacketsAreKept)
{
    const auto packet = [](const QByteArray& about, const QByteArray& content) {
        return "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
               "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'" +
               about + ">" + content + "</rdf:RDF></x:xmpmeta>";
    };
    const QByteArray digest("0123456789ABCDEF0123456789ABCDEF");
    const QByteArray first = "<rdf:Description a='" + digest + "'/>";
    const QByteArray rest = "<rdf:Description b='\xC3\xA4'>" + QByteArray(500, 'x') + "</rdf:Description>";
    const auto part = [&](const QByteArray& whole, qsizetype at, qsizetype size) {
        return jpegSegment(0xE1, QByteArray("http://ns.adobe.com/xmp/extension/\0", 35) + digest +
                                     bigEndian32(static_cast<unsigned>(whole.size())) +
                                     bigEndian32(static_cast<unsigned>(at)) + whole.mid(at, size));
    };
    const QByteArray main = packet({}, first);
    const QByteArray extension = packet({}, rest);
    const QByteArray named = packet(" xmlns:n='n'", rest);
    const QByteArray start = jpegSegment(0xE1, QByteArray("http://ns.adobe.com/xap/1.0/\0", 29) + main);
    const struct
    {
        const char* name;
        QByteArray segments;
        QByteArray expected;
    } packets[] = {
        {"two parts", start + part(extension, 100, 1000) + part(extension, 0, 100), packet({}, first + rest)},
        {"a part is missing", start + part(extension, 100, 1000), main},
        {"names of its own", start + part(named, 0, 2000), main},
        {"no XML", start + part("<rdf:RDF", 0, 2000), main},
    };
    for (const auto& c : packets) {
        SCOPED_TRACE(c.name);
        const auto pages = readTiff(process(
            write(QStringLiteral("a.jpg"), withSegments(encodedImage(rgbPicture(), "jpg"), c.segments))));
        EXPECT_EQ(pages.at(0).tags.at(700), c.expected);
    }
    const auto deflated = [](const QByteArray& bytes) { return qCompress(bytes).mid(4); };
    const QByteArray flags("\0\1\0en\0\0", 7);
    const QByteArray chunks =
        pngChunk("zTXt", QByteArray("Author\0\0", 8) + deflated("A")) +
        pngChunk("zTXt", QByteArray("Copyright\0\0", 11) + deflated(QByteArray(1 << 25, 'x'))) +
        pngChunk("zTXt", QByteArray("Copyright\0\0", 11) + deflated("damaged").chopped(5)) +
        pngChunk("iTXt", "Description" + flags + deflated("D")) +
        pngChunk("iTXt", "XML:com.adobe.xmp" + flags + deflated(main));
    const auto pages = readTiff(
        process(write(QStringLiteral("a.png"), withChunks(encodedImage(rgbPicture(), "png"), chunks))));
    const std::map<int, QByteArray> expected = {{270, "D"}, {315, "A"}, {700, main}};
    EXPECT_EQ(pages.at(0).tags, expected);
}

TEST_F(ImageFile, CountingPagesPrintsNothing)
{
    const QByteArray png = encodedImage(rgbPicture(), "png");
    QByteArray wrongPng = png;
    wrongPng[20] = 'x';
    const QByteArray jpeg = encodedImage(rgbPicture(), "jpg");
    const struct
    {
        QByteArray bytes;
        int pages;
    } cases[] = {{png, 1},
                 {wrongPng, 0},
                 {withChunks(png, pngChunk("iCCP", "wrong")), 1},
                 {jpeg, 1},
                 {withSegments(jpeg, "stray"), 1},
                 {jpeg.left(100), 0}};
    testing::internal::CaptureStderr();
    for (const auto& c : cases)
        EXPECT_EQ(raster::inspectImageFile(asPath(write(QStringLiteral("a.png"), c.bytes)))
                      .value_or(raster::ImageFacts{})
                      .pages,
                  c.pages);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ImageFile, ProfilesOfShadesAndOfColoursAreNotMixedUp)
{
    const QByteArray profile = QColorSpace(QColorSpace::AdobeRgb).iccProfile();
    const QByteArray grey = encodedImage(greyPicture().convertToFormat(QImage::Format_Grayscale8), "jpg");
    addStamp();
    const auto pages = readTiff(
        process(write(QStringLiteral("a.jpg"),
                      withSegments(grey, jpegSegment(0xE2, QByteArray("ICC_PROFILE\0\1\1", 14) + profile)))));
    EXPECT_EQ(pages.at(0).samples, 1);
    EXPECT_FALSE(pages.at(0).tags.contains(34675));
}

} // namespace
} // namespace quillfern
