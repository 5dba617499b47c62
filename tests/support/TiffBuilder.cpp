#include "support/TiffBuilder.h"

#include "support/ImageBytes.h"

#include <QFloat16>
#include <array>
#include <cstdarg>
#include <tiffio.h>

namespace quillfern {

namespace {

/// The stored image of a picture: what a scanner with that orientation would have written.
QImage stored(const QImage& picture, int orientation)
{
    const int w = picture.width();
    const int h = picture.height();
    const bool turned = orientation >= 5;
    QImage image(turned ? h : w, turned ? w : h, QImage::Format_RGBA8888);
    for (int row = 0; row < image.height(); ++row) {
        for (int column = 0; column < image.width(); ++column) {
            // The place in the upright picture at which each of the eight orientations shows this row and
            // column.
            const int x[] = {column, w - 1 - column, w - 1 - column, column,
                             row,    w - 1 - row,    w - 1 - row,    row};
            const int y[] = {row,    row,    h - 1 - row,    h - 1 - row,
                             column, column, h - 1 - column, h - 1 - column};
            image.setPixelColor(column, row, picture.pixelColor(x[orientation - 1], y[orientation - 1]));
        }
    }
    return image;
}

/// The 8-bit samples of one pixel in the layout's colours.
std::vector<int> samplesOf(const QColor& colour, const TiffLayout& layout)
{
    const int r = colour.red();
    const int g = colour.green();
    const int b = colour.blue();
    const int a = colour.alpha();
    std::vector<int> samples;
    switch (layout.photometric) {
    case PHOTOMETRIC_MINISWHITE:
        samples = {255 - r};
        break;
    case PHOTOMETRIC_MINISBLACK:
        samples = {r};
        break;
    case PHOTOMETRIC_PALETTE:
        return {(r >= 128 ? 4 : 0) + (g >= 128 ? 2 : 0) + (b >= 128 ? 1 : 0)};
    case PHOTOMETRIC_SEPARATED: {
        const int k = 255 - std::max({r, g, b});
        const auto ink = [&](int value) { return k == 255 ? 0 : (255 - value - k) * 255 / (255 - k); };
        samples = {ink(r), ink(g), ink(b), k};
        break;
    }
    default:
        samples = {r, g, b};
    }
    if (layout.extraSample == EXTRASAMPLE_ASSOCALPHA)
        for (int& sample : samples)
            sample = (sample * a + 127) / 255;
    if (layout.extraSample >= 0) samples.push_back(a);
    return samples;
}

/// Packs samples of 1 to 32 bits, and floating-point numbers.
class Packer
{
  public:
    explicit Packer(const TiffLayout& layout) : layout_(layout) {}

    void add(int sample)
    {
        const bool isIndex = layout_.photometric == PHOTOMETRIC_PALETTE;
        if (layout_.floatRange > 0) {
            const double value = sample / 255.0 * layout_.floatRange;
            if (layout_.bits == 16) put(qfloat16(static_cast<float>(value)), 2);
            if (layout_.bits == 32) put(static_cast<float>(value), 4);
            if (layout_.bits == 64) put(value, 8);
        } else if (layout_.bits > 8 && layout_.bits % 8 == 0) {
            put(static_cast<std::uint32_t>(sample * ((std::uint64_t{1} << layout_.bits) - 1) / 255),
                layout_.bits / 8);
        } else {
            const int largest = (1 << layout_.bits) - 1;
            const int value = isIndex ? sample : sample * largest / 255;
            for (int bit = layout_.bits - 1; bit >= 0; --bit) {
                if (bit_ == 0) bytes_.append('\0');
                bytes_.back() = static_cast<char>(bytes_.back() | (value >> bit & 1) << (7 - bit_));
                bit_ = (bit_ + 1) % 8;
            }
        }
    }
    void endRow() { bit_ = 0; }
    [[nodiscard]] QByteArray& bytes() { return bytes_; }

  private:
    /// The first bytes of a value in the machine's order, low ones first.
    template <class T>
    void put(T value, int size)
    {
        bytes_.append(reinterpret_cast<const char*>(&value), size);
    }

    const TiffLayout& layout_;
    QByteArray bytes_;
    int bit_ = 0;
};

/// The packed samples of a rectangle; pixels outside the image repeat its edge. Plane -1 for all of them.
QByteArray packed(const QImage& image, const QRect& rect, const TiffLayout& layout, int plane)
{
    Packer packer(layout);
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            const auto samples = samplesOf(
                image.pixelColor(std::min(x, image.width() - 1), std::min(y, image.height() - 1)), layout);
            for (std::size_t s = 0; s < samples.size(); ++s)
                if (plane < 0 || plane == static_cast<int>(s)) packer.add(samples[s]);
        }
        packer.endRow();
    }
    return packer.bytes();
}

