#include "platform/raster/PngReader.h"

#include "platform/raster/ExifFields.h"
#include "platform/raster/Orientation.h"
#include "platform/raster/PngTexts.h"
#include "platform/raster/RasterLimits.h"
#include "platform/system/Cancellation.h"

#include <QColorSpace>
#include <QtEndian>
#include <algorithm>
#include <array>
#include <cmath>
#include <csetjmp>
#include <cstring>
#include <png.h>
#include <tiff.h>
#include <vector>

namespace quillfern::raster {

namespace {

constexpr double metresPerInch = 0.0254;
constexpr double largestRatio = 1032; ///< of Deflate
/// Chunks larger than this are passed over, unless they hold pixels.
constexpr quint32 largestChunk = 1 << 24;

/// What the chunks say; they may stand behind the pixels, too.
struct PngFacts
{
    QSizeF dotsPerInch{plainDotsPerInch, plainDotsPerInch};
    std::int64_t pixelBytes = 0; ///< of the compressed pixels
    ExifFields exif;
};

PngFacts readChunks(QIODevice& file, const std::stop_token& stop)
{
    PngFacts facts;
    PageTags texts;
    for (qint64 at = 8; file.seek(at);) {
        throwIfCancelled(stop);
        const QByteArray head = file.read(8);
        if (head.size() < 8) break;
        const auto length = qFromBigEndian<quint32>(head.constData());
        const QByteArray name = head.mid(4);
        if (name == "IDAT") facts.pixelBytes += length;
        const bool isWanted = name == "pHYs" || name == "eXIf" || isPngText(name);
        const QByteArray data = isWanted && length <= largestChunk ? file.read(length) : QByteArray();
        if (name == "pHYs" && data.size() == 9 && data[8] == 1) { // per metre
            const double x = qFromBigEndian<quint32>(data.constData());
            const double y = qFromBigEndian<quint32>(data.constData() + 4);
            if (x > 0 && y > 0) facts.dotsPerInch = QSizeF(x, y) * metresPerInch;
        }
        if (name == "eXIf") facts.exif = readExif(data);
        if (isPngText(name)) readPngText(name, data, texts);
        at += 12 + qint64{length};
    }
    facts.pixelBytes = std::min<std::int64_t>(facts.pixelBytes, file.size());
    facts.exif.tags.merge(texts);
    return facts;
}

/// libpng at work on one file. libpng reports errors by a jump, over which no destructor may lie: each call
/// goes through run(), with nothing but plain values inside.
class PngDecoder
{
  public:
    PngDecoder(QIODevice& device, const std::stop_token& stop) : PngDecoder(device, stop, Empty())
    {
        // From here on the destructor runs when something is thrown.
        if (png_) info_ = png_create_info_struct(png_);
        if (!info_) throw std::bad_alloc();
        device_.seek(0);
        png_set_read_fn(png_, this, read);
        run([this] {
            // What readChunks() looks at itself, and what no page needs.
            static constexpr png_byte passedOver[] =
                "eXIf\0iTXt\0tEXt\0zTXt\0pHYs\0hIST\0sPLT\0tIME\0pCAL\0sCAL\0oFFs\0bKGD\0sBIT";
            png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, passedOver, sizeof passedOver / 5);
            png_set_user_limits(png_, 0x7FFFFFFF, 0x7FFFFFFF);
            png_set_benign_errors(png_, 1);
            png_read_info(png_, info_);
        });
    }
    ~PngDecoder() { png_destroy_read_struct(&png_, &info_, nullptr); }
    PngDecoder(const PngDecoder&) = delete;
    PngDecoder& operator=(const PngDecoder&) = delete;

    template <class Calls>
    void run(Calls calls)
    {
        if (setjmp(png_jmpbuf(png_)) == 0) {
            calls();
            return;
        }
        throwIfCancelled(stop_);
        throwDamaged(QString::fromLatin1(error_.data()));
    }

