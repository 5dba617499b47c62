#pragma once

#include <QByteArray>
#include <QImage>
#include <QRect>
#include <QtEndian>
#include <vector>

namespace quillfern {

// The parts of image files, byte by byte, as odd as a test wants them.

QByteArray bigEndian16(int value);
QByteArray bigEndian32(unsigned value);

/// Appends a number, the low byte first.
template <class T>
void putLittle(QByteArray& bytes, T value)
{
    const T little = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
}

/// What Qt's own encoder makes of the image.
QByteArray encodedImage(const QImage& image, const char* format, bool isProgressive = false);

/// A chunk of a PNG with its length and its checksum.
QByteArray pngChunk(const QByteArray& name, const QByteArray& data);
/// The same PNG with the chunks behind its header.
QByteArray withChunks(const QByteArray& png, const QByteArray& chunks);

/// A segment of a JPEG.
QByteArray jpegSegment(int marker, const QByteArray& data);
/// The same JPEG with the segments behind its first one, which is the JFIF segment.
QByteArray withSegments(const QByteArray& jpeg, const QByteArray& segments);

struct GifFrame
{
    QRect rect;
    QByteArray pixels; ///< indices into the palette, row by row as they are shown
    int disposal = 0;
    int transparent = -1;
    bool isInterlaced = false;
};

/// A GIF with one palette, filled up with black.
QByteArray gifFile(const QSize& screen, const QList<QRgb>& palette, const std::vector<GifFrame>& frames);

struct ExifField
{
    int tag;
    int type; ///< 2 text, 3 short, 5 ratio
    QByteArray text;
    unsigned number = 0;
    unsigned divisor = 1;
};

/// An EXIF block, its numbers with the high byte first.
QByteArray exifBlock(const std::vector<ExifField>& fields);

} // namespace quillfern
