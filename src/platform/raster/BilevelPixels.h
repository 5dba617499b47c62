#pragma once

#include <QImage>
#include <cstddef>

namespace quillfern::raster {

// Pages of one bit a pixel are drawn on a byte a pixel at a time, and only where something is drawn.

/// Eight bits of a row, the high one first, to eight bytes: 255 for a one and 0 for a zero. `flip` is 0xFF to
/// exchange the two, 0 otherwise, as below.
void unpackBits(const uchar* source, std::size_t count, unsigned flip, uchar* target);

/// The other way: bytes from 128 up are ones. The bits behind the last pixel are zero before the flip.
void packBits(const uchar* source, std::size_t count, unsigned flip, uchar* target);

/// The part of a page of one bit a pixel that holds `wanted`, grown to whole bytes and cut at the page's
/// edges; empty when they do not meet.
[[nodiscard]] QRect patchRect(const QImage& page, const QRectF& wanted);

/// The pixels of a patchRect() as Grayscale8.
[[nodiscard]] QImage takePatch(const QImage& page, const QRect& rect, bool isWhiteZero);
/// Puts them back, each as black or white, whichever is nearer.
void putPatch(const QImage& patch, const QRect& rect, bool isWhiteZero, QImage& page);

} // namespace quillfern::raster
