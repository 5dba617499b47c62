#include "platform/raster/TiffSamples.h"

#include <QFloat16>
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace quillfern::raster {

namespace {

constexpr quint64 full = 255;

template <class T>
T valueAt(const uchar* source, std::size_t i)
{
    T value; // rows need not be aligned
    std::memcpy(&value, source + sizeof(T) * i, sizeof value);
    return value;
}

} // namespace

bool TiffSamples::canRead(unsigned bits, bool isFloat)
{
    if (isFloat) return bits == 16 || bits == 32 || bits == 64;
    return (bits >= 1 && bits <= 16) || bits == 24 || bits == 32;
}

quint32 TiffSamples::integer(const uchar* source, std::size_t i, std::size_t count) const
{
    if (bits_ == 32) return valueAt<quint32>(source, i);
    if (bits_ == 24) {
        const uchar* bytes = source + 3 * i;
        constexpr bool isLittle = std::endian::native == std::endian::little;
        return static_cast<quint32>(bytes[isLittle ? 2 : 0]) << 16 | static_cast<quint32>(bytes[1]) << 8 |
               bytes[isLittle ? 0 : 2];
    }
    const std::size_t bit = i * bits_;
    const std::size_t size = (count * bits_ + 7) / 8;
    quint32 window = 0; // three bytes hold any sample of up to 16 bits
    for (std::size_t byte = bit / 8; byte < bit / 8 + 3; ++byte)
        window = window << 8 | (byte < size ? source[byte] : 0U);
    return window >> (24 - bits_ - bit % 8) & ((1U << bits_) - 1);
}

double TiffSamples::number(const uchar* source, std::size_t i) const
{
    const double value = bits_ == 16   ? static_cast<double>(static_cast<float>(valueAt<qfloat16>(source, i)))
                         : bits_ == 32 ? static_cast<double>(valueAt<float>(source, i))
                                       : valueAt<double>(source, i);
    return std::isfinite(value) ? value : 0;
}

void TiffSamples::measure(const uchar* source, std::size_t count, std::size_t step, std::size_t used)
{
    for (std::size_t i = 0; i < count; ++i) {
        if (i % step >= used) continue;
        const double value = number(source, i);
        least_ = std::min(least_, value);
        largest_ = std::max(largest_, value);
    }
}

void TiffSamples::unpack(const uchar* source, std::size_t count, uchar* target) const
{
    if (isFloat_) {
        const double scale = full / (largest_ - least_);
        for (std::size_t i = 0; i < count; ++i)
            target[i] = static_cast<uchar>(
                std::clamp(std::lround((number(source, i) - least_) * scale), 0L, static_cast<long>(full)));
    } else if (bits_ == 16) {
        for (std::size_t i = 0; i < count; ++i)
            target[i] = static_cast<uchar>((valueAt<quint16>(source, i) * 255U + 32895U) >> 16);
    } else {
        const quint64 largest = (quint64{1} << bits_) - 1;
        for (std::size_t i = 0; i < count; ++i) {
            const quint64 value = integer(source, i, count);
            target[i] = static_cast<uchar>(isIndex_ ? value : (value * full + largest / 2) / largest);
        }
    }
}

} // namespace quillfern::raster
