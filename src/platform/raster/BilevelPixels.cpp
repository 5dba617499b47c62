#include "platform/raster/BilevelPixels.h"

#include "platform/raster/RasterLimits.h"

#include <QtEndian>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace quillfern::raster {

namespace {

/// For every byte of eight bits, its pixels: 0 for a zero bit and 255 for a one.
constexpr auto bitPixels = [] {
    std::array<std::array<uchar, 8>, 256> table = {};
    for (unsigned byte = 0; byte < table.size(); ++byte)
        for (unsigned bit = 0; bit < 8; ++bit)
            table[byte][bit] = (byte >> (7 - bit) & 1U) != 0 ? 255 : 0;
    return table;
}();

unsigned flipFor(bool isWhiteZero)
{
    return isWhiteZero ? 0xFFU : 0U;
}

} // namespace

void unpackBits(const uchar* source, std::size_t count, unsigned flip, uchar* target)
{
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8)
        std::memcpy(target + i, bitPixels[source[i / 8] ^ flip].data(), 8);
    for (; i < count; ++i)
        target[i] = bitPixels[source[i / 8] ^ flip][i % 8];
}

void packBits(const uchar* source, std::size_t count, unsigned flip, uchar* target)
{
    std::size_t x = 0;
    for (; x + 8 <= count; x += 8) {
        // The high bit of each pixel moves to its place in the top byte; no two of the products meet.
        const auto highBits = qFromLittleEndian<quint64>(source + x) >> 7U & 0x0101010101010101U;
        *target++ = static_cast<uchar>((highBits * 0x8040201008040201U >> 56U) ^ flip);
    }
    if (x == count) return;
    unsigned byte = 0;
    for (unsigned bit = 0; x + bit < count; ++bit)
        byte |= (source[x + bit] >> 7U) << (7 - bit);
    *target = static_cast<uchar>(byte ^ flip);
}

QRect patchRect(const QImage& page, const QRectF& wanted)
{
    // A mark whose coordinates are not finite may be anywhere, so the whole page is taken.
    const bool isKnown = std::isfinite(wanted.x() + wanted.y() + wanted.width() + wanted.height());
    const QRect rect = isKnown ? (wanted & QRectF(page.rect())).toAlignedRect() & page.rect() : page.rect();
    if (rect.isEmpty()) return {};
    QRect whole = rect;
    whole.setLeft(rect.left() & ~7);
    whole.setRight(std::min(rect.right() | 7, page.width() - 1));
    return whole;
}

QImage takePatch(const QImage& page, const QRect& rect, bool isWhiteZero)
{
    QImage patch = makePageImage(rect.width(), rect.height(), QImage::Format_Grayscale8);
    for (int y = 0; y < rect.height(); ++y)
        unpackBits(page.constScanLine(rect.top() + y) + rect.left() / 8,
                   static_cast<std::size_t>(rect.width()), flipFor(isWhiteZero), patch.scanLine(y));
    return patch;
}

void putPatch(const QImage& patch, const QRect& rect, bool isWhiteZero, QImage& page)
{
    for (int y = 0; y < rect.height(); ++y)
        packBits(patch.constScanLine(y), static_cast<std::size_t>(rect.width()), flipFor(isWhiteZero),
                 page.scanLine(rect.top() + y) + rect.left() / 8);
}

} // namespace quillfern::raster
