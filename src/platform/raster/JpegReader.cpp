#include "platform/raster/JpegReader.h"

#include "platform/raster/CmykColours.h"
#include "platform/raster/Orientation.h"
#include "platform/raster/RasterLimits.h"
#include "platform/system/Cancellation.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>
// The library's headers need <cstdio>, and the numbers of the messages depend on what jpeglib.h defines.
#include <jpeglib.h>

#include <jerror.h>

namespace quillfern::raster {

namespace {

/// A block of 8 x 8 samples takes a bit at least, so that a byte holds eight of them.
constexpr double largestRatio = 8 * 64;
constexpr double largestArithmeticRatio = largestRatio * 64;
/// A file of more passes than any encoder makes is decoded only while all of them take a few seconds.
constexpr int usualScans = 32;
constexpr double mostBlocks = 5e7;

/// libjpeg at work on one file. The library reports errors by a jump, over which no destructor may lie: each
/// call goes through run(), with nothing but plain values inside.
class JpegDecoder
{
  public:
    JpegDecoder(QIODevice& device, const std::stop_token& stop) : JpegDecoder(device, stop, Empty())
    {
        // From here on the destructor runs when something is thrown.
        info_.err = jpeg_std_error(&errors_);
        info_.client_data = this;
        errors_.error_exit = onError;
        errors_.emit_message = onMessage;
        run([this] { jpeg_create_decompress(&info_); });
        source_.init_source = [](j_decompress_ptr) {};
        source_.fill_input_buffer = fill;
        source_.skip_input_data = skip;
        source_.resync_to_restart = jpeg_resync_to_restart;
        source_.term_source = [](j_decompress_ptr) {};
        info_.src = &source_;
        progress_.progress_monitor = [](j_common_ptr info) {
            auto* decoder = static_cast<JpegDecoder*>(info->client_data);
            if (decoder->stop_.stop_requested()) std::longjmp(decoder->back_, 1);
        };
        info_.progress = &progress_;
        device_.seek(0);
        run([this] {
            jpeg_save_markers(&info_, JPEG_APP0 + 2, 0xFFFF); // the profile
            jpeg_read_header(&info_, TRUE);
        });
    }
    ~JpegDecoder() { jpeg_destroy_decompress(&info_); }
    JpegDecoder(const JpegDecoder&) = delete;
    JpegDecoder& operator=(const JpegDecoder&) = delete;

    template <class Calls>
    void run(Calls calls)
    {
        if (setjmp(back_) == 0) {
            calls();
            return;
        }
        throwIfCancelled(stop_);
        std::array<char, JMSG_LENGTH_MAX> text = {};
        errors_.format_message(reinterpret_cast<j_common_ptr>(&info_), text.data());
        throwDamaged(QString::fromLatin1(text.data()));
    }

    [[nodiscard]] jpeg_decompress_struct& info() { return info_; }

    [[nodiscard]] QByteArray colourProfile()
    {
        JOCTET* data = nullptr;
        unsigned size = 0;
        run([&] {
            if (jpeg_read_icc_profile(&info_, &data, &size) == 0) size = 0;
        });
        const std::unique_ptr<JOCTET, void (*)(void*)> owner(data, std::free);
        return size == 0 ? QByteArray()
                         : QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    }

  private:
    struct Empty
    {
    };

    JpegDecoder(QIODevice& device, const std::stop_token& stop, Empty) : device_(device), stop_(stop) {}

    [[noreturn]] static void onError(j_common_ptr info)
    {
        std::longjmp(static_cast<JpegDecoder*>(info->client_data)->back_, 1);
    }

    /// The library goes on after damage with a warning; of these only the ones that cost pixels count.
    static void onMessage(j_common_ptr info, int level)
    {
        if (level >= 0) return;
        const int code = info->err->msg_code;
        if (code == JWRN_HIT_MARKER || code == JWRN_HUFF_BAD_CODE || code == JWRN_ARITH_BAD_CODE ||
            code == JWRN_MUST_RESYNC)
            onError(info);
    }

    static boolean fill(j_decompress_ptr info)
    {
        static constexpr std::array<JOCTET, 2> end = {0xFF, JPEG_EOI};
        auto* decoder = static_cast<JpegDecoder*>(info->client_data);
        if (decoder->stop_.stop_requested()) std::longjmp(decoder->back_, 1);
        auto& buffer = decoder->buffer_;
        const qint64 size =
            decoder->device_.read(reinterpret_cast<char*>(buffer.data()), static_cast<qint64>(buffer.size()));
        decoder->ranOut_ = size <= 0;
        decoder->source_.next_input_byte = decoder->ranOut_ ? end.data() : buffer.data();
        decoder->source_.bytes_in_buffer = decoder->ranOut_ ? end.size() : static_cast<std::size_t>(size);
        return TRUE;
    }

