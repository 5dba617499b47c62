#include "platform/raster/FaxEncoder.h"

#include "platform/raster/FaxCodes.h"

#include <QtEndian>
#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>
#include <vector>

namespace quillfern::raster {

namespace {

/// Code words, packed from the high bits down.
class FaxWriter
{
  public:
    /// Makes room for `size` more bytes of code words.
    void reserve(std::size_t size)
    {
        const auto needed = used_ + static_cast<qsizetype>(size) + 8;
        if (needed > bytes_.size()) bytes_.resize(needed * 2);
    }

    void put(const FaxCode& code)
    {
        pending_ = pending_ << code.length | code.bits;
        bits_ += code.length;
        if (bits_ < 32) return;
        bits_ -= 32;
        qToBigEndian(static_cast<quint32>(pending_ >> bits_), bytes_.data() + used_);
        used_ += 4;
    }

    [[nodiscard]] QByteArray take()
    {
        if (bits_ > 0) qToBigEndian(pending_ << (64 - bits_), bytes_.data() + used_);
        bytes_.resize(used_ + static_cast<qsizetype>(bits_ + 7) / 8);
        bytes_.squeeze(); // strips stay in memory until they are written
        return std::move(bytes_);
    }

  private:
    QByteArray bytes_;
    qsizetype used_ = 0;
    quint64 pending_ = 0;
    unsigned bits_ = 0; ///< of pending_, below 32 between two words
};

/// Where the colour of a row changes, from left to right; the row is taken to follow a 0 bit. Changes at even
/// places are to 1.
class Changes
{
  public:
    explicit Changes(std::size_t width) : width_(width), at_(width + 64 + endMarks) { setEnd(); }

    void find(const uchar* row)
    {
        count_ = 0;
        quint64 before = 0; // the last pixel, in the lowest bit
        const std::size_t size = (width_ + 7) / 8;
        std::size_t i = 0;
        for (; i + 8 <= size; i += 8)
            before = add(qFromBigEndian<quint64>(row + i), before, i * 8);
        if (i < size) {
            std::array<uchar, 8> rest = {};
            std::memcpy(rest.data(), row + i, size - i);
            add(qFromBigEndian<quint64>(rest.data()), before, i * 8);
        }
        while (count_ > 0 && at_[count_ - 1] >= width_)
            --count_; // in the bits that fill the last byte
        setEnd();
    }

    [[nodiscard]] std::size_t count() const { return count_; }
    /// The places of the changes, followed by the width of the row three times.
    [[nodiscard]] const std::size_t* data() const { return at_.data(); }

  private:
    static constexpr std::size_t endMarks = 3;

    quint64 add(quint64 pixels, quint64 before, std::size_t x)
    {
        quint64 changes = pixels ^ (pixels >> 1U | before << 63U);
        while (changes != 0) {
            const auto bit = static_cast<unsigned>(std::countl_zero(changes));
            at_[count_++] = x + bit;
            changes ^= quint64{1} << (63U - bit);
        }
        return pixels & 1U;
    }

    void setEnd() { std::fill_n(at_.begin() + static_cast<std::ptrdiff_t>(count_), endMarks, width_); }

    std::size_t width_;
    std::size_t count_ = 0;
    std::vector<std::size_t> at_;
};

void putRun(FaxWriter& writer, const FaxRunCodes& codes, std::size_t length)
{
    for (; length >= FaxRunCodes::longest + 64; length -= FaxRunCodes::longest)
        writer.put(codes.multiples.back());
    if (length >= 64) writer.put(codes.multiples[length / 64]);
    writer.put(codes.below64[length % 64]);
}

/// One row by its differences from the row above. The names are those of the recommendation: a0 is the place
/// up to which the row is coded, a1 and a2 are the next two changes in it, b1 is the next change in the row
/// above to the colour that a1 changes to, and b2 the change behind b1.
void putRow(FaxWriter& writer, const Changes& row, const Changes& above, std::size_t width)
{
    constexpr std::size_t vertical = 3; // the largest distance of a1 from b1 in this mode
    writer.reserve(row.count() * 4 + above.count() + width / 1024 + 32);
    const std::size_t* a = row.data();
    const std::size_t* const aStart = a;
    const std::size_t* b = above.data();
    const std::size_t* const bStart = b;
    std::size_t a0 = 0;
    while (true) {
        const std::size_t a1 = a[0];
        const std::size_t b1 = b[0];
        if (b[1] < a1) {
            writer.put(faxMode::pass);
            a0 = b[1];
            b += 2;
            continue;
        }
        const std::size_t shift = a1 + vertical - b1;
        if (shift < faxMode::vertical.size()) {
            writer.put(faxMode::vertical[shift]);
            a0 = a1;
            ++a;
            b += b > bStart ? -1 : 1;
        } else {
            const bool isWhite = (a - aStart) % 2 == 0;
            writer.put(faxMode::horizontal);
            putRun(writer, isWhite ? faxWhiteRuns() : faxBlackRuns(), a1 - a0);
            putRun(writer, isWhite ? faxBlackRuns() : faxWhiteRuns(), a[1] - a1);
            a0 = a[1];
            a += 2;
        }
        if (a0 >= width) return;
        while (b[0] <= a0)
            b += 2;
    }
}

} // namespace

QByteArray encodeGroup4(const QByteArray& rows, std::size_t width)
{
    FaxWriter writer;
    Changes above(width); // the first row is coded against a white one
    Changes row(width);
    const std::size_t rowBytes = (width + 7) / 8;
    const auto* at = reinterpret_cast<const uchar*>(rows.constData());
    for (const uchar* end = at + rows.size(); at < end; at += rowBytes) {
        row.find(at);
        putRow(writer, row, above, width);
        std::swap(row, above);
    }
    writer.reserve(4);
    writer.put(faxMode::endOfLine);
    writer.put(faxMode::endOfLine);
    return writer.take();
}

} // namespace quillfern::raster