void setPalette(TIFF* tiff, int bits)
{
    std::vector<std::uint16_t> r(1U << bits), g(1U << bits), b(1U << bits);
    for (unsigned i = 0; i < 8; ++i) {
        r[i] = (i & 4U) != 0 ? 0xFFFF : 0;
        g[i] = (i & 2U) != 0 ? 0xFFFF : 0;
        b[i] = (i & 1U) != 0 ? 0xFFFF : 0;
    }
    TIFFSetField(tiff, TIFFTAG_COLORMAP, r.data(), g.data(), b.data());
}

constexpr std::array carriedTags = {TIFFTAG_IMAGEDESCRIPTION, TIFFTAG_MAKE,         TIFFTAG_MODEL,
                                    TIFFTAG_DATETIME,         TIFFTAG_ARTIST,       TIFFTAG_COPYRIGHT,
                                    TIFFTAG_XMLPACKET,        TIFFTAG_RICHTIFFIPTC, TIFFTAG_ICCPROFILE};

bool isBytesTag(int tag)
{
    return tag == TIFFTAG_XMLPACKET || tag == TIFFTAG_RICHTIFFIPTC || tag == TIFFTAG_ICCPROFILE;
}

std::map<int, QByteArray> readTags(TIFF* tiff)
{
    std::map<int, QByteArray> tags;
    for (const int tag : carriedTags) {
        std::uint32_t size = 0;
        const char* value = nullptr;
        const auto number = static_cast<std::uint32_t>(tag);
        if (isBytesTag(tag) && TIFFGetField(tiff, number, &size, &value) == 1)
            tags[tag] = QByteArray(value, static_cast<qsizetype>(size));
        else if (!isBytesTag(tag) && TIFFGetField(tiff, number, &value) == 1)
            tags[tag] = value;
    }
    return tags;
}

void setFields(TIFF* tiff, const QImage& image, const TiffLayout& layout, int samples)
{
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, image.width());
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, image.height());
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, layout.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, layout.photometric);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, layout.compression);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, layout.orientation);
    TIFFSetField(tiff, TIFFTAG_FILLORDER, layout.fillOrder);
    if (layout.floatRange > 0) TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
    if (layout.predictor > 1) TIFFSetField(tiff, TIFFTAG_PREDICTOR, layout.predictor);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, layout.planar ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    if (layout.isSigned) TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_INT);
    if (layout.extraSample >= 0 && layout.extraSample <= EXTRASAMPLE_UNASSALPHA) {
        const auto kind = static_cast<std::uint16_t>(layout.extraSample);
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &kind);
    }
    if (layout.xResolution > 0) {
        TIFFSetField(tiff, TIFFTAG_XRESOLUTION, layout.xResolution);
        TIFFSetField(tiff, TIFFTAG_YRESOLUTION, layout.yResolution);
        TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, layout.resolutionUnit);
    }
    for (const auto& [tag, value] : layout.tags) {
        if (isBytesTag(tag))
            TIFFSetField(tiff, static_cast<std::uint32_t>(tag), static_cast<std::uint32_t>(value.size()),
                         value.constData());
        else
            TIFFSetField(tiff, static_cast<std::uint32_t>(tag), value.constData());
    }
    if (layout.photometric == PHOTOMETRIC_PALETTE) setPalette(tiff, layout.bits);
    if (layout.photometric == PHOTOMETRIC_YCBCR) {
        TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        TIFFSetField(tiff, TIFFTAG_YCBCRSUBSAMPLING, 2, 2);
        TIFFSetField(tiff, TIFFTAG_JPEGQUALITY, 95);
    }
}

} // namespace

struct TiffBuilder::Handle
{
    TIFF* tiff;
};

TiffBuilder::TiffBuilder(const QString& path, const char* mode)
    : handle_(new Handle{TIFFOpen(QFile::encodeName(path).constData(), mode)})
{
    EXPECT_NE(handle_->tiff, nullptr);
}

TiffBuilder::~TiffBuilder()
{
    TIFFClose(handle_->tiff);
    delete handle_;
}

TiffBuilder& TiffBuilder::page(const QImage& picture, const TiffLayout& layout)
{
    TIFF* tiff = handle_->tiff;
    const QImage image = stored(picture, layout.orientation);
    const auto samples = static_cast<int>(samplesOf(Qt::black, layout).size());
    setFields(tiff, image, layout, samples);
    const int planes = layout.planar ? samples : 1;
    constexpr int tileSide = 32;
    if (layout.tiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, tileSide);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, tileSide);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 16);
    }
    std::uint32_t index = 0;
    for (int plane = 0; plane < planes; ++plane) {
        const int step = layout.tiled ? tileSide : 16;
        for (int y = 0; y < image.height(); y += step) {
            for (int x = 0; x < image.width(); x += layout.tiled ? step : image.width()) {
                const QRect rect(x, y, layout.tiled ? step : image.width(),
                                 layout.tiled ? step : std::min(step, image.height() - y));
                QByteArray bytes = packed(image, rect, layout, layout.planar ? plane : -1);
                const tmsize_t written = layout.tiled
                                             ? TIFFWriteEncodedTile(tiff, index, bytes.data(), bytes.size())
                                             : TIFFWriteEncodedStrip(tiff, index, bytes.data(), bytes.size());
                EXPECT_GE(written, 0);
                ++index;
            }
        }
    }
    EXPECT_EQ(TIFFWriteDirectory(tiff), 1);
    return *this;
}

