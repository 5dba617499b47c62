#pragma once

#include <QtGlobal>
#include <cstdint>

namespace quillfern::raster {

/// Several blocks of 8 x 8 samples, side by side in vectors, which the coding of JPEG at quality 100 changes.
/// At that quality all divisors are one, so that what changes the samples is the transformation, its rounding
/// to whole numbers, and the way back: no codes need be written and read. The numbers are those of libjpeg's
/// exact integer transformations ("islow"), bit by bit.
class JpegBlocks
{
  public:
    static constexpr int side = 8;
    static constexpr int lanes = 4; ///< blocks that are handled at once

    void set(int lane, int place, int sample) { samples_[place][lane] = sample; }
    [[nodiscard]] int get(int lane, int place) const { return samples_[place][lane]; }

    /// Codes and decodes; samples of 0 to 255 stay in that range.
    void roundTrip();

  private:
    using Lanes [[gnu::vector_size(lanes * sizeof(std::int32_t))]] = std::int32_t;

    template <bool isFirst>
    static void forward(Lanes* line, int step);
    template <bool isFirst>
    static void backward(Lanes* line, int step);

    Lanes samples_[side * side] = {};
};

} // namespace quillfern::raster
