#pragma once

#include <QByteArray>
#include <array>
#include <cstdint>
#include <optional>

namespace quillfern::raster {

/// What the frame header of a JPEG says.
struct PlainJpeg
{
    int width = 0;
    int height = 0;
    int components = 1;                                ///< 1 grey, 3 YCbCr
    std::array<std::uint16_t, 2> subsampling = {1, 1}; ///< of the colours, across and down
};

/// Looks whether the bytes are a whole JPEG of the usual kind, whose pixels other formats may hold as they
/// are: 8 bits, grey or YCbCr, with the colours at most subsampled. Nothing for any other.
[[nodiscard]] std::optional<PlainJpeg> readPlainJpeg(const QByteArray& bytes);

} // namespace quillfern::raster
