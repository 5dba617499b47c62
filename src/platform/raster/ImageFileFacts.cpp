#include "platform/raster/ImageFileFacts.h"

#include <QtEndian>
#include <cstdlib>

namespace quillfern::raster {

namespace {

constexpr double metresPerInch = 0.0254;
constexpr double centimetresPerInch = 2.54;

void setDots(ImageFileFacts& facts, double x, double y, double perInch)
{
    if (x > 0 && y > 0) facts.dotsPerInch = QSizeF(x * perInch, y * perInch);
}

unsigned big16(const QByteArray& bytes, qsizetype at)
{
    return qFromBigEndian<quint16>(bytes.constData() + at);
}

/// True when the two bytes of the end mark stand anywhere from `offset` on. Inside image data a 0xFF is
/// always followed by a zero or a restart mark.
bool hasEndOfImage(QIODevice& file, qint64 offset)
{
    if (!file.seek(offset)) return false;
    char last = 0;
    while (!file.atEnd()) {
        const QByteArray block = file.read(1 << 16);
        if (block.isEmpty()) return false;
        if (last == '\xFF' && block[0] == '\xD9') return true;
        if (block.contains("\xFF\xD9")) return true;
        last = block.back();
    }
    return false;
}

ImageFileFacts jpegFacts(QIODevice& file)
{
    ImageFileFacts facts;
    facts.isWhole = false;
    qint64 at = 2;
    for (;;) {
        if (!file.seek(at)) return facts;
        const QByteArray head = file.read(20);
        if (head.size() < 4 || head[0] != '\xFF') return facts;
        const auto marker = static_cast<uchar>(head[1]);
        if (marker == 0xFF) { // fill byte
            ++at;
            continue;
        }
        if (marker == 0xE0 && head.mid(4, 5) == QByteArray("JFIF\0", 5) && head.size() >= 16) {
            const double perInch = head[11] == 1 ? 1 : head[11] == 2 ? centimetresPerInch : 0;
            setDots(facts, big16(head, 12) * perInch, big16(head, 14) * perInch, 1);
        }
        const unsigned length = big16(head, 2);
        if (length < 2) return facts;
        at += 2 + length;
        if (marker == 0xDA) break; // the scan begins
    }
    facts.isWhole = hasEndOfImage(file, at);
    return facts;
}

ImageFileFacts pngFacts(QIODevice& file)
{
    ImageFileFacts facts;
    facts.isWhole = false;
    for (qint64 at = 8; file.seek(at);) {
        const QByteArray head = file.read(17);
        if (head.size() < 8) return facts;
        const auto length = qFromBigEndian<quint32>(head.constData());
        const QByteArray name = head.mid(4, 4);
        if (name == "pHYs" && length == 9 && head.size() == 17 && head[16] == 1) // per metre
            setDots(facts, qFromBigEndian<quint32>(head.constData() + 8),
                    qFromBigEndian<quint32>(head.constData() + 12), metresPerInch);
        at += 12 + qint64{length};
        if (at > file.size()) return facts;
        if (name == "IEND") break;
    }
    facts.isWhole = true;
    return facts;
}

ImageFileFacts bmpFacts(QIODevice& file)
{
    ImageFileFacts facts;
    const QByteArray head = file.read(54);
    if (head.size() < 26) return {{72, 72}, false};
    const auto offset = qFromLittleEndian<quint32>(head.constData() + 10);
    if (head.size() < 54 || qFromLittleEndian<quint32>(head.constData() + 14) < 40) return facts;
    const qint64 width = qFromLittleEndian<qint32>(head.constData() + 18);
    // The height is negative when the rows run from the top down.
    const qint64 height = std::abs(qint64{qFromLittleEndian<qint32>(head.constData() + 22)});
    const auto bits = qFromLittleEndian<quint16>(head.constData() + 28);
    const auto coding = qFromLittleEndian<quint32>(head.constData() + 30);
    const auto dataSize = qFromLittleEndian<quint32>(head.constData() + 34);
    setDots(facts, qFromLittleEndian<qint32>(head.constData() + 38),
            qFromLittleEndian<qint32>(head.constData() + 42), metresPerInch);
    const bool isRunLength = coding == 1 || coding == 2;
    const qint64 row = (width * bits + 31) / 32 * 4;
    const qint64 needed = isRunLength ? qint64{dataSize} : row * height;
    facts.isWhole = file.size() >= qint64{offset} + needed;
    return facts;
}

/// Passes over a GIF's colour table, whose presence and size are part of the byte `packed`.
void skipColourTable(QIODevice& file, char packed)
{
    if ((packed & 0x80) != 0) file.skip(3LL << ((packed & 7) + 1));
}

/// Passes over the blocks of an extension or of image data, up to the empty one; false when the file ends.
bool skipBlocks(QIODevice& file)
{
    char size = 0;
    while (file.getChar(&size)) {
        if (size == 0) return true;
        if (file.skip(static_cast<uchar>(size)) != static_cast<uchar>(size)) return false;
    }
    return false;
}

ImageFileFacts gifFacts(QIODevice& file)
{
    ImageFileFacts facts;
    facts.isWhole = false;
    const QByteArray head = file.read(13);
    if (head.size() < 13) return facts;
    skipColourTable(file, head[10]);
    char kind = 0;
    while (file.getChar(&kind)) {
        if (kind == ';') {
            facts.isWhole = true;
            break;
        }
        if (kind == '!') {
            file.skip(1);
        } else if (kind == ',') {
            const QByteArray frame = file.read(9);
            if (frame.size() < 9) break;
            skipColourTable(file, frame[8]);
            file.skip(1);
        } else {
            break;
        }
        if (!skipBlocks(file)) break;
    }
    return facts;
}

} // namespace

ImageFileFacts readImageFileFacts(QIODevice& file)
{
    file.seek(0);
    const QByteArray start = file.peek(8);
    if (start.startsWith("\xFF\xD8\xFF")) return jpegFacts(file);
    if (start.startsWith("\x89PNG")) return pngFacts(file);
    if (start.startsWith("BM")) return bmpFacts(file);
    if (start.startsWith("GIF8")) return gifFacts(file);
    return {};
}

} // namespace quillfern::raster
