#pragma once

#include <QtGlobal>
#include <cstddef>

namespace quillfern::raster {

/// The samples of a TIFF's rows as bytes: integers of 1 to 16, 24 and 32 bits, which fill the range of their
/// bits, and floating-point numbers of 16, 32 and 64 bits.
class TiffSamples
{
  public:
    /// `isIndex` leaves integers of up to 8 bits as they are instead of stretching them.
    TiffSamples(unsigned bits, bool isFloat, bool isIndex) : bits_(bits), isFloat_(isFloat), isIndex_(isIndex)
    {
    }

    [[nodiscard]] static bool canRead(unsigned bits, bool isFloat);

    /// `count` samples that lie side by side, the high bits first, larger ones in the machine's order of
    /// bytes.
    void unpack(const uchar* source, std::size_t count, uchar* target) const;
    /// Widens the range of floating-point numbers by these samples, of which each `step` begin with `used`
    /// that count. Without a call the range is that from 0 to 1, and it never is smaller.
    void measure(const uchar* source, std::size_t count, std::size_t step, std::size_t used);

  private:
    [[nodiscard]] quint32 integer(const uchar* source, std::size_t i, std::size_t count) const;
    [[nodiscard]] double number(const uchar* source, std::size_t i) const;

    unsigned bits_;
    bool isFloat_;
    bool isIndex_;
    double least_ = 0;
    double largest_ = 1;
};

} // namespace quillfern::raster
