#include "platform/raster/BmpReader.h"
#include "platform/raster/RasterLimits.h"

#include <QtEndian>
#include <algorithm>

namespace quillfern::raster {

namespace {

constexpr double metresPerInch = 0.0254;
constexpr qsizetype fileHeader = 14;
constexpr qsizetype largestHeader = fileHeader + 124;

/// The numbers behind the file's first 14 bytes; zero where the header ends before them.
class Fields
{
  public:
    explicit Fields(QByteArray bytes) : bytes_(std::move(bytes))
    {
        size_ = qFromLittleEndian<quint32>(bytes_.constData() + fileHeader);
    }

    [[nodiscard]] quint32 headerSize() const { return size_; }
    template <class T>
    [[nodiscard]] T at(quint32 offset) const
    {
        return offset + sizeof(T) <= size_ ? beyond<T>(offset) : T{0};
    }
    /// The same for what may stand behind the header.
    template <class T>
    [[nodiscard]] T beyond(quint32 offset) const
    {
        const auto place = fileHeader + qsizetype{offset};
        return place + qsizetype{sizeof(T)} <= bytes_.size()
                   ? qFromLittleEndian<T>(bytes_.constData() + place)
                   : T{0};
    }

  private:
    QByteArray bytes_;
    quint32 size_ = 0;
};

enum Compression : quint32 { Rgb, RunLength8, RunLength4, BitFields, AlphaBitFields = 6 };

/// Sets coding and masks; false for combinations that are not read.
bool setCoding(BmpHeader& header, const Fields& fields)
{
    const quint32 size = fields.headerSize();
    const auto compression = fields.at<quint32>(16);
    const bool isOld = size < 40 || size == 64; // in these other numbers mean other things
    switch (compression) {
    case Rgb:
        if (header.bits == 16) header.masks = {0x7C00, 0x03E0, 0x001F, 0};
        if (header.bits == 32) header.masks = {0xFF0000, 0xFF00, 0xFF, 0};
        return true;
    case RunLength8:
        header.coding = BmpHeader::Coding::RunLength8;
        return header.bits == 8;
    case RunLength4:
        header.coding = BmpHeader::Coding::RunLength4;
        return header.bits == 4;
    case BitFields:
    case AlphaBitFields:
        if (isOld || (header.bits != 16 && header.bits != 32)) return false;
        for (quint32 i = 0; i < 3; ++i)
            header.masks[i] = fields.beyond<quint32>(40 + 4 * i);
        if (size >= 56 || compression == AlphaBitFields) header.masks[3] = fields.beyond<quint32>(52);
        return true;
    default:
        return false;
    }
}

void readPalette(BmpHeader& header, const Fields& fields, QIODevice& file)
{
    if (header.bits > 8) return;
    const qsizetype entry = fields.headerSize() == 12 ? 3 : 4;
    const qint64 start = fileHeader + qint64{fields.headerSize()};
    const auto used = qint64{fields.at<quint32>(32)};
    qint64 count = qint64{1} << header.bits;
    if (used > 0) count = std::min(count, used);
    count = std::clamp<qint64>((header.pixelsAt - start) / entry, 0, count);
    file.seek(start);
    const QByteArray bytes = file.read(count * entry);
    for (qsizetype i = 0; i + entry <= bytes.size(); i += entry)
        header.palette.push_back(qRgb(static_cast<uchar>(bytes[i + 2]), static_cast<uchar>(bytes[i + 1]),
                                      static_cast<uchar>(bytes[i])));
}

} // namespace

std::optional<BmpHeader> BmpHeader::read(QIODevice& file)
{
    file.seek(0);
    const QByteArray bytes = file.read(largestHeader);
    if (bytes.size() < fileHeader + 12 || !bytes.startsWith("BM")) return std::nullopt;
    const Fields fields(bytes);
    const quint32 size = fields.headerSize();
    BmpHeader header;
    header.pixelsAt = qFromLittleEndian<quint32>(bytes.constData() + 10);
    qint64 height = 0;
    if (size == 12) {
        header.size.setWidth(fields.at<quint16>(4));
        height = fields.at<quint16>(6);
        header.bits = fields.at<quint16>(10);
    } else if (size >= 16 && size <= 124) {
        header.size.setWidth(fields.at<qint32>(4));
        height = fields.at<qint32>(8);
        header.bits = fields.at<quint16>(14);
    } else {
        return std::nullopt;
    }
    header.isTopDown = height < 0;
    header.size.setHeight(static_cast<int>(std::min<qint64>(std::abs(height), 0x7FFFFFFF)));
    const auto isKnown = [&](int bits) {
        return bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
    };
    if (header.size.isEmpty() || !isKnown(header.bits) || !setCoding(header, fields)) return std::nullopt;
    header.dotsPerInch = QSizeF(fields.at<qint32>(24) * metresPerInch, fields.at<qint32>(28) * metresPerInch);
    if (header.dotsPerInch.isEmpty()) header.dotsPerInch = {plainDotsPerInch, plainDotsPerInch};
    readPalette(header, fields, file);
    return header;
}

} // namespace quillfern::raster