    [[nodiscard]] png_structp png() const { return png_; }
    [[nodiscard]] png_infop info() const { return info_; }
    [[nodiscard]] QSize size() const
    {
        return {static_cast<int>(png_get_image_width(png_, info_)),
                static_cast<int>(png_get_image_height(png_, info_))};
    }
    [[nodiscard]] bool hasAlpha() const
    {
        return (png_get_color_type(png_, info_) & PNG_COLOR_MASK_ALPHA) != 0 ||
               png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
    }
    [[nodiscard]] bool isPalette() const { return png_get_color_type(png_, info_) == PNG_COLOR_TYPE_PALETTE; }

  private:
    struct Empty
    {
    };

    PngDecoder(QIODevice& device, const std::stop_token& stop, Empty)
        : device_(device), stop_(stop), png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, this, onError,
                                                                    [](png_structp, png_const_charp) {}))
    {
    }

    [[noreturn]] static void onError(png_structp png, png_const_charp text)
    {
        auto* decoder = static_cast<PngDecoder*>(png_get_error_ptr(png));
        std::strncpy(decoder->error_.data(), text, decoder->error_.size() - 1);
        png_longjmp(png, 1);
    }

    static void read(png_structp png, png_bytep data, std::size_t size)
    {
        auto* decoder = static_cast<PngDecoder*>(png_get_io_ptr(png));
        if (decoder->stop_.stop_requested()) png_error(png, "stopped");
        const auto wanted = static_cast<qint64>(size);
        if (decoder->device_.read(reinterpret_cast<char*>(data), wanted) != wanted)
            png_error(png, "the end of the file");
    }

    QIODevice& device_;
    const std::stop_token& stop_;
    std::array<char, 128> error_ = {};
    png_structp png_;
    png_infop info_ = nullptr;
};

/// How the rows of a file become those of a page.
struct PngLayout
{
    QImage::Format format = QImage::Format_RGB888;
    bool isBilevel = false;
    uchar flip = 0; ///< of the bits of a bilevel row, so that ones are white
};

PngLayout layoutOf(const PngDecoder& decoder)
{
    const png_byte kind = png_get_color_type(decoder.png(), decoder.info());
    const bool isOneBit = png_get_bit_depth(decoder.png(), decoder.info()) == 1;
    if (decoder.hasAlpha()) return {QImage::Format_RGBA8888};
    if (!decoder.isPalette()) {
        if (kind != PNG_COLOR_TYPE_GRAY) return {};
        return {isOneBit ? QImage::Format_Mono : QImage::Format_Grayscale8, isOneBit};
    }
    png_colorp palette = nullptr;
    int size = 0;
    png_get_PLTE(decoder.png(), decoder.info(), &palette, &size);
    const auto isGrey = [&](int index, int value) {
        return palette[index].red == value && palette[index].green == value && palette[index].blue == value;
    };
    if (isOneBit && size == 2 && isGrey(0, 0) && isGrey(1, 255)) return {QImage::Format_Mono, true, 0};
    if (isOneBit && size == 2 && isGrey(0, 255) && isGrey(1, 0)) return {QImage::Format_Mono, true, 0xFF};
    for (int i = 0; i < size; ++i)
        if (!isGrey(i, i)) return {};
    return {QImage::Format_Grayscale8}; // the indices are the shades
}

void setTransformations(PngDecoder& decoder, const PngLayout& layout)
{
    decoder.run([&] {
        png_structp png = decoder.png();
        png_set_scale_16(png);
        if (layout.format == QImage::Format_RGB888 || layout.format == QImage::Format_RGBA8888) {
            png_set_expand(png);
            png_set_gray_to_rgb(png);
        } else if (layout.format == QImage::Format_Grayscale8 && decoder.isPalette()) {
            png_set_packing(png);
        } else if (layout.format == QImage::Format_Grayscale8) {
            png_set_expand_gray_1_2_4_to_8(png);
        }
    });
}

