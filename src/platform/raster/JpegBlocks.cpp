#include "platform/raster/JpegBlocks.h"

namespace quillfern::raster {

namespace {

// Factors of the transformation, with 13 bits behind the point; named by their values.
constexpr int fraction = 13;
constexpr std::int32_t f0298 = 2446;
constexpr std::int32_t f0390 = 3196;
constexpr std::int32_t f0541 = 4433;
constexpr std::int32_t f0765 = 6270;
constexpr std::int32_t f0899 = 7373;
constexpr std::int32_t f1175 = 9633;
constexpr std::int32_t f1501 = 12299;
constexpr std::int32_t f1847 = 15137;
constexpr std::int32_t f1961 = 16069;
constexpr std::int32_t f2053 = 16819;
constexpr std::int32_t f2562 = 20995;
constexpr std::int32_t f3072 = 25172;

constexpr int extra = 2; ///< bits that are kept between the two passes
constexpr int middle = 128;

/// Without the last bits, rounded.
template <int bits, class T>
inline void descale(T& value)
{
    value = (value + (1 << (bits - 1))) >> bits;
}

/// The odd half, which both directions share: four inputs become the four sums that they are part of.
template <class T>
inline void rotate(T& a, T& b, T& c, T& d)
{
    T z1 = a + d;
    T z2 = b + c;
    T z3 = a + c;
    T z4 = b + d;
    const T z5 = (z3 + z4) * f1175;
    z1 *= -f0899;
    z2 *= -f2562;
    z3 = z3 * -f1961 + z5;
    z4 = z4 * -f0390 + z5;
    a = a * f0298 + z1 + z3;
    b = b * f2053 + z2 + z4;
    c = c * f3072 + z2 + z3;
    d = d * f1501 + z1 + z4;
}

} // namespace

template <bool isFirst>
void JpegBlocks::forward(Lanes* line, int step)
{
    constexpr int shift = isFirst ? fraction - extra : fraction + extra;
    Lanes& l0 = line[0];
    Lanes& l1 = line[step];
    Lanes& l2 = line[2 * step];
    Lanes& l3 = line[3 * step];
    Lanes& l4 = line[4 * step];
    Lanes& l5 = line[5 * step];
    Lanes& l6 = line[6 * step];
    Lanes& l7 = line[7 * step];
    const Lanes sum0 = l0 + l7;
    const Lanes sum1 = l1 + l6;
    const Lanes sum2 = l2 + l5;
    const Lanes sum3 = l3 + l4;
    Lanes odd4 = l3 - l4;
    Lanes odd5 = l2 - l5;
    Lanes odd6 = l1 - l6;
    Lanes odd7 = l0 - l7;
    const Lanes even10 = sum0 + sum3;
    const Lanes even13 = sum0 - sum3;
    const Lanes even11 = sum1 + sum2;
    const Lanes even12 = sum1 - sum2;
    l0 = even10 + even11;
    l4 = even10 - even11;
    if constexpr (isFirst) {
        l0 <<= extra;
        l4 <<= extra;
    } else {
        descale<extra>(l0);
        descale<extra>(l4);
    }
    const Lanes z = (even12 + even13) * f0541;
    l2 = z + even13 * f0765;
    l6 = z - even12 * f1847;
    rotate(odd4, odd5, odd6, odd7);
    l7 = odd4;
    l5 = odd5;
    l3 = odd6;
    l1 = odd7;
    for (Lanes* each : {&l1, &l2, &l3, &l5, &l6, &l7})
        descale<shift>(*each);
}

template <bool isFirst>
void JpegBlocks::backward(Lanes* line, int step)
{
    constexpr int shift = isFirst ? fraction - extra : fraction + extra + 3;
    const Lanes z = (line[2 * step] + line[6 * step]) * f0541;
    const Lanes even2 = z - line[6 * step] * f1847;
    const Lanes even3 = z + line[2 * step] * f0765;
    const Lanes even0 = (line[0] + line[4 * step]) << fraction;
    const Lanes even1 = (line[0] - line[4 * step]) << fraction;
    Lanes odd0 = line[7 * step];
    Lanes odd1 = line[5 * step];
    Lanes odd2 = line[3 * step];
    Lanes odd3 = line[step];
    rotate(odd0, odd1, odd2, odd3);
    line[0] = even0 + even3 + odd3;
    line[7 * step] = even0 + even3 - odd3;
    line[step] = even1 + even2 + odd2;
    line[6 * step] = even1 + even2 - odd2;
    line[2 * step] = even1 - even2 + odd1;
    line[5 * step] = even1 - even2 - odd1;
    line[3 * step] = even0 - even3 + odd0;
    line[4 * step] = even0 - even3 - odd0;
    for (int i = 0; i < side; ++i)
        descale<shift>(line[i * step]);
}

void JpegBlocks::roundTrip()
{
    Lanes* all = samples_;
    for (Lanes& sample : samples_)
        sample -= middle;
    for (int y = 0; y < side; ++y)
        forward<true>(all + y * side, 1);
    for (int x = 0; x < side; ++x)
        forward<false>(all + x, side);
    for (Lanes& value : samples_) { // the transformation's factor of eight, rounded away from zero
        const Lanes sign = value >> 31;
        value = (((value ^ sign) - sign + 4) >> 3 ^ sign) - sign;
    }
    for (int x = 0; x < side; ++x)
        backward<true>(all + x, side);
    for (int y = 0; y < side; ++y)
        backward<false>(all + y * side, 1);
    for (Lanes& sample : samples_) {
        sample += middle;
        sample &= ~(sample >> 31); // below 0
        const Lanes above = (255 - sample) >> 31;
        sample = (sample & ~above) | (above & 255);
    }
}

} // namespace quillfern::raster