namespace {

QImage readPixels(TIFF* tiff, std::uint32_t width, std::uint32_t height, bool hasAlpha)
{
    QImage image(static_cast<int>(width), static_cast<int>(height), QImage::Format_RGBA8888);
    if (hasAlpha) {
        // libtiff's conversion multiplies by alpha; the colours are read from the samples themselves.
        for (std::uint32_t y = 0; y < height; ++y)
            EXPECT_EQ(TIFFReadScanline(tiff, image.scanLine(static_cast<int>(y)), y, 0), 1);
        return image;
    }
    auto* raster = reinterpret_cast<std::uint32_t*>(image.bits());
    EXPECT_EQ(TIFFReadRGBAImageOriented(tiff, width, height, raster, ORIENTATION_TOPLEFT, 1), 1);
    return image;
}

} // namespace

std::vector<TiffPage> readTiff(const QString& path)
{
    std::vector<TiffPage> pages;
    TIFFSetErrorHandler(nullptr);
    const TIFFErrorHandler complain = [](const char* module, const char* format, va_list arguments) {
        char text[512];
        std::vsnprintf(text, sizeof text, format, arguments);
        ADD_FAILURE() << (module ? module : "") << ": " << text;
    };
    const TIFFErrorHandler before = TIFFSetWarningHandler(complain);
    TIFFSetErrorHandler(complain);
    TIFF* tiff = TIFFOpen(QFile::encodeName(path).constData(), "r");
    EXPECT_NE(tiff, nullptr) << path.toStdString();
    if (!tiff) return pages;
    do {
        TiffPage page;
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
        TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
        TIFFGetField(tiff, TIFFTAG_BITSPERSAMPLE, &page.bits);
        TIFFGetField(tiff, TIFFTAG_SAMPLESPERPIXEL, &page.samples);
        TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &page.photometric);
        TIFFGetField(tiff, TIFFTAG_COMPRESSION, &page.compression);
        TIFFGetField(tiff, TIFFTAG_PREDICTOR, &page.predictor);
        TIFFGetField(tiff, TIFFTAG_RESOLUTIONUNIT, &page.resolutionUnit);
        TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &page.xResolution);
        TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &page.yResolution);
        std::uint16_t extras = 0;
        std::uint16_t* kinds = nullptr;
        if (TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &extras, &kinds) == 1 && extras == 1)
            page.extraSample = kinds[0];
        page.tags = readTags(tiff);
        page.image = readPixels(tiff, width, height, page.samples == 4);
        pages.push_back(page);
    } while (TIFFReadDirectory(tiff) == 1);
    TIFFClose(tiff);
    TIFFSetErrorHandler(before);
    TIFFSetWarningHandler(before);
    return pages;
}

QByteArray oldJpegTiff(const QByteArray& jpeg, int width, int height)
{
    QByteArray bytes("II*\0", 4);
    const auto put = [&bytes](auto value) { putLittle(bytes, value); };
    const auto stream = std::uint32_t{8};
    const auto size = static_cast<std::uint32_t>(jpeg.size());
    const std::uint32_t directory = (stream + size + 1) / 2 * 2;
    put(directory);
    bytes += jpeg;
    if (bytes.size() % 2 != 0) bytes += '\0';
    const auto w = static_cast<std::uint32_t>(width);
    const auto h = static_cast<std::uint32_t>(height);
    const Rows<std::uint16_t, std::uint16_t, std::uint32_t, std::uint32_t> fields = {
        {256, 4, 1, w},      {257, 4, 1, h},    {258, 3, 3, directory + 2 + 12 * 12 + 4},
        {259, 3, 1, 6},      {262, 3, 1, 6},    {273, 4, 1, stream},
        {277, 3, 1, 3},      {278, 4, 1, h},    {279, 4, 1, size},
        {513, 4, 1, stream}, {514, 4, 1, size}, {530, 3, 2, 2U | 2U << 16}};
    put(static_cast<std::uint16_t>(fields.size()));
    for (const auto& [tag, type, count, value] : fields) {
        put(tag);
        put(type);
        put(count);
        put(value);
    }
    put(std::uint32_t{0});
    bytes.resize(static_cast<qsizetype>(directory + 2 + 12 * 12 + 4));
    for (int i = 0; i < 3; ++i)
        put(std::uint16_t{8});
    return bytes;
}

} // namespace quillfern
