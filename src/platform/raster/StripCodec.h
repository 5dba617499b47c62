#pragma once

#include <QByteArray>
#include <QtGlobal>
#include <array>
#include <cstddef>
#include <cstdint>

namespace quillfern::raster {

/// How the pixels of one TIFF page are stored. Compression and photometric codes are TIFF's.
struct StripFormat
{
    std::uint32_t width = 0;
    std::uint16_t channels = 1; ///< 1, 3 or 4
    bool isBilevel = false;     ///< one bit a pixel; channels is 1 then
    bool isWhiteZero = false;
    std::uint16_t compression = 1;
    std::uint32_t group3Options = 0;
    std::array<std::uint16_t, 2> subsampling = {1, 1}; ///< of the colours of a JPEG, across and down

    [[nodiscard]] std::size_t rowBytes() const
    {
        return isBilevel ? (std::size_t{width} + 7) / 8 : std::size_t{width} * channels;
    }
    /// True when rows are stored as differences of neighbouring pixels, which halves the size of colour and
    /// grey pages.
    [[nodiscard]] bool hasPredictor() const;
    [[nodiscard]] std::uint16_t photometric() const;
    /// True for JPEG compression, where encoding a strip is already the coding at quality 100.
    [[nodiscard]] bool isJpeg() const;
};

/// The code under which pixels are stored when the document asks for `requested`: codes that cannot be
/// written or do not suit the pixels give LZW.
[[nodiscard]] std::uint16_t suitableCompression(std::int32_t requested, const StripFormat& format);

/// True for a row (of one bit a pixel) that can be written under the format's fax code but that libtiff
/// cannot read: its decoder has room for as many runs as the row has pixels, rounded up to 32, and a row of
/// single pixels that begins with a one has one run more.
[[nodiscard]] bool hasTooManyRuns(const StripFormat& format, const uchar* row);

/// Encodes whole rows (rowBytes() each, without padding) as one strip. The rows are overwritten meanwhile.
/// May be called from several threads at once. Throws Failure.
[[nodiscard]] QByteArray encodeStrip(const StripFormat& format, QByteArray rows);

} // namespace quillfern::raster