    static void skip(j_decompress_ptr info, long count)
    {
        jpeg_source_mgr& source = *info->src;
        while (count > 0) {
            if (source.bytes_in_buffer == 0) fill(info);
            const auto part = std::min(static_cast<std::size_t>(count), source.bytes_in_buffer);
            source.next_input_byte += part;
            source.bytes_in_buffer -= part;
            count -= static_cast<long>(part);
            if (static_cast<JpegDecoder*>(info->client_data)->ranOut_) return;
        }
    }

    QIODevice& device_;
    const std::stop_token& stop_;
    bool ranOut_ = false;
    std::array<JOCTET, 1 << 16> buffer_;
    jpeg_error_mgr errors_ = {};
    jpeg_source_mgr source_ = {};
    jpeg_progress_mgr progress_ = {};
    jpeg_decompress_struct info_ = {};
    std::jmp_buf back_;
};

bool isCmyk(const jpeg_decompress_struct& info)
{
    return info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
}

bool isGrey(const jpeg_decompress_struct& info)
{
    return info.jpeg_color_space == JCS_GRAYSCALE;
}

void checkScans(const jpeg_decompress_struct& info, const JpegSegments& segments, std::int64_t fileSize)
{
    // The passes build on coefficients of two bytes, which are kept for the whole picture.
    if (segments.scans > 1) checkPageSize(info.image_width, info.image_height, 2 * info.num_components);
    const double blocks = 1.0 * info.image_width * info.image_height * info.num_components / 64;
    checkClaim(info.image_width, info.image_height, info.num_components, static_cast<double>(fileSize),
               segments.isArithmetic ? largestArithmeticRatio : largestRatio);
    if (segments.scans > usualScans && blocks * segments.scans > mostBlocks)
        throw Failure({QT_TRANSLATE_NOOP("quillfern::Failure",
                                         "The picture is coded in %1 passes, too many for one of its size."),
                       {QString::number(segments.scans)}});
}

void decodeRows(JpegDecoder& decoder, QImage& image, const std::stop_token& stop)
{
    jpeg_decompress_struct& info = decoder.info();
    std::vector<uchar> inks(isCmyk(info) ? std::size_t{info.image_width} * 4 : 0);
    std::optional<CmykColours> colours;
    if (!inks.empty()) colours.emplace(decoder.colourProfile(), info.saw_Adobe_marker != 0);
    for (int y = 0; y < image.height(); ++y) {
        throwIfCancelled(stop);
        uchar* row = colours ? inks.data() : image.scanLine(y);
        decoder.run([&] { jpeg_read_scanlines(&info, &row, 1); });
        if (colours) colours->convert(inks.data(), info.image_width, image.scanLine(y));
    }
}

} // namespace

JpegReader::JpegReader(std::unique_ptr<QIODevice> device, const std::stop_token& stop)
    : device_(std::move(device)), segments_(readJpegSegments(*device_, stop))
{
    const auto decoder = std::make_unique<JpegDecoder>(*device_, stop);
    const jpeg_decompress_struct& info = decoder->info();
    const QSize size(static_cast<int>(info.image_width), static_cast<int>(info.image_height));
    describe(size, isGrey(info) ? 1 : 3, segments_.dotsPerInch, segments_.orientation);
    checkScans(info, segments_, device_->size());
}

bool JpegReader::hasHeader(QIODevice& file)
{
    try {
        const std::stop_token noStop;
        const auto decoder = std::make_unique<JpegDecoder>(file, noStop);
        return true;
    } catch (const Failure&) {
        return false;
    }
}

RasterPage JpegReader::readPage(const std::stop_token& stop)
{
    if (wasRead_) throwDamaged();
    wasRead_ = true;
    // Where a picture is coded in several passes, every pixel needs the last of them.
    if (segments_.scans > 1 && !segments_.hasEnd) throwDamaged();
    const auto decoder = std::make_unique<JpegDecoder>(*device_, stop);
    jpeg_decompress_struct& info = decoder->info();
    RasterPage page;
    page.image = makePageImage(info.image_width, info.image_height,
                               isGrey(info) ? QImage::Format_Grayscale8 : QImage::Format_RGB888);
    info.out_color_space = isGrey(info) ? JCS_GRAYSCALE : isCmyk(info) ? JCS_CMYK : JCS_RGB;
    decoder->run([&] { jpeg_start_decompress(&info); });
    decodeRows(*decoder, page.image, stop);
    if (!isCmyk(info)) page.colourProfile = profileFor(decoder->colourProfile(), isGrey(info));
    page.tags = segments_.tags;
    page.image = upright(std::move(page.image), orientation());
    return page;
}

} // namespace quillfern::raster
