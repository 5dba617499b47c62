#include "platform/raster/BmpReader.h"

#include "platform/raster/RasterLimits.h"
#include "platform/system/Cancellation.h"

#include <QtEndian>
#include <algorithm>
#include <bit>
#include <cstring>

namespace quillfern::raster {

namespace {

/// Run lengths make up to 255 pixels of two bytes; places that are jumped over cost less.
constexpr double largestRunRatio = 1000;

bool isShade(QRgb colour, int value)
{
    return colour == qRgb(value, value, value);
}

/// The palette's first two colours are black and white; `first` is the shade of the first.
bool isBlackAndWhite(const BmpHeader& header, int first)
{
    return header.bits == 1 && header.palette.size() == 2 && isShade(header.palette[0], first) &&
           isShade(header.palette[1], 255 - first);
}

QImage::Format formatOf(const BmpHeader& header)
{
    if (header.bits > 8) return header.masks[3] != 0 ? QImage::Format_RGBA8888 : QImage::Format_RGB888;
    if (isBlackAndWhite(header, 0) || isBlackAndWhite(header, 255)) return QImage::Format_Mono;
    for (std::size_t i = 0; i < header.palette.size(); ++i)
        if (!isShade(header.palette[i], static_cast<int>(i))) return QImage::Format_RGB888;
    return QImage::Format_Grayscale8;
}

/// Sets pixels from indices into the palette.
class Painter
{
  public:
    Painter(const BmpHeader& header, const QImage& image)
        : palette_(header.palette), step_(image.depth() / 8), width_(image.width())
    {
    }

    void set(uchar* row, int x, unsigned index) const
    {
        if (x < 0 || x >= width_) return;
        uchar* pixel = row + static_cast<std::ptrdiff_t>(x) * step_;
        if (step_ == 1) {
            *pixel = static_cast<uchar>(index);
            return;
        }
        const QRgb colour = index < palette_.size() ? palette_[index] : qRgb(0, 0, 0);
        pixel[0] = static_cast<uchar>(qRed(colour));
        pixel[1] = static_cast<uchar>(qGreen(colour));
        pixel[2] = static_cast<uchar>(qBlue(colour));
    }

  private:
    const std::vector<QRgb>& palette_;
    int step_;
    int width_;
};

/// A sample out of a pixel of 16 or 32 bits, stretched to the range of a byte.
class Sample
{
  public:
    explicit Sample(quint32 mask) : mask_(mask), shift_(mask == 0 ? 0 : std::countr_zero(mask)) {}

    [[nodiscard]] uchar of(quint32 pixel) const
    {
        const quint64 largest = mask_ >> shift_;
        if (largest == 0) return 0;
        return static_cast<uchar>(((pixel & mask_) >> shift_) * quint64{255} / largest);
    }

  private:
    quint32 mask_;
    int shift_;
};

void convertFields(const BmpHeader& header, const uchar* source, uchar* target, int step)
{
    const std::array<Sample, 4> samples = {Sample(header.masks[0]), Sample(header.masks[1]),
                                           Sample(header.masks[2]), Sample(header.masks[3])};
    for (int x = 0; x < header.size.width(); ++x, target += step) {
        const quint32 pixel = header.bits == 16 ? qFromLittleEndian<quint16>(source + 2 * x)
                                                : qFromLittleEndian<quint32>(source + 4 * x);
        for (int c = 0; c < step; ++c)
            target[c] = samples[static_cast<std::size_t>(c)].of(pixel);
    }
}

void convertRow(const BmpHeader& header, const uchar* source, uchar* target, const QImage& image)
{
    if (header.bits == 24) {
        for (int x = 0; x < header.size.width(); ++x, source += 3, target += 3)
            std::reverse_copy(source, source + 3, target);
    } else if (header.bits > 8) {
        convertFields(header, source, target, image.depth() / 8);
    } else if (image.format() == QImage::Format_Mono) {
        const uchar flip = isBlackAndWhite(header, 255) ? 0xFF : 0;
        std::transform(source, source + (header.size.width() + 7) / 8, target,
                       [flip](uchar byte) { return static_cast<uchar>(byte ^ flip); });
    } else {
        const Painter painter(header, image);
        const unsigned mask = (1U << header.bits) - 1;
        for (int x = 0; x < header.size.width(); ++x) {
            const qint64 bit = qint64{x} * header.bits;
            painter.set(target, x, source[bit / 8] >> (8 - header.bits - bit % 8) & mask);
        }
    }
}

bool isTransparentAllOver(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        for (int x = 0; x < image.width(); ++x)
            if (row[4 * x + 3] != 0) return false;
    }
    return true;
}

/// A file's bytes one after the other; zeros behind its end.
class RunBytes
{
  public:
    RunBytes(QIODevice& file, const std::stop_token& stop) : file_(file), stop_(stop) {}

