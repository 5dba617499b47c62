#include "platform/store/PropertyList.h"
#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"

#include <QStringDecoder>
#include <QXmlStreamReader>
#include <QtEndian>
#include <bit>
#include <limits>

namespace quillfern::store {

namespace {

// Settings hold a configuration, that holds stamps, those hold fonts: five levels. The readers call
// themselves for each level, so this is also how deep they go.
constexpr int deepest = 32;
constexpr quint64 mostValues = 1'000'000;

[[noreturn]] void refuse(const QString& reason)
{
    throw Failure(QStringLiteral("not a usable property list: ") + reason);
}

[[noreturn]] void refuse(const char* reason)
{
    refuse(QString::fromLatin1(reason));
}

/// Counts a value of a list; `depth` dictionaries and lists are open around it.
void countValue(quint64& values, int depth)
{
    if (depth > deepest) refuse("it is nested too deeply");
    if (++values > mostValues) refuse("it has too many values");
}

/// Empty for a value of a kind that a record cannot hold.
using MaybeValue = std::optional<RecordValue>;

MaybeValue integerIn(QStringView text)
{
    const bool isNegative = text.startsWith(u'-');
    if (isNegative || text.startsWith(u'+')) text = text.mid(1);
    const bool isHex = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    if (isHex) text = text.mid(2);
    bool ok = false;
    const quint64 size = text.toULongLong(&ok, isHex ? 16 : 10);
    if (!ok || !text.front().isLetterOrNumber()) return std::nullopt; // a second sign, or a blank
    return static_cast<std::int64_t>(isNegative ? 0 - size : size);
}

MaybeValue realIn(QStringView text)
{
    bool ok = false;
    const double value = text.toDouble(&ok); // takes nan and inf as well
    if (ok) return value;
    const bool isNegative = text.startsWith(u'-');
    if (isNegative || text.startsWith(u'+')) text = text.mid(1);
    if (text.compare(QLatin1String("infinity"), Qt::CaseInsensitive) != 0) return std::nullopt;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    return isNegative ? -infinity : infinity;
}

MaybeValue dataIn(const QString& text)
{
    QByteArray base64 = text.toUtf8();
    base64.removeIf([](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
    const auto bytes =
        QByteArray::fromBase64Encoding(std::move(base64), QByteArray::AbortOnBase64DecodingErrors);
    return bytes ? MaybeValue(*bytes) : std::nullopt;
}

/// Reads the XML form with a strict parser.
class XmlReader
{
  public:
    explicit XmlReader(QByteArray bytes)
    {
        const auto encoding = QStringDecoder::encodingForData(bytes, u'<');
        isWide_ = encoding && encoding != QStringDecoder::Utf8;
        if (isWide_) {
            const QString text = QStringDecoder(*encoding).decode(bytes);
            if (!text.isValidUtf16()) refuse("its text is not valid UTF-16");
            bytes = text.toUtf8();
        }
        checkTags(bytes);
        if (bytes.contains('\r')) bytes = keepingCarriageReturns(bytes);
        if (isWide_)
            reader_.addData(QString::fromUtf8(bytes)); // whatever encoding the list names
        else
            reader_.addData(bytes);
    }

    Record read()
    {
        nextElement();
        if (name_ != "plist") refuse("it does not begin as one");
        if (!nextElement()) refuse("it holds no value");
        if (name_ != "dict") refuse("its top level is not a dictionary");
        Record record = readDictionary(1);
        if (nextElement()) refuse("more than one value at its top");
        nextElement(); // finds what stands behind the list
        return record;
    }

  private:
    /// The parser compares all attributes of a tag with each other: many of them would take for ever.
    static void checkTags(const QByteArray& xml)
    {
        constexpr qsizetype longest = 1000;
        for (qsizetype at = xml.indexOf('<'); at >= 0; at = xml.indexOf('<', at + 1)) {
            const auto tag = QByteArrayView(xml).sliced(at + 1);
            if (tag.size() > longest && tag[0] != '!' && tag[0] != '?' && !tag.first(longest).contains('>'))
                refuse("a tag that is too long");
        }
    }

    /// XML parsers turn carriage returns into line feeds, but in the texts of these lists carriage returns
    /// have to stay. Returns the list, in UTF-8, with a character reference for each one in a text.
    static QByteArray keepingCarriageReturns(const QByteArray& xml)
    {
        QByteArray kept;
        kept.reserve(xml.size());
        bool isText = false;
        for (const char c : xml) {
            if (c == '<')
                isText = false;
            else if (c == '>')
                isText = isText || kept.endsWith("<string") || kept.endsWith("<key");
            if (c == '\r' && isText)
                kept += "&#13;";
            else
                kept += c;
        }
        return kept;
    }

    /// Goes to the next element within the one that is open; false at the end of that one.
    bool nextElement()
    {
        for (;;) {
            switch (reader_.readNext()) {
            case QXmlStreamReader::StartDocument:
                if (!isWide_) checkEncoding(reader_.documentEncoding());
                break;
            case QXmlStreamReader::DTD:
                if (!reader_.entityDeclarations().empty() || reader_.text().contains(u'['))
                    refuse("it declares things of its own");
                break;
            case QXmlStreamReader::StartElement:
                // A copy: a view into the parser becomes invalid when the parser reads on.
                name_ = reader_.qualifiedName().toUtf8();
                return true;
            case QXmlStreamReader::Characters:
                if (!reader_.isWhitespace()) refuse("text where none belongs");
                break;
            case QXmlStreamReader::EntityReference:
            case QXmlStreamReader::ProcessingInstruction:
                refuse("XML that no property list has");
            case QXmlStreamReader::Comment:
                break;
            default:
                checkError();
                return false;
            }
        }
    }

    static void checkEncoding(QStringView encoding)
    {
        for (const char* known : {"", "UTF-8", "US-ASCII", "ASCII"})
            if (encoding.compare(QLatin1String(known), Qt::CaseInsensitive) == 0) return;
        refuse("its text is not in UTF-8 or UTF-16");
    }

    MaybeValue readValue(int depth)
    {
        countValue(values_, depth);
        if (name_ == "dict") return readDictionary(depth + 1);
        if (name_ != "array") return readScalar();
        RecordValue::List list;
        while (nextElement())
            if (auto value = readValue(depth + 1)) list.push_back(std::move(*value));
        return list;
    }

    Record readDictionary(int depth)
    {
        Record record;
        while (nextElement()) {
            if (name_ != "key") refuse("a value without a key");
            const QString key = elementText();
            if (!nextElement()) refuse("a key without a value");
            if (auto value = readValue(depth)) record.set(key, std::move(*value));
        }
        return record;
    }

    MaybeValue readScalar()
    {
        static const QByteArrayList names = {"string", "integer", "real", "data", "true", "false", "date"};
        const QString name = QString::fromUtf8(name_.left(40));
        if (name_ == "key") refuse("a key where none belongs");
        if (!names.contains(name_)) refuse(QStringLiteral("it has an element <%1>").arg(name));
        const QString text = elementText();
        if (name_ == "string") return text;
        if (name_ == "date") return std::nullopt;
        MaybeValue value;
        if (name_ == "integer")
            value = integerIn(QStringView(text).trimmed());
        else if (name_ == "real")
            value = realIn(QStringView(text).trimmed());
        else if (name_ == "data")
            value = dataIn(text);
        else if (text.isEmpty())
            value = name_ == "true";
        if (!value) refuse(QStringLiteral("<%1>%2</%1>").arg(name, text.left(40)));
        return value;
    }

    QString elementText()
    {
        QString text = reader_.readElementText();
        checkError();
        return text;
    }

    void checkError() const
    {
        if (reader_.hasError())
            refuse(QStringLiteral("%1 in line %2").arg(reader_.errorString()).arg(reader_.lineNumber()));
    }

    QXmlStreamReader reader_;
    QByteArray name_; ///< of the element begun last
    quint64 values_ = 0;
    bool isWide_ = false; ///< in UTF-16 or UTF-32
};

/// Reads the binary form: objects that refer to each other by their numbers, and a table of where they are.
class BinaryReader
{
  public:
    explicit BinaryReader(QByteArrayView bytes) : objects_(bytes)
    {
        constexpr qsizetype trailerSize = 32;
        if (!bytes.startsWith("bplist00")) refuse("its version is not known");
        if (bytes.size() < 8 + trailerSize) refuse("it is cut short");
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
        if (!sizesFit || count_ > mostValues || table > size ||
            count_ * static_cast<quint64>(offsetSize_) > size - table)
            refuse("its table of contents is damaged");
        objects_ = bytes.first(static_cast<qsizetype>(table));
        offsets_ = bytes.sliced(objects_.size());
    }

    Record read()
    {
        const Object top = objectAt(top_);
        if (top.kind != dictionary) refuse("its top level is not a dictionary");
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
        if (size > bytes.size() - at) refuse("it is cut short");
        quint64 value = 0;
        for (const char byte : bytes.sliced(at, size))
            value = value << 8U | static_cast<unsigned char>(byte);
        return value;
    }

    quint64 reference(const Object& container, quint64 item) const
    {
        if (item > 2 * mostValues) refuse("it has too many values");
        const qsizetype at = container.body + static_cast<qsizetype>(item) * referenceSize_;
        return number(objects_, at, referenceSize_);
    }

    Object objectAt(quint64 index) const
    {
        if (index >= count_) refuse("it refers to what it does not hold");
        const quint64 offset = number(offsets_, static_cast<qsizetype>(index) * offsetSize_, offsetSize_);
        if (offset >= static_cast<quint64>(objects_.size())) refuse("its table of contents is damaged");
        auto at = static_cast<qsizetype>(offset);
        const quint64 marker = number(objects_, at++, 1);
        Object object{static_cast<unsigned>(marker >> 4U), marker & 0xFU, at};
        if (object.count == 0xF && object.kind >= data) {
            const quint64 sizeMarker = number(objects_, at++, 1);
            if (sizeMarker >> 4U != integer || (sizeMarker & 0xFU) > 3) refuse("a damaged length");
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
            refuse("it is cut short");
        const auto size = static_cast<qsizetype>(object.count * width);
        if ((taken_ += size) > largestPropertyList) refuse("it refers to the same bytes again and again");
        return objects_.sliced(object.body, size);
    }

    QString textOf(const Object& object)
    {
        if (object.kind != ascii && object.kind != utf16) refuse("a key that is no text");
        const QByteArrayView body = bodyOf(object, object.kind == ascii ? 1 : 2);
        QString text = object.kind == ascii ? QString::fromUtf8(body) : QString(body.size() / 2, u' ');
        if (object.kind == utf16) qFromBigEndian<char16_t>(body.data(), text.size(), text.data());
        if (text.contains(QChar(0))) refuse("a text with a zero in it");
        return text;
    }

    MaybeValue readValue(quint64 index, int depth)
    {
        countValue(values_, depth);
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
        refuse("it holds an object of an unknown kind");
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

Record readPropertyList(const QByteArray& bytes)
{
    if (bytes.size() > largestPropertyList)
        refuse(QStringLiteral("it is larger than %1 MB").arg(largestPropertyList >> 20));
    return bytes.startsWith("bplist") ? BinaryReader(bytes).read() : XmlReader(bytes).read();
}

Record readPropertyListFile(const FilePath& path)
{
    const auto file = readRegularFile(path);
    // The number of bytes read is limited rather than the file's size, since the file may grow meanwhile.
    const QByteArray bytes = file->read(largestPropertyList + 1);
    if (file->error() != QFileDevice::NoError)
        throw Failure(QStringLiteral("%1 cannot be read: %2").arg(path.readable(), file->errorString()));
    return readPropertyList(bytes);
}

} // namespace quillfern::store
