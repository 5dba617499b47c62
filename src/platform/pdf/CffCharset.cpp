#include "platform/pdf/CffCharset.h"

#include <stdexcept>

namespace quillfern::pdf {

namespace {

struct Unreadable : std::runtime_error
{
    Unreadable() : std::runtime_error("unreadable CFF table") {}
};

class Reader
{
  public:
    explicit Reader(const QByteArray& bytes, std::size_t position = 0) : bytes_(bytes), position_(position) {}

    unsigned byte()
    {
        if (position_ >= static_cast<std::size_t>(bytes_.size())) throw Unreadable();
        return static_cast<unsigned char>(bytes_[static_cast<qsizetype>(position_++)]);
    }
    unsigned number(int size)
    {
        unsigned value = 0;
        for (int i = 0; i < size; ++i)
            value = value << 8 | byte();
        return value;
    }
    void seek(std::size_t position) { position_ = position; }
    [[nodiscard]] std::size_t position() const { return position_; }

  private:
    const QByteArray& bytes_;
    std::size_t position_;
};

struct Index
{
    unsigned count = 0;
    std::size_t first = 0; ///< where the first object starts
    std::size_t firstEnd = 0;
    std::size_t end = 0; ///< where the index ends
};

Index readIndex(Reader& reader)
{
    Index index;
    index.count = reader.number(2);
    index.end = reader.position();
    if (index.count == 0) return index;
    const int offsetSize = static_cast<int>(reader.byte());
    if (offsetSize < 1 || offsetSize > 4) throw Unreadable();
    const std::size_t offsets = reader.position();
    const std::size_t base =
        offsets + (std::size_t{index.count} + 1) * static_cast<std::size_t>(offsetSize) - 1;
    index.first = base + reader.number(offsetSize);
    index.firstEnd = base + reader.number(offsetSize);
    reader.seek(offsets + std::size_t{index.count} * static_cast<std::size_t>(offsetSize));
    index.end = base + reader.number(offsetSize);
    return index;
}

struct TopDict
{
    bool cidKeyed = false;
    std::size_t charset = 0;
    std::size_t charStrings = 0;
};

TopDict readTopDict(Reader& reader, std::size_t end)
{
    constexpr unsigned operatorRos = 12 << 8 | 30;
    TopDict dict;
    std::size_t operand = 0;
    while (reader.position() < end) {
        const unsigned b = reader.byte();
        if (b <= 21) {
            const unsigned op = b == 12 ? 12U << 8 | reader.byte() : b;
            if (op == operatorRos) dict.cidKeyed = true;
            if (op == 15) dict.charset = operand;
            if (op == 17) dict.charStrings = operand;
        } else if (b == 28) {
            operand = reader.number(2);
        } else if (b == 29) {
            operand = reader.number(4);
        } else if (b == 30) { // a real number, in nibbles up to an F
            for (;;) {
                const unsigned nibbles = reader.byte();
                if ((nibbles & 0xF) == 0xF || nibbles >> 4 == 0xF) break;
            }
        } else if (b <= 246) {
            operand = b - 139;
        } else if (b <= 250) {
            operand = (b - 247) * 256 + reader.byte() + 108;
        } else {
            operand = 0; // a negative number, which no offset is
            reader.byte();
        }
    }
    return dict;
}

std::vector<std::uint16_t> readCharset(Reader& reader, std::size_t glyphs)
{
    std::vector<std::uint16_t> cids{0};
    const unsigned format = reader.byte();
    if (format > 2) throw Unreadable();
    while (cids.size() < glyphs) {
        const unsigned first = reader.number(2);
        const unsigned left = format == 0 ? 0 : reader.number(format == 1 ? 1 : 2);
        for (unsigned i = 0; i <= left && cids.size() < glyphs; ++i)
            cids.push_back(static_cast<std::uint16_t>(first + i));
    }
    return cids;
}

} // namespace

std::optional<std::vector<std::uint16_t>> cidsByGlyph(const QByteArray& cffTable)
{
    try {
        Reader reader(cffTable);
        reader.seek(2);
        reader.seek(reader.byte());         // behind the header
        reader.seek(readIndex(reader).end); // font names
        const Index topDicts = readIndex(reader);
        if (topDicts.count == 0) return std::nullopt;
        reader.seek(topDicts.first);
        const TopDict dict = readTopDict(reader, topDicts.firstEnd);
        if (!dict.cidKeyed) return std::vector<std::uint16_t>{};
        // The predefined charsets, 0 to 2, hold glyph names and no CIDs.
        if (dict.charset <= 2 || dict.charStrings == 0) return std::nullopt;
        reader.seek(dict.charStrings);
        const unsigned glyphs = reader.number(2);
        reader.seek(dict.charset);
        return readCharset(reader, glyphs);
    } catch (const Unreadable&) {
        return std::nullopt;
    }
}

} // namespace quillfern::pdf
