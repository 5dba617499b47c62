#include "platform/raster/JpegCodec.h"

#include "platform/system/Failure.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <turbojpeg.h>
#include <vector>

namespace quillfern::raster {

namespace {

constexpr int bestQuality = 100;
constexpr int side = 8; ///< of the blocks that JPEG codes independently of each other

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

/// JPEG coder and decoder for rows of blocks.
class RoundTrip
{
  public:
    explicit RoundTrip(int channels)
        : coder_(tjInitCompress()), decoder_(tjInitDecompress()), channels_(channels)
    {
        if (!coder_) fail(coder_);
        if (!decoder_) fail(decoder_);
    }

    void run(uchar* pixels, int width)
    {
        const int pitch = width * channels_;
        coded_.resize(std::max<std::size_t>(coded_.size(), tjBufSize(width, side, sampling(channels_))));
        uchar* buffer = coded_.data();
        auto size = static_cast<unsigned long>(coded_.size());
        if (tjCompress2(coder_.get(), pixels, width, pitch, side, pixelFormat(channels_), &buffer, &size,
                        sampling(channels_), bestQuality, TJFLAG_NOREALLOC) != 0)
            fail(coder_);
        if (tjDecompress2(decoder_.get(), buffer, size, pixels, width, pitch, side, pixelFormat(channels_),
                          0) != 0)
            fail(decoder_);
    }

  private:
    Handle coder_;
    Handle decoder_;
    int channels_;
    std::vector<uchar> coded_;
};

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

/// The blocks that the coding changes are gathered into a wide picture of eight rows, coded, and put back.
class BlockGatherer
{
  public:
    BlockGatherer(std::size_t pitch, int channels)
        : pitch_(pitch), channels_(channels), trip_(channels),
          gathered_(static_cast<std::size_t>(capacity * side * side * channels))
    {
        blocks_.reserve(capacity);
    }

    void add(const Block& block)
    {
        blocks_.push_back(block);
        if (blocks_.size() == capacity) flush();
    }

    void flush()
    {
        if (blocks_.empty()) return;
        const auto blockBytes = static_cast<std::size_t>(side * channels_);
        const std::size_t wide = blocks_.size() * blockBytes;
        for (std::size_t i = 0; i < blocks_.size(); ++i)
            for (int y = 0; y < side; ++y)
                take(blocks_[i], y, gathered_.data() + static_cast<std::size_t>(y) * wide + i * blockBytes);
        trip_.run(gathered_.data(), static_cast<int>(blocks_.size()) * side);
        for (std::size_t i = 0; i < blocks_.size(); ++i)
            for (int y = 0; y < blocks_[i].rows; ++y)
                std::memcpy(blocks_[i].pixels + static_cast<std::size_t>(y) * pitch_,
                            gathered_.data() + static_cast<std::size_t>(y) * wide + i * blockBytes,
                            static_cast<std::size_t>(blocks_[i].columns * channels_));
        blocks_.clear();
    }

  private:
    /// Row `y` of a block; at the edges the last column and the last row are repeated, as JPEG has it.
    void take(const Block& block, int y, uchar* target) const
    {
        const uchar* row = block.pixels + static_cast<std::size_t>(std::min(y, block.rows - 1)) * pitch_;
        const auto bytes = static_cast<std::size_t>(block.columns * channels_);
        std::memcpy(target, row, bytes);
        for (int x = block.columns; x < side; ++x)
            std::memcpy(target + x * channels_, row + bytes - channels_, static_cast<std::size_t>(channels_));
    }

    static constexpr std::size_t capacity = 512;

    std::size_t pitch_;
    int channels_;
    RoundTrip trip_;
    std::vector<uchar> gathered_;
    std::vector<Block> blocks_;
};

} // namespace

void jpegRoundTrip(uchar* pixels, int width, int rows, int channels)
{
    const auto pitch = static_cast<std::size_t>(width) * static_cast<std::size_t>(channels);
    BlockGatherer gatherer(pitch, channels);
    for (int y = 0; y < rows; y += side) {
        uchar* row = pixels + static_cast<std::size_t>(y) * pitch;
        for (int x = 0; x < width; x += side) {
            const Block block{row + static_cast<std::size_t>(x * channels), std::min(side, width - x),
                              std::min(side, rows - y)};
            if (!isPlainGrey(block, pitch, channels)) gatherer.add(block);
        }
    }
    gatherer.flush();
}

QByteArray encodeJpeg(const uchar* pixels, int width, int rows, int channels)
{
    const Handle coder(tjInitCompress());
    if (!coder) fail(coder);
    QByteArray bytes(static_cast<qsizetype>(tjBufSize(width, rows, sampling(channels))), Qt::Uninitialized);
    auto* buffer = reinterpret_cast<uchar*>(bytes.data());
    auto size = static_cast<unsigned long>(bytes.size());
    if (tjCompress2(coder.get(), pixels, width, 0, rows, pixelFormat(channels), &buffer, &size,
                    sampling(channels), bestQuality, TJFLAG_NOREALLOC) != 0)
        fail(coder);
    bytes.resize(static_cast<qsizetype>(size));
    bytes.squeeze();
    return bytes;
}

} // namespace quillfern::raster
