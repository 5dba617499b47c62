#include "platform/raster/TiffDirectory.h"

#include <QtEndian>
#include <algorithm>
#include <cmath>
#include <tiff.h>

namespace quillfern::raster {

namespace {

template <class T>
void put(QByteArray& bytes, T value)
{
    const T little = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
}

} // namespace

void TiffDirectory::shorts(std::uint16_t tag, const std::vector<std::uint16_t>& values)
{
    QByteArray data;
    for (const std::uint16_t value : values)
        put(data, value);
    entries_.push_back({tag, TIFF_SHORT, values.size(), data});
}

void TiffDirectory::number(std::uint16_t tag, std::uint32_t value)
{
    QByteArray data;
    put(data, value);
    entries_.push_back({tag, TIFF_LONG, 1, data});
}

void TiffDirectory::offsets(std::uint16_t tag, const std::vector<std::uint64_t>& values)
{
    QByteArray data;
    for (const std::uint64_t value : values)
        word(data, value);
    entries_.push_back(
        {tag, static_cast<std::uint16_t>(isBig_ ? TIFF_LONG8 : TIFF_LONG), values.size(), data});
}

void TiffDirectory::ratio(std::uint16_t tag, double value)
{
    constexpr std::uint32_t finest = 1000000;
    constexpr double largest = 4294967295.0;
    std::uint32_t divisor = 1;
    while (divisor < finest && value * divisor != std::floor(value * divisor) &&
           value * divisor * 10 < largest)
        divisor *= 10;
    QByteArray data;
    put(data, static_cast<std::uint32_t>(std::clamp(std::round(value * divisor), 1.0, largest)));
    put(data, divisor);
    entries_.push_back({tag, TIFF_RATIONAL, 1, data});
}

void TiffDirectory::bytes(std::uint16_t tag, std::uint16_t type, const QByteArray& value)
{
    entries_.push_back({tag, type, static_cast<std::uint64_t>(value.size()), value});
}

void TiffDirectory::elsewhere(std::uint16_t tag, std::uint16_t type, std::uint64_t offset, std::uint64_t size)
{
    entries_.push_back({tag, type, size, {}, offset});
}

QByteArray TiffDirectory::take(std::uint64_t at, bool isLast)
{
    std::sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) { return a.tag < b.tag; });
    const qsizetype wordSize = isBig_ ? 8 : 4;
    const qsizetype countSize = isBig_ ? 8 : 2;
    const auto count = static_cast<qsizetype>(entries_.size());
    const qsizetype size = countSize + count * (4 + 2 * wordSize) + wordSize;

    QByteArray bytes;
    QByteArray behind;
    if (isBig_)
        put(bytes, static_cast<std::uint64_t>(count));
    else
        put(bytes, static_cast<std::uint16_t>(count));
    for (const Entry& entry : entries_) {
        put(bytes, entry.tag);
        put(bytes, entry.type);
        word(bytes, entry.count);
        if (entry.offset != 0) {
            word(bytes, entry.offset);
        } else if (entry.data.size() <= wordSize) {
            bytes += entry.data.leftJustified(wordSize, '\0');
        } else {
            word(bytes, at + static_cast<std::uint64_t>(size + behind.size()));
            behind += entry.data;
            if (behind.size() % 2 != 0) behind += '\0';
        }
    }
    word(bytes, isLast ? 0 : at + static_cast<std::uint64_t>(size + behind.size()));
    return bytes + behind;
}

QByteArray TiffDirectory::header(bool isBig, std::uint64_t firstDirectory)
{
    QByteArray bytes("II");
    put(bytes, static_cast<std::uint16_t>(isBig ? 43 : 42));
    if (isBig) {
        put(bytes, std::uint16_t{8}); // bytes an offset
        put(bytes, std::uint16_t{0});
    }
    TiffDirectory(isBig).word(bytes, firstDirectory);
    return bytes;
}

void TiffDirectory::word(QByteArray& bytes, std::uint64_t value) const
{
    if (isBig_)
        put(bytes, value);
    else
        put(bytes, static_cast<std::uint32_t>(value));
}

} // namespace quillfern::raster