/// A profile for colours of which the file gives a gamma value other than the usual one, and perhaps the
/// primaries.
QByteArray profileOfGamma(const PngDecoder& decoder)
{
    constexpr double usual = 0.45455;
    double gamma = 0;
    if (png_get_valid(decoder.png(), decoder.info(), PNG_INFO_sRGB) != 0 ||
        png_get_gAMA(decoder.png(), decoder.info(), &gamma) == 0 || gamma < 0.1 || gamma > 10)
        return {};
    double w[2], r[2], g[2], b[2];
    const auto inverse = static_cast<float>(1 / gamma);
    if (png_get_cHRM(decoder.png(), decoder.info(), &w[0], &w[1], &r[0], &r[1], &g[0], &g[1], &b[0], &b[1]) !=
        0) {
        const QColorSpace space({w[0], w[1]}, {r[0], r[1]}, {g[0], g[1]}, {b[0], b[1]},
                                QColorSpace::TransferFunction::Gamma, inverse);
        const QColorSpace plain(QColorSpace::Primaries::SRgb, inverse);
        if (space.isValid() && space != plain) return space.iccProfile();
    }
    if (std::abs(gamma - usual) < 0.01) return {};
    return QColorSpace(QColorSpace::Primaries::SRgb, inverse).iccProfile();
}

QByteArray colourProfile(const PngDecoder& decoder, const PngLayout& layout)
{
    const bool isGrey = layout.format == QImage::Format_Mono || layout.format == QImage::Format_Grayscale8;
    png_charp name = nullptr;
    png_bytep profile = nullptr;
    png_uint_32 size = 0;
    int compression = 0;
    if (png_get_iCCP(decoder.png(), decoder.info(), &name, &compression, &profile, &size) == 0)
        return isGrey ? QByteArray() : profileOfGamma(decoder);
    return profileFor({reinterpret_cast<const char*>(profile), static_cast<qsizetype>(size)}, isGrey);
}

} // namespace

PngReader::PngReader(std::unique_ptr<QIODevice> device, const std::stop_token& stop)
    : device_(std::move(device))
{
    const PngFacts facts = readChunks(*device_, stop);
    const PngDecoder decoder(*device_, stop);
    const QSize size = decoder.size();
    const int depth = QImage::toPixelFormat(layoutOf(decoder).format).bitsPerPixel();
    describe(size, std::max(1, depth / 8), facts.dotsPerInch, facts.exif.orientation);
    const auto rowBytes = static_cast<double>(png_get_rowbytes(decoder.png(), decoder.info()));
    checkClaim(size.width(), size.height(), rowBytes / size.width(), static_cast<double>(facts.pixelBytes),
               largestRatio);
    tags_ = facts.exif.tags;
}

bool PngReader::hasHeader(QIODevice& file)
{
    try {
        const std::stop_token noStop;
        const PngDecoder decoder(file, noStop);
        return true;
    } catch (const Failure&) {
        return false;
    }
}

RasterPage PngReader::readPage(const std::stop_token& stop)
{
    if (wasRead_) throwDamaged();
    wasRead_ = true;
    PngDecoder decoder(*device_, stop);
    const PngLayout layout = layoutOf(decoder);
    setTransformations(decoder, layout);
    int passes = 1;
    decoder.run([&] {
        passes = png_set_interlace_handling(decoder.png());
        png_read_update_info(decoder.png(), decoder.info());
    });
    RasterPage page;
    page.image = makePageImage(storedSize().width(), storedSize().height(), layout.format);
    page.isBilevel = layout.isBilevel;
    if (page.isMono()) page.image.setColorTable({0xFF000000, 0xFFFFFFFF});
    if (png_get_rowbytes(decoder.png(), decoder.info()) > static_cast<std::size_t>(page.image.bytesPerLine()))
        throwDamaged();
    for (int pass = 0; pass < passes; ++pass)
        for (int y = 0; y < page.image.height(); ++y) {
            throwIfCancelled(stop);
            uchar* row = page.image.scanLine(y);
            decoder.run([&] { png_read_row(decoder.png(), row, nullptr); });
        }
    // What follows the pixels is known already, and its damage costs no pixel.
    if (layout.flip != 0) page.image.invertPixels();
    page.colourProfile = colourProfile(decoder, layout);
    page.tags = tags_;
    if (isTransformed()) page.spreadBits();
    page.image = upright(std::move(page.image), orientation());
    return page;
}

} // namespace quillfern::raster
