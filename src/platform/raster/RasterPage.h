#pragma once

#include "platform/raster/PageTags.h"

#include <QByteArray>
#include <QImage>
#include <QSizeF>
#include <cstdint>

namespace quillfern::raster {

/// One page of a raster document, decoded, upright.
struct RasterPage
{
    /// Grayscale8, RGB888, or RGBA8888 (the colours not multiplied by alpha), or, of a bilevel page only,
    /// Mono with the bits as the file has them; never another format.
    QImage image;
    /// The file holds one bit a pixel. An image of bytes holds 0 and 255 only when read; what has been drawn
    /// on it since may have soft edges, which are written as black or white, whichever is nearer.
    bool isBilevel = false;
    bool isWhiteZero = false;        ///< how a bilevel page is stored: zero bits are white
    std::uint32_t group3Options = 0; ///< how a fax page was coded, as TIFF's T4Options
    QByteArray colourProfile;        ///< ICC profile of the samples; empty when there is none
    PageTags tags;
    QSizeF points; ///< width and height in points, where pages of one file can differ in that; else empty

    [[nodiscard]] bool hasAlpha() const { return image.format() == QImage::Format_RGBA8888; }
    [[nodiscard]] bool isMono() const { return image.format() == QImage::Format_Mono; }
    [[nodiscard]] bool isGrey() const { return isMono() || image.format() == QImage::Format_Grayscale8; }
    /// Samples a pixel: 1, 3 or 4.
    [[nodiscard]] int channels() const { return isMono() ? 1 : image.depth() / 8; }
    /// Makes the pixels of a Mono image bytes.
    void spreadBits()
    {
        if (isMono()) image.convertTo(QImage::Format_Grayscale8);
    }
};

} // namespace quillfern::raster
