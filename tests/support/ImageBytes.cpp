#include "support/ImageBytes.h"

#include <QBuffer>
#include <QImageWriter>
#include <gtest/gtest.h>

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
