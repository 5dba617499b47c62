#include "platform/pdf/PdfImage.h"

#include "platform/pdf/NewObjects.h"
#include "platform/pdf/SharedCodings.h"

#include <QtGlobal>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>

namespace quillfern::pdf {

namespace {

/// What each of PNG's predictors expects of a byte, from the byte to the left, above and above left.
constexpr std::array<int (*)(int left, int up, int upLeft), 5> predictors = {
    [](int, int, int) { return 0; }, [](int left, int, int) { return left; },
    [](int, int up, int) { return up; }, [](int left, int up, int) { return (left + up) / 2; },
    [](int left, int up, int upLeft) {
        const int toLeft = std::abs(up - upLeft);
        const int toUp = std::abs(left - upLeft);
        const int toUpLeft = std::abs(left + up - 2 * upLeft);
        return toLeft <= toUp && toLeft <= toUpLeft ? left : toUp <= toUpLeft ? up : upLeft;
    }};

/// Rows of `channels` bytes a pixel, each as the differences from what a predictor expects, with the
/// predictor's number in front (ISO 32000-1, 7.4.4.4). Every row takes the predictor that leaves the smallest
/// differences.
QByteArray predicted(const QByteArray& rows, qsizetype stride, int channels)
{
    const qsizetype height = stride > 0 ? rows.size() / stride : 0;
    QByteArray result;
    result.reserve(rows.size() + height);
    const QByteArray nothing(stride, '\0');
    std::array<QByteArray, predictors.size()> candidates;
    for (qsizetype y = 0; y < height; ++y) {
        const auto* row = reinterpret_cast<const uchar*>(rows.constData() + y * stride);
        const auto* above = y > 0 ? row - stride : reinterpret_cast<const uchar*>(nothing.constData());
        std::size_t best = 0;
        qint64 least = std::numeric_limits<qint64>::max();
        for (std::size_t kind = 0; kind < predictors.size(); ++kind) {
            candidates[kind].resize(stride);
            char* out = candidates[kind].data();
            qint64 sum = 0;
            for (qsizetype x = 0; x < stride; ++x) {
                const int left = x >= channels ? row[x - channels] : 0;
                const int upLeft = x >= channels ? above[x - channels] : 0;
                out[x] = static_cast<char>(row[x] - predictors[kind](left, above[x], upLeft));
                sum += std::abs(static_cast<signed char>(out[x]));
            }
            if (sum < least) {
                least = sum;
                best = kind;
            }
        }
        result.append(static_cast<char>(best)).append(candidates[best]);
    }
    return result;
}

void describeImage(QPDFObjectHandle& dictionary, int width, int height, int channels, const char* filter)
{
    dictionary.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    dictionary.replaceKey("/Subtype", QPDFObjectHandle::newName("/Image"));
    dictionary.replaceKey("/Width", QPDFObjectHandle::newInteger(width));
    dictionary.replaceKey("/Height", QPDFObjectHandle::newInteger(height));
    dictionary.replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(8));
    dictionary.replaceKey("/ColorSpace",
                          QPDFObjectHandle::newName(channels == 1 ? "/DeviceGray" : "/DeviceRGB"));
    dictionary.replaceKey("/Filter", QPDFObjectHandle::newName(filter));
}

CodedPixels codedPixels(const QByteArray& rows, int width, int channels)
{
    const QByteArray plain = deflatedBytes(rows);
    const QByteArray differences = deflatedBytes(predicted(rows, qsizetype{width} * channels, channels));
    const bool usePredictor = differences.size() < plain.size();
    return {(usePredictor ? differences : plain).toStdString(), channels, usePredictor};
}

QPDFObjectHandle imageStream(NewObjects& objects, const CodedPixels& pixels, const QSize& size,
                             const QPDFObjectHandle& mask = {})
{
    QPDFObjectHandle dictionary = QPDFObjectHandle::newDictionary();
    describeImage(dictionary, size.width(), size.height(), pixels.channels, "/FlateDecode");
    if (pixels.hasPredictors)
        dictionary.replaceKey(
            "/DecodeParms",
            QPDFObjectHandle::newDictionary({{"/Predictor", QPDFObjectHandle::newInteger(15)},
                                             {"/Colors", QPDFObjectHandle::newInteger(pixels.channels)},
                                             {"/Columns", QPDFObjectHandle::newInteger(size.width())}}));
    if (mask.isInitialized()) dictionary.replaceKey("/SMask", mask);
    return objects.addStream(pixels.bytes, dictionary);
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

CodedPicture coded(const QImage& image)
{
    const int channels = image.isGrayscale() ? 1 : 3;
    // Straight, not premultiplied: the mask is applied by the viewer.
    const QImage straight =
        image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    const QImage colours = straight.convertToFormat(QImage::Format_RGB32);
    const QImage pixels =
        colours.convertToFormat(channels == 1 ? QImage::Format_Grayscale8 : QImage::Format_RGB888);
    CodedPicture picture{codedPixels(rowsOf(pixels, channels), image.width(), channels), std::nullopt};
    if (!isOpaque(image))
        picture.mask = codedPixels(rowsOf(image.convertToFormat(QImage::Format_Alpha8), 1), image.width(), 1);
    return picture;
}

} // namespace

PdfImage makeImage(NewObjects& objects, SharedCodings& codings, const drawing::Picture& picture)
{
    const QImage& image = picture.image();
    if (!picture.jpeg().isEmpty()) {
        QPDFObjectHandle dictionary = QPDFObjectHandle::newDictionary();
        describeImage(dictionary, image.width(), image.height(),
                      image.format() == QImage::Format_Grayscale8 ? 1 : 3, "/DCTDecode");
        return {objects.addStream(picture.jpeg().toStdString(), dictionary), false};
    }
    const auto shared = codings.picture(picture, [&] { return coded(image); });
    QPDFObjectHandle mask;
    if (shared->mask) mask = imageStream(objects, *shared->mask, image.size());
    return {imageStream(objects, shared->pixels, image.size(), mask), shared->mask.has_value()};
}

} // namespace quillfern::pdf
