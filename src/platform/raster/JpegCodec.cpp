#include "platform/raster/JpegCodec.h"

#include "platform/raster/JpegBlocks.h"
#include "platform/system/Failure.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <turbojpeg.h>

namespace quillfern::raster {

namespace {

constexpr int bestQuality = 100;
constexpr int side = JpegBlocks::side; ///< of the blocks that JPEG codes independently of each other

struct HandleFree
{
    void operator()(void* handle) const { tjDestroy(handle); }
};
using Handle = std::unique_ptr<void, HandleFree>;

[[noreturn]] void fail(const Handle& handle)
{
    throw Failure(Reason(QT_TRANSLATE_NOOP("quillfern::Failure", "A page could not be stored as JPEG."))
                      .with(QString::fromLatin1(handle ? tjGetErrorStr2(handle.get())
                                                       : "There is not enough memory.")));
}

int pixelFormat(int channels)
{
    return channels == 1 ? TJPF_GRAY : TJPF_RGB;
}

int sampling(int channels)
{
    return channels == 1 ? TJSAMP_GRAY : TJSAMP_444;
}

/// One block of the page, inside the strip.
struct Block
{
    uchar* pixels;
    int columns; ///< 8 but at the right edge
    int rows;    ///< 8 but at the bottom
};

/// True when the coding leaves the block as it is: one shade of grey all over is coded without loss.
bool isPlainGrey(const Block& block, std::size_t pitch, int channels)
{
    const uchar grey = block.pixels[0];
    const int bytes = block.columns * channels;
    if (bytes == side * 3) { // the usual case, eight bytes at a time
        const std::uint64_t all = grey * 0x0101010101010101ULL;
        std::uint64_t different = 0;
        for (int y = 0; y < block.rows; ++y) {
            std::uint64_t words[3];
            std::memcpy(words, block.pixels + static_cast<std::size_t>(y) * pitch, sizeof words);
            different |= (words[0] ^ all) | (words[1] ^ all) | (words[2] ^ all);
        }
        return different == 0;
    }
    for (int y = 0; y < block.rows; ++y) {
        const uchar* row = block.pixels + static_cast<std::size_t>(y) * pitch;
        if (!std::all_of(row, row + bytes, [grey](uchar value) { return value == grey; })) return false;
    }
    return true;
}

/// True for a block of colours that are all grey: then only the brightness is coded, and the parts of colour
/// stay what they are.
bool isNeutral(const Block& block, std::size_t pitch)
{
    for (int y = 0; y < block.rows; ++y) {
        const uchar* pixel = block.pixels + static_cast<std::size_t>(y) * pitch;
        unsigned different = 0;
        for (const uchar* end = pixel + block.columns * 3; pixel < end; pixel += 3)
            different |= static_cast<unsigned>((pixel[0] ^ pixel[1]) | (pixel[0] ^ pixel[2]));
        if (different != 0) return false;
    }
    return true;
}

uchar clamped(int value)
{
    return static_cast<uchar>(std::clamp(value, 0, 255));
}

/// The blocks that the coding changes, a few at a time.
class BlockGatherer
{
  public:
    /// Of the `channels` that a pixel has in the page, one of three is coded where all are the same.
    BlockGatherer(std::size_t pitch, int channels, int coded)
        : pitch_(pitch), channels_(channels), coded_(coded)
    {
    }

    void add(const Block& block)
    {
        const int lane = count_++;
        blocks_[static_cast<std::size_t>(lane)] = block;
        for (int y = 0; y < side; ++y) {
            // At the edges the last column and the last row are repeated, as JPEG has it.
            const uchar* row = block.pixels + static_cast<std::size_t>(std::min(y, block.rows - 1)) * pitch_;
            for (int x = 0; x < side; ++x)
                take(lane, y * side + x, row + std::min(x, block.columns - 1) * channels_);
        }
        if (count_ == JpegBlocks::lanes) flush();
    }

