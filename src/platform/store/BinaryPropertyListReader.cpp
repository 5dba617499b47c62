#include "platform/store/PropertyList.h"
#include "platform/store/PropertyListForms.h"

#include <QtEndian>
#include <bit>

namespace quillfern::store {

namespace {

/// Reads the binary form: objects that refer to each other by their numbers, and a table of where they are.
class BinaryReader
{
  public:
    explicit BinaryReader(QByteArrayView bytes) : objects_(bytes)
    {
        constexpr qsizetype trailerSize = 32;
        if (!bytes.startsWith("bplist00")) refusePropertyList("its version is not known");
        if (bytes.size() < 8 + trailerSize) refusePropertyList("it is cut short");
        const QByteArrayView trailer = bytes.last(trailerSize);
        bytes.chop(trailerSize);
        offsetSize_ = static_cast<int>(number(trailer, 6, 1));
        referenceSize_ = static_cast<int>(number(trailer, 7, 1));
        count_ = number(trailer, 8, 8);
        top_ = number(trailer, 16, 8);
        const quint64 table = number(trailer, 24, 8);
        const auto size = static_cast<quint64>(bytes.size());
        const bool sizesFit =
            offsetSize_ > 0 && offsetSize_ <= 8 && referenceSize_ > 0 && referenceSize_ <= 8;
        if (!sizesFit || count_ > mostPropertyListValues || table > size ||
            count_ * static_cast<quint64>(offsetSize_) > size - table)
            refusePropertyList("its table of contents is damaged");
        objects_ = bytes.first(static_cast<qsizetype>(table));
        offsets_ = bytes.sliced(objects_.size());
    }

    Record read()
    {
        const Object top = objectAt(top_);
        if (top.kind != dictionary) refusePropertyList("its top level is not a dictionary");
        return readDictionary(top, 1);
    }

  private:
    // The kinds of objects, in the upper half of an object's first byte.
    static constexpr unsigned simple = 0, integer = 1, real = 2, date = 3, data = 4, ascii = 5, utf16 = 6,
                              uid = 8, array = 0xA, set = 0xC, dictionary = 0xD;

    struct Object
    {
        unsigned kind = 0;
        quint64 count = 0; ///< of characters, bytes or items; of other kinds the lower half of the first byte
        qsizetype body = 0;
    };

    /// A number of at most 8 bytes.
    static quint64 number(QByteArrayView bytes, qsizetype at, int size)
    {
        if (size > bytes.size() - at) refusePropertyList("it is cut short");
        quint64 value = 0;
        for (const char byte : bytes.sliced(at, size))
            value = value << 8U | static_cast<unsigned char>(byte);
        return value;
    }

    quint64 reference(const Object& container, quint64 item) const
    {
        if (item > 2 * mostPropertyListValues) refusePropertyList("it has too many values");
        const qsizetype at = container.body + static_cast<qsizetype>(item) * referenceSize_;
        return number(objects_, at, referenceSize_);
    }

    Object objectAt(quint64 index) const
    {
        if (index >= count_) refusePropertyList("it refers to what it does not hold");
        const quint64 offset = number(offsets_, static_cast<qsizetype>(index) * offsetSize_, offsetSize_);
        if (offset >= static_cast<quint64>(objects_.size()))
            refusePropertyList("its table of contents is damaged");
        auto at = static_cast<qsizetype>(offset);
        const quint64 marker = number(objects_, at++, 1);
        Object object{static_cast<unsigned>(marker >> 4U), marker & 0xFU, at};
        if (object.count == 0xF && object.kind >= data) {
            const quint64 sizeMarker = number(objects_, at++, 1);
            if (sizeMarker >> 4U != integer || (sizeMarker & 0xFU) > 3)
                refusePropertyList("a damaged length");
            const int size = 1 << (sizeMarker & 0xFU);
            object.count = number(objects_, at, size);
            object.body = at + size;
        }
        return object;
    }

    /// The characters or bytes of an object, each of `width` bytes.
    QByteArrayView bodyOf(const Object& object, quint64 width)
    {
        if (object.count > static_cast<quint64>(objects_.size() - object.body) / width)
            refusePropertyList("it is cut short");
        const auto size = static_cast<qsizetype>(object.count * width);
        if ((taken_ += size) > largestPropertyList)
            refusePropertyList("it refers to the same bytes again and again");
        return objects_.sliced(object.body, size);
    }

    QString textOf(const Object& object)
    {
        if (object.kind != ascii && object.kind != utf16) refusePropertyList("a key that is no text");
        const QByteArrayView body = bodyOf(object, object.kind == ascii ? 1 : 2);
        QString text = object.kind == ascii ? QString::fromUtf8(body) : QString(body.size() / 2, u' ');
        if (object.kind == utf16) qFromBigEndian<char16_t>(body.data(), text.size(), text.data());
        if (text.contains(QChar(0))) refusePropertyList("a text with a zero in it");
        return text;
    }

    MaybeValue readValue(quint64 index, int depth)
    {
        countPropertyListValue(values_, depth);
        const Object object = objectAt(index);
        if (object.kind == dictionary) return readDictionary(object, depth + 1);
        if (object.kind != array && object.kind != set) return readScalar(object);
        RecordValue::List list;
        for (quint64 i = 0; i < object.count; ++i)
            if (auto value = readValue(reference(object, i), depth + 1)) list.push_back(std::move(*value));
        return list;
    }

    Record readDictionary(const Object& object, int depth)
    {
        Record record;
        for (quint64 i = 0; i < object.count; ++i) {
            const QString key = textOf(objectAt(reference(object, i)));
            // The values follow all the keys.
            auto value = readValue(reference(object, object.count + i), depth);
            if (value) record.set(key, std::move(*value));
        }
        return record;
    }

    MaybeValue readScalar(const Object& object)
    {
        const auto& [kind, count, body] = object;
        if (kind == simple && (count == 8 || count == 9)) return count == 9;
        // Short integers have no sign; of the longest only the lower half counts.
        if (kind == integer && count <= 3)
            return static_cast<std::int64_t>(number(objects_, body, 1 << count));
        if (kind == integer && count == 4) return static_cast<std::int64_t>(number(objects_, body + 8, 8));
        if (kind == real && count == 2)
            return double{std::bit_cast<float>(static_cast<std::uint32_t>(number(objects_, body, 4)))};
        if (kind == real && count == 3) return std::bit_cast<double>(number(objects_, body, 8));
        if (kind == data) return bodyOf(object, 1).toByteArray();
        if (kind == ascii || kind == utf16) return textOf(object);
        if (kind == date || kind == uid) return std::nullopt;
        refusePropertyList("it holds an object of an unknown kind");
    }

    QByteArrayView objects_;
    QByteArrayView offsets_; ///< of the objects
    int offsetSize_ = 0;
    int referenceSize_ = 0;
    quint64 count_ = 0; ///< of the objects
    quint64 top_ = 0;
    quint64 values_ = 0;
    qsizetype taken_ = 0; ///< bytes of texts and data so far
};

} // namespace

Record readBinaryPropertyList(QByteArrayView bytes)
{
    return BinaryReader(bytes).read();
}

} // namespace quillfern::store
