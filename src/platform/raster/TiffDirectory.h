#pragma once

#include <QByteArray>
#include <cstdint>
#include <vector>

namespace quillfern::raster {

/// The bytes of one TIFF directory in the making, classic or big, little-endian. Tags may be added in any
/// order.
class TiffDirectory
{
  public:
    explicit TiffDirectory(bool isBig) : isBig_(isBig) {}

    void shorts(std::uint16_t tag, const std::vector<std::uint16_t>& values);
    void number(std::uint16_t tag, std::uint32_t value);
    /// Offsets or sizes, in the width of the format.
    void offsets(std::uint16_t tag, const std::vector<std::uint64_t>& values);
    /// A positive fraction, with as many decimals as fit.
    void ratio(std::uint16_t tag, double value);
    /// Bytes of the given type: texts, whose end mark is among the bytes, plain or undefined ones.
    void bytes(std::uint16_t tag, std::uint16_t type, const QByteArray& value);
    /// The same for bytes that are in the file already: more than eight, at `offset`.
    void elsewhere(std::uint16_t tag, std::uint16_t type, std::uint64_t offset, std::uint64_t size);

    /// The bytes of the directory for the offset `at` of the file, followed by the values that do not fit
    /// into it. The next directory, if there is one, must be written directly behind them.
    [[nodiscard]] QByteArray take(std::uint64_t at, bool isLast);

    /// What a file begins with: the byte order, the version and where the first directory is.
    [[nodiscard]] static QByteArray header(bool isBig, std::uint64_t firstDirectory);

  private:
    struct Entry
    {
        std::uint16_t tag;
        std::uint16_t type;
        std::uint64_t count;
        QByteArray data;
        std::uint64_t offset = 0; ///< of bytes that stand elsewhere
    };

    void word(QByteArray& bytes, std::uint64_t value) const;

    bool isBig_;
    std::vector<Entry> entries_;
};

} // namespace quillfern::raster