    unsigned next()
    {
        if (at_ == block_.size()) {
            throwIfCancelled(stop_);
            block_ = file_.read(1 << 16);
            at_ = 0;
            if (block_.isEmpty()) {
                hasEnded_ = true;
                return 0;
            }
        }
        return static_cast<uchar>(block_[at_++]);
    }
    [[nodiscard]] bool hasEnded() const { return hasEnded_; }

  private:
    QIODevice& file_;
    const std::stop_token& stop_;
    QByteArray block_;
    qsizetype at_ = 0;
    bool hasEnded_ = false;
};

} // namespace

BmpReader::BmpReader(std::unique_ptr<QIODevice> device) : device_(std::move(device))
{
    const auto header = BmpHeader::read(*device_);
    if (!header)
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "This is not a picture that can be read."));
    header_ = *header;
    const QSize size = header_.size;
    const int depth = QImage::toPixelFormat(formatOf(header_)).bitsPerPixel();
    describe(size, std::max(1, depth / 8), header_.dotsPerInch, 1);
    if (header_.coding != BmpHeader::Coding::Plain) {
        checkClaim(size.width(), size.height(), 1, static_cast<double>(device_->size()), largestRunRatio);
        return;
    }
    // The bytes that fill up the last row may be missing.
    const qint64 lastRow = (qint64{size.width()} * header_.bits + 7) / 8;
    if (header_.pixelsAt + header_.rowBytes() * (size.height() - 1) + lastRow > device_->size())
        throwDamaged();
}

uchar* BmpReader::target(QImage& image, int row) const
{
    return image.scanLine(header_.isTopDown ? row : image.height() - 1 - row);
}

void BmpReader::readRows(QImage& image, const std::stop_token& stop)
{
    const qint64 lastRow = (qint64{image.width()} * header_.bits + 7) / 8;
    std::vector<uchar> bytes(static_cast<std::size_t>(header_.rowBytes()));
    for (int row = 0; row < image.height(); ++row) {
        throwIfCancelled(stop);
        if (device_->read(reinterpret_cast<char*>(bytes.data()), header_.rowBytes()) < lastRow)
            throwDamaged();
        convertRow(header_, bytes.data(), target(image, row), image);
    }
}

void BmpReader::readRuns(QImage& image, const std::stop_token& stop)
{
    enum Escape { EndOfRow, EndOfPicture, Jump };
    const Painter painter(header_, image);
    for (int row = 0; row < image.height(); ++row) // what the runs jump over has the palette's first colour
        for (int x = 0; x < image.width(); ++x)
            painter.set(target(image, row), x, 0);
    const bool isFour = header_.coding == BmpHeader::Coding::RunLength4;
    RunBytes bytes(*device_, stop);
    int x = 0;
    int row = 0;
    const auto put = [&](unsigned index) { painter.set(target(image, row), x++, index); };
    while (row < image.height()) {
        const unsigned count = bytes.next();
        const unsigned value = bytes.next();
        if (bytes.hasEnded()) {
            const bool isFull = row == image.height() - 1 && x >= image.width();
            if (!isFull) throwDamaged();
            return;
        }
        if (count > 0) {
            for (unsigned i = 0; i < count; ++i)
                put(!isFour ? value : i % 2 == 0 ? value >> 4 : value & 15U);
        } else if (value == EndOfRow) {
            x = 0;
            ++row;
        } else if (value == EndOfPicture) {
            return;
        } else if (value == Jump) {
            x += static_cast<int>(bytes.next());
            row += static_cast<int>(bytes.next());
        } else {
            unsigned pair = 0;
            for (unsigned i = 0; i < value; ++i) {
                if (!isFour || i % 2 == 0) pair = bytes.next();
                put(!isFour ? pair : i % 2 == 0 ? pair >> 4 : pair & 15U);
            }
            const unsigned stored = isFour ? (value + 1) / 2 : value;
            if (stored % 2 != 0) bytes.next();
        }
    }
}

RasterPage BmpReader::readPage(const std::stop_token& stop)
{
    if (wasRead_) throwDamaged();
    wasRead_ = true;
    RasterPage page;
    page.image = makePageImage(header_.size.width(), header_.size.height(), formatOf(header_));
    page.isBilevel = page.isMono();
    if (page.isMono()) page.image.setColorTable({0xFF000000, 0xFFFFFFFF});
    device_->seek(header_.pixelsAt);
    if (header_.coding == BmpHeader::Coding::Plain)
        readRows(page.image, stop);
    else
        readRuns(page.image, stop);
    // Many writers leave the place of the opacity zero.
    if (page.hasAlpha() && isTransparentAllOver(page.image)) page.image.convertTo(QImage::Format_RGB888);
    if (page.image.isNull())
        throw Failure(
            QT_TRANSLATE_NOOP("quillfern::Failure", "There is not enough memory for a page of this size."));
    return page;
}

} // namespace quillfern::raster
