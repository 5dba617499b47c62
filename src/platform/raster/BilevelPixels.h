#pragma once

#include <QImage>
#include <QRect>
#include <QRectF>
#include <cstddef>

namespace quillfern::raster {

// Stamps cannot be painted on pages of one bit a pixel. The part of the page that a stamp covers is expanded
// to one byte a pixel, painted on, and packed again.

/// Expands `count` bits of a row, the high bit of each byte first, to `count` bytes: 255 for a one and 0 for
/// a zero. `flip` is 0xFF to exchange ones and zeros and 0 otherwise, here and in packBits().
void unpackBits(const uchar* source, std::size_t count, unsigned flip, uchar* target);

/// The reverse of unpackBits(): bytes from 128 up become ones. The bits behind the last pixel are zero before
/// the flip.
void packBits(const uchar* source, std::size_t count, unsigned flip, uchar* target);

/// The part of a page of one bit a pixel that holds `wanted`, grown to whole bytes and cut at the page's
/// edges; empty when `wanted` lies outside the page.
[[nodiscard]] QRect patchRect(const QImage& page, const QRectF& wanted);

/// The pixels of a patchRect() as Grayscale8.
[[nodiscard]] QImage takePatch(const QImage& page, const QRect& rect, bool isWhiteZero);
/// Writes the pixels of a patch back into the page, each as black or white, whichever is nearer.
void putPatch(const QImage& patch, const QRect& rect, bool isWhiteZero, QImage& page);

} // namespace quillfern::raster
