#include "platform/raster/LzwEncoder.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace quillfern::raster {

namespace {

constexpr unsigned clearCode = 256;
constexpr unsigned endCode = 257;
constexpr unsigned firstCode = 258;
constexpr unsigned lastCode = 4094; ///< the table is cleared before it would assign code 4095
constexpr unsigned narrowest = 9;

/// The strings seen since the last clear code: which code stands for "the string of this code, then this
/// byte".
class StringTable
{
  public:
    StringTable() { clear(); }

    void clear()
    {
        slots_.fill(0);
        next_ = firstCode;
        runs_[1] = 0;
        longestRun_ = 1;
    }

    /// The code of the longer string; 0 when it is new, in which case it has just been added.
    unsigned extend(unsigned prefix, unsigned byte)
    {
        const std::uint32_t key = prefix << 8 | byte;
        std::size_t slot = (key * 2654435769U) >> (32 - slotBits);
        for (; slots_[slot] != 0; slot = (slot + 1) & (slotCount - 1))
            if (slots_[slot] >> codeBits == key) return slots_[slot] & codeMask;
        slots_[slot] = key << codeBits | next_;
        if (byte == 0 && prefix == runs_[longestRun_]) runs_[++longestRun_] = next_;
        ++next_;
        return 0;
    }

    [[nodiscard]] unsigned nextCode() const { return next_; }
    [[nodiscard]] std::size_t longestRun() const { return longestRun_; }
    /// The code of `length` zero bytes, 1 to longestRun().
    [[nodiscard]] unsigned runCode(std::size_t length) const { return runs_[length]; }

  private:
    static constexpr unsigned codeBits = 12;
    static constexpr std::uint32_t codeMask = (1U << codeBits) - 1;
    static constexpr unsigned slotBits = 13;
    static constexpr std::size_t slotCount = std::size_t{1} << slotBits;

    std::array<std::uint32_t, slotCount> slots_; ///< 20 bits of key over 12 of code; 0 is free
    std::array<unsigned, lastCode> runs_ = {};
    std::size_t longestRun_ = 1;
    unsigned next_ = firstCode;
};

/// Codes of growing width, packed from the high bits down.
class CodeWriter
{
  public:
    /// Room for the worst case: every byte a code of twelve bits.
    explicit CodeWriter(qsizetype inputSize) : bytes_(inputSize + inputSize / 2 + 64, Qt::Uninitialized)
    {
        out_ = reinterpret_cast<uchar*>(bytes_.data());
    }

    void put(unsigned code)
    {
        pending_ = pending_ << width_ | code;
        bits_ += width_;
        while (bits_ >= 8) {
            bits_ -= 8;
            *out_++ = static_cast<uchar>(pending_ >> bits_);
        }
    }

    void setWidth(unsigned width) { width_ = width; }
    /// Widens when `nextCode` no longer fits; one code early, as the format has it.
    void fit(unsigned nextCode)
    {
        if (nextCode >= 1U << width_) ++width_;
    }

    [[nodiscard]] QByteArray take()
    {
        if (bits_ > 0) *out_++ = static_cast<uchar>(pending_ << (8 - bits_));
        // Strips stay in memory until they are written. A copy, because shrinking would leave holes between
        // them that the next strip's buffer does not fit into: 40 MiB for a page of colour.
        return {bytes_.constData(), out_ - reinterpret_cast<uchar*>(bytes_.data())};
    }

  private:
    QByteArray bytes_;
    uchar* out_;
    std::uint64_t pending_ = 0;
    unsigned bits_ = 0;
    unsigned width_ = narrowest;
};

/// How many zero bytes stand at `at`, counted up to `limit`.
std::size_t zerosAt(const uchar* at, std::size_t limit)
{
    std::size_t count = 0;
    for (; count + 8 <= limit; count += 8) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, at + count, 8);
        if (eight != 0) break;
    }
    while (count < limit && at[count] == 0)
        ++count;
    return count;
}

} // namespace

QByteArray encodeLzw(const QByteArray& bytes)
{
    const auto* in = reinterpret_cast<const uchar*>(bytes.constData());
    const uchar* end = in + bytes.size();
    StringTable table;
    CodeWriter writer(bytes.size());
    writer.put(clearCode);
    const auto advance = [&] {
        if (table.nextCode() < lastCode) {
            writer.fit(table.nextCode());
            return;
        }
        writer.put(clearCode);
        writer.setWidth(narrowest);
        table.clear();
    };
    while (in < end) {
        unsigned prefix = *in;
        if (prefix == 0) {
            const std::size_t run =
                zerosAt(in, std::min(table.longestRun(), static_cast<std::size_t>(end - in)));
            prefix = table.runCode(run);
            in += run;
        } else {
            ++in;
        }
        while (in < end) {
            const unsigned longer = table.extend(prefix, *in);
            if (longer == 0) break;
            prefix = longer;
            ++in;
        }
        writer.put(prefix);
        // The last string adds no entry to the table, but a decoder counts one nevertheless.
        if (in == end) {
            if (table.nextCode() + 1 < lastCode)
                writer.fit(table.nextCode() + 1);
            else {
                writer.put(clearCode);
                writer.setWidth(narrowest);
            }
        } else {
            advance();
        }
    }
    writer.put(endCode);
    return writer.take();
}

} // namespace quillfern::raster
