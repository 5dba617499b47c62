#include "support/ImageBytes.h"

#include <QBuffer>
#include <QImageWriter>
#include <gtest/gtest.h>
#include <map>

namespace quillfern {

namespace {

quint32 checksum(const QByteArray& bytes)
{
    quint32 sum = 0xFFFFFFFFU;
    for (const char byte : bytes) {
        sum ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum & 1U) != 0 ? sum >> 1 ^ 0xEDB88320U : sum >> 1;
    }
    return ~sum;
}

} // namespace

QByteArray bigEndian16(int value)
{
    QByteArray bytes(2, '\0');
    qToBigEndian(static_cast<quint16>(value), bytes.data());
    return bytes;
}

QByteArray bigEndian32(unsigned value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(static_cast<quint32>(value), bytes.data());
    return bytes;
}

QByteArray encodedImage(const QImage& image, const char* format, bool isProgressive)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setQuality(95);
    writer.setProgressiveScanWrite(isProgressive);
    EXPECT_TRUE(writer.write(image));
    return bytes;
}

QByteArray pngChunk(const QByteArray& name, const QByteArray& data)
{
    return bigEndian32(static_cast<unsigned>(data.size())) + name + data + bigEndian32(checksum(name + data));
}

QByteArray withChunks(const QByteArray& png, const QByteArray& chunks)
{
    constexpr qsizetype header = 8 + 25;
    return png.left(header) + chunks + png.mid(header);
}

QByteArray jpegSegment(int marker, const QByteArray& data)
{
    return QByteArray("\xFF") + static_cast<char>(marker) + bigEndian16(static_cast<int>(data.size()) + 2) +
           data;
}

QByteArray withSegments(const QByteArray& jpeg, const QByteArray& segments)
{
    const qsizetype first = 2 + 2 + qFromBigEndian<quint16>(jpeg.constData() + 4);
    return jpeg.left(first) + segments + jpeg.mid(first);
}

namespace {

QByteArray littleEndian16(int value)
{
    return QByteArray(1, static_cast<char>(value & 0xFF)) + static_cast<char>(value >> 8);
}

/// Codes of 9 to 12 bits. A table that is full is kept, and not cleared.
QByteArray lzwCodes(const QByteArray& pixels)
{
    std::map<QByteArray, unsigned> table;
    for (unsigned i = 0; i < 256; ++i)
        table[QByteArray(1, static_cast<char>(i))] = i;
    QByteArray codes;
    unsigned pending = 0;
    int bits = 0;
    int width = 9;
    unsigned next = 258;
    const auto put = [&](unsigned code) {
        pending |= code << bits;
        for (bits += width; bits >= 8; bits -= 8, pending >>= 8)
            codes.append(static_cast<char>(pending & 0xFF));
    };
    put(256);
    QByteArray string;
    for (const char pixel : pixels) {
        if (table.count(string + pixel) > 0) {
            string += pixel;
            continue;
        }
        put(table[string]);
        if (next < 4096) {
            table[string + pixel] = next;
            if (next++ == 1U << width && width < 12) ++width;
        }
        string = QByteArray(1, pixel);
    }
    put(table[string]);
    if (next == 1U << width && width < 12) ++width; // the decoder's table is one string ahead
    put(257);
    return codes + static_cast<char>(pending);
}

} // namespace

QByteArray gifFile(const QSize& screen, const QList<QRgb>& palette, const std::vector<GifFrame>& frames)
{
    QByteArray bytes = "GIF89a" + littleEndian16(screen.width()) + littleEndian16(screen.height()) +
                       QByteArray("\xF7\0\0", 3);
    QByteArray table;
    for (const QRgb colour : palette)
        for (const int part : {qRed(colour), qGreen(colour), qBlue(colour)})
            table += static_cast<char>(part);
    bytes += table.leftJustified(768, '\0');
    for (const GifFrame& frame : frames) {
        bytes += QByteArray("!\xF9\4", 3) +
                 static_cast<char>(frame.disposal << 2 | (frame.transparent < 0 ? 0 : 1)) +
                 QByteArray(2, '\0') + static_cast<char>(std::max(frame.transparent, 0)) + '\0';
        const int width = frame.rect.width();
        bytes += ',' + littleEndian16(frame.rect.x()) + littleEndian16(frame.rect.y()) +
                 littleEndian16(width) + littleEndian16(frame.rect.height()) +
                 static_cast<char>(frame.isInterlaced ? 0x40 : 0) + '\x08';
        QByteArray stored;
        for (const auto& [start, step] :
             frame.isInterlaced ? std::vector<std::pair<int, int>>{{0, 8}, {4, 8}, {2, 4}, {1, 2}}
                                : std::vector<std::pair<int, int>>{{0, 1}})
            for (int y = start; y < frame.rect.height(); y += step)
                stored += frame.pixels.mid(qsizetype{y} * width, width);
        const QByteArray codes = lzwCodes(stored);
        for (qsizetype at = 0; at < codes.size(); at += 255) {
            const QByteArray block = codes.mid(at, 255);
            bytes += static_cast<char>(block.size()) + block;
        }
        bytes += '\0';
    }
    return bytes + ';';
}

QByteArray exifBlock(const std::vector<ExifField>& fields)
{
    QByteArray block("MM\0*\0\0\0\x08", 8);
    block += bigEndian16(static_cast<int>(fields.size()));
    QByteArray behind;
    const auto place = static_cast<unsigned>(block.size() + static_cast<qsizetype>(fields.size()) * 12 + 4);
    for (const ExifField& field : fields) {
        const QByteArray value = field.type == 2   ? field.text + '\0'
                                 : field.type == 3 ? bigEndian16(static_cast<int>(field.number))
                                                   : bigEndian32(field.number) + bigEndian32(field.divisor);
        block += bigEndian16(field.tag) + bigEndian16(field.type);
        block += bigEndian32(field.type == 2 ? static_cast<unsigned>(value.size()) : 1);
        if (value.size() <= 4) {
            block += value + QByteArray(4 - value.size(), '\0');
        } else {
            block += bigEndian32(place + static_cast<unsigned>(behind.size()));
            behind += value;
        }
    }
    return block + bigEndian32(0) + behind;
}

} // namespace quillfern
