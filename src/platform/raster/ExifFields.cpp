#include "platform/raster/ExifFields.h"

#include "platform/raster/RasterLimits.h"

#include <QtEndian>
#include <array>
#include <tiff.h>

namespace quillfern::raster {

namespace {

class ExifBlock
{
  public:
    explicit ExifBlock(const QByteArray& bytes) : bytes_(bytes), isLittle_(bytes.startsWith("II")) {}

    [[nodiscard]] bool isValid() const
    {
        return (isLittle_ || bytes_.startsWith("MM")) && number<quint16>(2) == 42;
    }

    template <class T>
    [[nodiscard]] T number(qsizetype at) const
    {
        if (at < 0 || at + qsizetype{sizeof(T)} > bytes_.size()) return 0;
        return isLittle_ ? qFromLittleEndian<T>(bytes_.constData() + at)
                         : qFromBigEndian<T>(bytes_.constData() + at);
    }

    /// The bytes of an entry's value, as stored; none when they lie outside of the block.
    [[nodiscard]] QByteArray value(qsizetype entry) const
    {
        constexpr std::array<qsizetype, 14> sizes = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
        const auto type = number<quint16>(entry + 2);
        if (type >= sizes.size()) return {};
        const qsizetype size = sizes[type] * qsizetype{number<quint32>(entry + 4)};
        const qsizetype at = size <= 4 ? entry + 8 : qsizetype{number<quint32>(entry + 8)};
        return at + size <= bytes_.size() ? bytes_.mid(at, size) : QByteArray();
    }

    /// A value of two numbers, the second dividing the first.
    [[nodiscard]] double ratio(qsizetype entry) const
    {
        const auto at = qsizetype{number<quint32>(entry + 8)};
        const double divisor = number<quint32>(at + 4);
        return number<quint16>(entry + 2) == TIFF_RATIONAL && divisor > 0 ? number<quint32>(at) / divisor : 0;
    }

  private:
    const QByteArray& bytes_;
    bool isLittle_;
};

} // namespace

ExifFields readExif(const QByteArray& bytes)
{
    ExifFields fields;
    const ExifBlock block(bytes);
    if (!block.isValid()) return fields;
    const auto directory = qsizetype{block.number<quint32>(4)};
    const int count = block.number<quint16>(directory);
    double x = 0;
    double y = 0;
    int unit = RESUNIT_INCH;
    for (qsizetype i = 0; i < count; ++i) {
        const qsizetype entry = directory + 2 + i * 12;
        if (entry + 12 > bytes.size()) break;
        const auto tag = block.number<quint16>(entry);
        if (tag == TIFFTAG_ORIENTATION) fields.orientation = block.number<quint16>(entry + 8);
        if (tag == TIFFTAG_XRESOLUTION) x = block.ratio(entry);
        if (tag == TIFFTAG_YRESOLUTION) y = block.ratio(entry);
        if (tag == TIFFTAG_RESOLUTIONUNIT) unit = block.number<quint16>(entry + 8);
        if (isPageText(tag)) {
            QByteArray text = block.value(entry);
            text.truncate(text.indexOf('\0') < 0 ? text.size() : text.indexOf('\0'));
            if (!text.trimmed().isEmpty()) fields.tags[tag] = text;
        }
    }
    if (fields.orientation < 1 || fields.orientation > 8) fields.orientation = 1;
    const double perInch = unit == RESUNIT_CENTIMETER ? centimetresPerInch : unit == RESUNIT_INCH ? 1 : 0;
    if (x > 0 && y > 0 && perInch > 0) fields.dotsPerInch = QSizeF(x, y) * perInch;
    return fields;
}

} // namespace quillfern::raster
