#pragma once

#include "platform/raster/ImageFileReader.h"

#include <QColor>
#include <array>
#include <optional>
#include <vector>

namespace quillfern::raster {

/// The header of a BMP file.
struct BmpHeader
{
    enum class Coding { Plain, RunLength8, RunLength4 };

    QSize size;
    bool isTopDown = false;
    int bits = 24;
    Coding coding = Coding::Plain;
    std::array<quint32, 4> masks = {}; ///< of red, green, blue and opacity in pixels of 16 and 32 bits
    std::vector<QRgb> palette;
    qint64 pixelsAt = 0;
    QSizeF dotsPerInch;

    [[nodiscard]] qint64 rowBytes() const { return (qint64{size.width()} * bits + 31) / 32 * 4; }

    /// Nothing for a file that is no BMP or one of a kind that is not read.
    [[nodiscard]] static std::optional<BmpHeader> read(QIODevice& file);
};

/// The page of a BMP file of any kind but those that hold a JPEG or PNG: rows from either end, palettes, run
/// lengths, bit fields, old and new headers. Rows are decoded one by one.
class BmpReader final : public ImageFileReader
{
  public:
    explicit BmpReader(std::unique_ptr<QIODevice> device);

    [[nodiscard]] RasterPage readPage(const std::stop_token& stop = {}) override;
    void skipPage(const std::stop_token& = {}) override { wasRead_ = true; }

  private:
    void readRows(QImage& image, const std::stop_token& stop);
    void readRuns(QImage& image, const std::stop_token& stop);
    [[nodiscard]] uchar* target(QImage& image, int row) const;

    std::unique_ptr<QIODevice> device_;
    BmpHeader header_;
    bool wasRead_ = false;
};

} // namespace quillfern::raster
