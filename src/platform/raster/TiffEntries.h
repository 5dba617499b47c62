#pragma once

#include <QByteArray>
#include <cstdint>
#include <vector>

namespace quillfern::raster {

class TiffFile;

/// The entries of the present directory of a TIFF as they stand in the file, for what libtiff does not pass
/// on.
class TiffEntries
{
  public:
    /// Reads the entries, as far as the file has them.
    explicit TiffEntries(const TiffFile& file);

    /// The bytes of a value, in the order of the file; none when there is no such tag or the file is too
    /// short.
    [[nodiscard]] QByteArray bytes(std::uint16_t tag) const;
    /// Where the directory and the values that its entries point to end.
    [[nodiscard]] std::uint64_t end() const { return end_; }

  private:
    struct Entry
    {
        std::uint16_t tag;
        std::uint64_t offset;
        std::uint64_t size;
    };

    template <class T>
    [[nodiscard]] T number(const QByteArray& bytes, qsizetype at) const;

    const TiffFile& file_;
    bool isLittle_ = true;
    std::vector<Entry> entries_;
    std::uint64_t end_ = 0;
};

/// True when the pages take up the whole file, so that a list of pages that breaks off behind them lacks
/// none. The file stands at its first page before and after.
[[nodiscard]] bool isFilledByPages(TiffFile& file, int count);

} // namespace quillfern::raster