    void flush()
    {
        for (int part = 0; part < coded_; ++part)
            planes_[static_cast<std::size_t>(part)].roundTrip();
        for (int lane = 0; lane < count_; ++lane) {
            const Block& block = blocks_[static_cast<std::size_t>(lane)];
            for (int y = 0; y < block.rows; ++y) {
                uchar* row = block.pixels + static_cast<std::size_t>(y) * pitch_;
                for (int x = 0; x < block.columns; ++x)
                    put(lane, y * side + x, row + x * channels_);
            }
        }
        count_ = 0;
    }

  private:
    // The numbers of the colours' conversion are JPEG's, with 16 bits behind the point, as libjpeg rounds
    // them.
    void take(int lane, int place, const uchar* pixel)
    {
        if (coded_ == 1) {
            planes_[0].set(lane, place, pixel[0]);
            return;
        }
        constexpr int half = 1 << 15;
        constexpr int centre = (128 << 16) + half - 1;
        const int r = pixel[0];
        const int g = pixel[1];
        const int b = pixel[2];
        planes_[0].set(lane, place, (19595 * r + 38470 * g + 7471 * b + half) >> 16);
        planes_[1].set(lane, place, (-11059 * r - 21709 * g + 32768 * b + centre) >> 16);
        planes_[2].set(lane, place, (32768 * r - 27439 * g - 5329 * b + centre) >> 16);
    }

    void put(int lane, int place, uchar* pixel) const
    {
        const int light = planes_[0].get(lane, place);
        if (coded_ == 1) {
            std::fill_n(pixel, channels_, static_cast<uchar>(light));
            return;
        }
        constexpr int half = 1 << 15;
        const int blue = planes_[1].get(lane, place) - 128;
        const int red = planes_[2].get(lane, place) - 128;
        pixel[0] = clamped(light + ((91881 * red + half) >> 16));
        pixel[1] = clamped(light + ((-22554 * blue - 46802 * red + half) >> 16));
        pixel[2] = clamped(light + ((116130 * blue + half) >> 16));
    }

    std::size_t pitch_;
    int channels_;
    int coded_;
    int count_ = 0;
    std::array<Block, JpegBlocks::lanes> blocks_ = {};
    std::array<JpegBlocks, 3> planes_;
};

} // namespace

void jpegRoundTrip(uchar* pixels, int width, int rows, int channels)
{
    const auto pitch = static_cast<std::size_t>(width) * static_cast<std::size_t>(channels);
    BlockGatherer all(pitch, channels, channels);
    BlockGatherer neutral(pitch, channels, 1);
    for (int y = 0; y < rows; y += side) {
        uchar* row = pixels + static_cast<std::size_t>(y) * pitch;
        for (int x = 0; x < width; x += side) {
            const Block block{row + static_cast<std::size_t>(x * channels), std::min(side, width - x),
                              std::min(side, rows - y)};
            if (isPlainGrey(block, pitch, channels)) continue;
            (channels == 3 && isNeutral(block, pitch) ? neutral : all).add(block);
        }
    }
    all.flush();
    neutral.flush();
}

QByteArray encodeJpeg(const uchar* pixels, int width, int rows, int channels, int pitch)
{
    const Handle coder(tjInitCompress());
    if (!coder) fail(coder);
    QByteArray bytes(static_cast<qsizetype>(tjBufSize(width, rows, sampling(channels))), Qt::Uninitialized);
    auto* buffer = reinterpret_cast<uchar*>(bytes.data());
    auto size = static_cast<unsigned long>(bytes.size());
    if (tjCompress2(coder.get(), pixels, width, pitch, rows, pixelFormat(channels), &buffer, &size,
                    sampling(channels), bestQuality, TJFLAG_NOREALLOC) != 0)
        fail(coder);
    return {bytes.constData(), static_cast<qsizetype>(size)}; // a copy, which leaves no hole
}

} // namespace quillfern::raster
