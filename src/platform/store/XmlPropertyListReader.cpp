#include "platform/store/PropertyListForms.h"

#include <QStringDecoder>
#include <QXmlStreamReader>
#include <limits>

namespace quillfern::store {

namespace {

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
            if (!text.isValidUtf16()) refusePropertyList("its text is not valid UTF-16");
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
        if (name_ != "plist") refusePropertyList("it does not begin as one");
        if (!nextElement()) refusePropertyList("it holds no value");
        if (name_ != "dict") refusePropertyList("its top level is not a dictionary");
        Record record = readDictionary(1);
        if (nextElement()) refusePropertyList("more than one value at its top");
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
                refusePropertyList("a tag that is too long");
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
                    refusePropertyList("it declares things of its own");
                break;
            case QXmlStreamReader::StartElement:
                // A copy: a view into the parser becomes invalid when the parser reads on.
                name_ = reader_.qualifiedName().toUtf8();
                return true;
            case QXmlStreamReader::Characters:
                if (!reader_.isWhitespace()) refusePropertyList("text where none belongs");
                break;
            case QXmlStreamReader::EntityReference:
            case QXmlStreamReader::ProcessingInstruction:
                refusePropertyList("XML that no property list has");
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
        refusePropertyList("its text is not in UTF-8 or UTF-16");
    }

    MaybeValue readValue(int depth)
    {
        countPropertyListValue(values_, depth);
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
            if (name_ != "key") refusePropertyList("a value without a key");
            const QString key = elementText();
            if (!nextElement()) refusePropertyList("a key without a value");
            if (auto value = readValue(depth)) record.set(key, std::move(*value));
        }
        return record;
    }

    MaybeValue readScalar()
    {
        static const QByteArrayList names = {"string", "integer", "real", "data", "true", "false", "date"};
        const QString name = QString::fromUtf8(name_.left(40));
        if (name_ == "key") refusePropertyList("a key where none belongs");
        if (!names.contains(name_)) refusePropertyList(QStringLiteral("it has an element <%1>").arg(name));
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
        if (!value) refusePropertyList(QStringLiteral("<%1>%2</%1>").arg(name, text.left(40)));
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
            refusePropertyList(
                QStringLiteral("%1 in line %2").arg(reader_.errorString()).arg(reader_.lineNumber()));
    }

    QXmlStreamReader reader_;
    QByteArray name_; ///< of the element begun last
    quint64 values_ = 0;
    bool isWide_ = false; ///< in UTF-16 or UTF-32
};

} // namespace

Record readXmlPropertyList(const QByteArray& bytes)
{
    return XmlReader(bytes).read();
}

} // namespace quillfern::store
