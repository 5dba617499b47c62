#include "platform/raster/PlainJpeg.h"

#include <QtEndian>

namespace quillfern::raster {

namespace {

enum Marker : uchar { Baseline = 0xC0, Extended = 0xC1, Progressive = 0xC2, Scan = 0xDA, Adobe = 0xEE };

unsigned byteAt(const QByteArray& bytes, qsizetype at)
{
    return static_cast<uchar>(bytes[at]);
}

std::optional<PlainJpeg> readFrame(const QByteArray& frame)
{
    if (frame.size() < 6 || byteAt(frame, 0) != 8) return std::nullopt;
    PlainJpeg jpeg;
    jpeg.height = qFromBigEndian<quint16>(frame.constData() + 1);
    jpeg.width = qFromBigEndian<quint16>(frame.constData() + 3);
    jpeg.components = static_cast<int>(byteAt(frame, 5));
    const bool isKnown = jpeg.components == 1 || jpeg.components == 3;
    if (!isKnown || jpeg.width == 0 || jpeg.height == 0 || frame.size() < 6 + 3 * jpeg.components)
        return std::nullopt;
    if (jpeg.components == 1) return jpeg;
    const unsigned luminance = byteAt(frame, 7);
    jpeg.subsampling = {static_cast<std::uint16_t>(luminance >> 4),
                        static_cast<std::uint16_t>(luminance & 15)};
    for (const std::uint16_t factor : jpeg.subsampling)
        if (factor != 1 && factor != 2 && factor != 4) return std::nullopt;
    // Components whose identifiers are the letters R, G and B hold these colours instead of YCbCr.
    const bool isYCbCr = byteAt(frame, 6) == 1 && byteAt(frame, 10) == 0x11 && byteAt(frame, 13) == 0x11;
    return isYCbCr ? std::optional(jpeg) : std::nullopt;
}

} // namespace

std::optional<PlainJpeg> readPlainJpeg(const QByteArray& bytes)
{
    if (!bytes.startsWith("\xFF\xD8\xFF")) return std::nullopt;
    std::optional<PlainJpeg> jpeg;
    for (qsizetype at = 2; at + 4 <= bytes.size();) {
        if (bytes[at] != '\xFF') return std::nullopt;
        const unsigned marker = byteAt(bytes, at + 1);
        const qsizetype length = qFromBigEndian<quint16>(bytes.constData() + at + 2);
        if (marker == Scan) return bytes.contains("\xFF\xD9") ? jpeg : std::nullopt;
        if (marker == Adobe || length < 2 || at + 2 + length > bytes.size()) return std::nullopt;
        const bool isFrame =
            marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (isFrame) {
            if (marker > Progressive) return std::nullopt;
            jpeg = readFrame(bytes.mid(at + 4, length - 2));
            if (!jpeg) return std::nullopt;
        }
        at += 2 + length;
    }
    return std::nullopt;
}

} // namespace quillfern::raster
