#include "platform/pdf/PdfImage.h"

#include "platform/pdf/PdfFont.h"

#include <QtGlobal>
#include <algorithm>

namespace quillfern {

namespace {

/// Rows of `channels` bytes a pixel with PNG's Up predictor in front of each (ISO 32000-1, 7.4.4.4).
QByteArray predicted(const QByteArray& rows, qsizetype stride)
{
    QByteArray result;
    const qsizetype height = stride > 0 ? rows.size() / stride : 0;
    result.reserve(rows.size() + height);
    for (qsizetype y = 0; y < height; ++y) {
        result.append('\2');
        const char* row = rows.constData() + y * stride;
        for (qsizetype x = 0; x < stride; ++x)
            result.append(static_cast<char>(row[x] - (y > 0 ? row[x - stride] : 0)));
    }
    return result;
}

QPDFObjectHandle imageStream(QPDF& document, const QByteArray& rows, int width, int height, int channels)
{
    const qsizetype stride = qsizetype{width} * channels;
    QByteArray plain = qCompress(rows, 9);
    QByteArray differences = qCompress(predicted(rows, stride), 9);
    const bool usePredictor = differences.size() < plain.size();
    const QByteArray packed = (usePredictor ? differences : plain).mid(4); // qCompress puts the length first
    QPDFObjectHandle stream = document.newStream(packed.toStdString());
    QPDFObjectHandle dictionary = stream.getDict();
    dictionary.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    dictionary.replaceKey("/Subtype", QPDFObjectHandle::newName("/Image"));
    dictionary.replaceKey("/Width", QPDFObjectHandle::newInteger(width));
    dictionary.replaceKey("/Height", QPDFObjectHandle::newInteger(height));
    dictionary.replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(8));
    dictionary.replaceKey("/ColorSpace",
                          QPDFObjectHandle::newName(channels == 1 ? "/DeviceGray" : "/DeviceRGB"));
    dictionary.replaceKey("/Filter", QPDFObjectHandle::newName("/FlateDecode"));
    if (usePredictor)
        dictionary.replaceKey("/DecodeParms", QPDFObjectHandle::newDictionary(
                                                  {{"/Predictor", QPDFObjectHandle::newInteger(15)},
                                                   {"/Colors", QPDFObjectHandle::newInteger(channels)},
                                                   {"/Columns", QPDFObjectHandle::newInteger(width)}}));
    return stream;
}

QByteArray rowsOf(const QImage& image, int channels)
{
    QByteArray rows;
    const qsizetype stride = qsizetype{image.width()} * channels;
    rows.reserve(stride * image.height());
    for (int y = 0; y < image.height(); ++y)
        rows.append(reinterpret_cast<const char*>(image.constScanLine(y)), stride);
    return rows;
}

bool isOpaque(const QImage& image)
{
    if (!image.hasAlphaChannel()) return true;
    const QImage alpha = image.convertToFormat(QImage::Format_Alpha8);
    for (int y = 0; y < alpha.height(); ++y) {
        const uchar* row = alpha.constScanLine(y);
        if (std::any_of(row, row + alpha.width(), [](uchar a) { return a != 255; })) return false;
    }
    return true;
}

} // namespace

PdfImage makeImage(QPDF& document, const QImage& image)
{
    const bool opaque = isOpaque(image);
    const int channels = image.isGrayscale() ? 1 : 3;
    // Straight, not premultiplied: the mask is applied by the viewer.
    const QImage straight =
        image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    const QImage colours = straight.convertToFormat(QImage::Format_RGB32);
    const QImage pixels =
        colours.convertToFormat(channels == 1 ? QImage::Format_Grayscale8 : QImage::Format_RGB888);
    QPDFObjectHandle stream =
        imageStream(document, rowsOf(pixels, channels), image.width(), image.height(), channels);
    if (!opaque) {
        const QImage alpha = image.convertToFormat(QImage::Format_Alpha8);
        stream.getDict().replaceKey(
            "/SMask", imageStream(document, rowsOf(alpha, 1), image.width(), image.height(), 1));
    }
    return {stream, !opaque};
}

} // namespace quillfern
