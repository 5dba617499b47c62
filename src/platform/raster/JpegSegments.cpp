#include "platform/raster/JpegSegments.h"

#include "platform/raster/ExifFields.h"
#include "platform/raster/ExtendedXmp.h"
#include "platform/raster/RasterLimits.h"
#include "platform/system/Cancellation.h"

#include <QtEndian>
#include <tiff.h>

namespace quillfern::raster {

namespace {

enum Marker : uchar {
    Stuffed = 0x00,
    Restart = 0xD0,
    End = 0xD9,
    Scan = 0xDA,
    App0 = 0xE0,
    App1,
    App13 = 0xED
};

/// One byte after the other, out of large blocks.
class Bytes
{
  public:
    Bytes(QIODevice& file, const std::stop_token& stop) : file_(file), stop_(stop) {}

    /// The next byte; -1 at the end.
    int next()
    {
        if (at_ == block_.size() && !refill()) return -1;
        return static_cast<uchar>(block_[at_++]);
    }
    /// Goes behind the next 0xFF; false when there is none.
    bool findMark()
    {
        do {
            const qsizetype found = block_.indexOf('\xFF', at_);
            if (found >= 0) {
                at_ = found + 1;
                return true;
            }
            at_ = block_.size();
        } while (refill());
        return false;
    }
    QByteArray take(qsizetype size)
    {
        QByteArray bytes = block_.mid(at_, size);
        at_ += bytes.size();
        while (bytes.size() < size && refill()) {
            const QByteArray more = block_.left(size - bytes.size());
            at_ = more.size();
            bytes += more;
        }
        return bytes;
    }

  private:
    bool refill()
    {
        throwIfCancelled(stop_);
        block_ = file_.read(1 << 16);
        at_ = 0;
        return !block_.isEmpty();
    }

    QIODevice& file_;
    const std::stop_token& stop_;
    QByteArray block_;
    qsizetype at_ = 0;
};

double big16(const QByteArray& bytes, qsizetype at)
{
    return qFromBigEndian<quint16>(bytes.constData() + at);
}

/// The resolution of a JFIF segment; empty when the segment gives no more than the shape of a pixel.
QSizeF jfifDots(const QByteArray& data)
{
    if (!data.startsWith(QByteArray("JFIF\0", 5)) || data.size() < 12) return {};
    const QSizeF dots(big16(data, 8), big16(data, 10));
    const double perInch = data[7] == 1 ? 1 : data[7] == 2 ? centimetresPerInch : 0;
    return dots.isEmpty() ? QSizeF() : dots * perInch;
}

/// Resource blocks, as image editors keep them: "8BIM", a number, a name, a size, data.
struct Resources
{
    QSizeF dotsPerInch;
    QByteArray iptc;
};

Resources readResources(const QByteArray& bytes)
{
    constexpr int resolution = 0x03ED;
    constexpr int records = 0x0404;
    Resources resources;
    for (qsizetype at = 0; at + 12 <= bytes.size() && bytes.mid(at, 4) == "8BIM";) {
        const auto number = qFromBigEndian<quint16>(bytes.constData() + at + 4);
        const qsizetype name = (static_cast<uchar>(bytes[at + 6]) + 2) / 2 * 2; // with its length, even
        const qsizetype start = at + 6 + name + 4;
        if (start > bytes.size()) break;
        const auto size = qsizetype{qFromBigEndian<quint32>(bytes.constData() + start - 4)};
        const QByteArray data = bytes.mid(start, size);
        if (number == resolution && data.size() >= 16) {
            constexpr double one = 65536; // numbers of 16 bits before and 16 behind the point
            const QSizeF dots(qFromBigEndian<quint32>(data.constData()) / one,
                              qFromBigEndian<quint32>(data.constData() + 8) / one);
            if (!dots.isEmpty()) resources.dotsPerInch = dots;
        }
        if (number == records && data.size() == size) resources.iptc = data;
        at = start + (size + 1) / 2 * 2;
    }
    return resources;
}

bool isFrame(int marker)
{
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

} // namespace

JpegSegments readJpegSegments(QIODevice& file, const std::stop_token& stop)
{
    static const QByteArray exifStart("Exif\0\0", 6);
    static const QByteArray xmpStart("http://ns.adobe.com/xap/1.0/\0", 29);
    static const QByteArray extensionStart("http://ns.adobe.com/xmp/extension/\0", 35);
    static const QByteArray resourceStart("Photoshop 3.0\0", 14);
    JpegSegments found;
    QSizeF jfif;
    ExifFields exif;
    ExtendedXmp xmp;
    QByteArray resourceBytes;
    file.seek(2);
    Bytes bytes(file, stop);
    while (!found.hasEnd && bytes.findMark()) {
        int marker = bytes.next();
        while (marker == 0xFF) // fill bytes
            marker = bytes.next();
        if (marker == End) found.hasEnd = true;
        if (marker <= 0x01 || (marker >= Restart && marker <= End)) continue;
        const QByteArray size = bytes.take(2);
        if (size.size() < 2 || big16(size, 0) < 2) continue;
        const QByteArray data = bytes.take(static_cast<qsizetype>(big16(size, 0)) - 2);
        if (marker == Scan) ++found.scans;
        if (isFrame(marker)) found.isArithmetic = marker > 0xC8;
        if (marker == App0 && jfif.isEmpty()) jfif = jfifDots(data);
        if (marker == App1 && data.startsWith(exifStart)) exif = readExif(data.mid(exifStart.size()));
        if (marker == App1 && data.startsWith(xmpStart)) xmp.setPacket(data.mid(xmpStart.size()));
        if (marker == App1 && data.startsWith(extensionStart)) xmp.addPart(data.mid(extensionStart.size()));
        if (marker == App13 && data.startsWith(resourceStart))
            resourceBytes += data.mid(resourceStart.size());
    }
    if (const QByteArray packet = xmp.packet(); !packet.isEmpty()) found.tags[TIFFTAG_XMLPACKET] = packet;
    const Resources resources = readResources(resourceBytes);
    if (!resources.iptc.isEmpty()) found.tags[TIFFTAG_RICHTIFFIPTC] = resources.iptc;
    found.tags.merge(exif.tags);
    found.orientation = exif.orientation;
    found.dotsPerInch = {plainDotsPerInch, plainDotsPerInch};
    for (const QSizeF& dots : {jfif, exif.dotsPerInch, resources.dotsPerInch})
        if (!dots.isEmpty()) {
            found.dotsPerInch = dots;
            break;
        }
    return found;
}

} // namespace quillfern::raster
