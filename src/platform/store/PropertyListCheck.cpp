#include "platform/store/PropertyListCheck.h"

#include "platform/system/Failure.h"

#include <QSet>
#include <QXmlStreamReader>
#include <algorithm>
#include <array>
#include <vector>

namespace quillfern {

namespace {

// Settings hold a configuration, that holds stamps, those hold fonts: five levels.
constexpr int deepest = 32;
constexpr qint64 mostValues = 1'000'000;

[[noreturn]] void refuse(const QString& reason)
{
    throw Failure(QStringLiteral("not a usable property list: ") + reason);
}

bool isInteger(QStringView text)
{
    const QStringView digits = text.startsWith(u'-') || text.startsWith(u'+') ? text.mid(1) : text;
    bool ok = false;
    if (digits.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        static_cast<void>(digits.mid(2).toULongLong(&ok, 16));
        return ok;
    }
    static_cast<void>(digits.toULongLong(&ok));
    return ok && digits.front().isDigit();
}

bool isReal(QStringView text)
{
    bool ok = false;
    static_cast<void>(text.toDouble(&ok)); // also takes nan and inf
    return ok;
}

bool isBase64(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) {
        const char16_t u = c.unicode();
        return (u >= 'A' && u <= 'Z') || (u >= 'a' && u <= 'z') || (u >= '0' && u <= '9') || u == '+' ||
               u == '/' || u == '=' || u == ' ' || u == '\t' || u == '\n' || u == '\r';
    });
}

/// Walks the XML form with a strict parser that keeps its state on the heap.
class XmlCheck
{
  public:
    explicit XmlCheck(const QByteArray& bytes) : reader_(bytes) {}

    void run()
    {
        while (!reader_.atEnd())
            take(reader_.readNext());
        if (reader_.hasError())
            refuse(QStringLiteral("%1 in line %2").arg(reader_.errorString()).arg(reader_.lineNumber()));
        if (values_ == 0) refuse(QStringLiteral("it holds no value"));
    }

  private:
    struct Level
    {
        bool isPlist = false;
        bool isDictionary = false;
        bool hasKey = false; ///< of a dictionary: a key waits for its value
    };

    void take(QXmlStreamReader::TokenType token)
    {
        switch (token) {
        case QXmlStreamReader::StartDocument:
            checkEncoding(reader_.documentEncoding());
            break;
        case QXmlStreamReader::DTD:
            if (!reader_.entityDeclarations().empty() || reader_.text().contains(u'['))
                refuse(QStringLiteral("it declares things of its own"));
            break;
        case QXmlStreamReader::StartElement:
            begin(reader_.name());
            break;
        case QXmlStreamReader::EndElement:
            if (!levels_.empty() && levels_.back().hasKey) refuse(QStringLiteral("a key without a value"));
            levels_.pop_back();
            break;
        case QXmlStreamReader::Characters:
            if (!reader_.isWhitespace()) refuse(QStringLiteral("text where none belongs"));
            break;
        case QXmlStreamReader::EntityReference:
        case QXmlStreamReader::ProcessingInstruction:
            refuse(QStringLiteral("XML that no property list has"));
        default:
            break;
        }
    }

    static void checkEncoding(QStringView encoding)
    {
        for (const char* known : {"", "UTF-8", "US-ASCII", "ASCII"})
            if (encoding.compare(QLatin1String(known), Qt::CaseInsensitive) == 0) return;
        refuse(QStringLiteral("its text is not in UTF-8"));
    }

    void begin(QStringView name)
    {
        if (levels_.empty()) {
            if (name != QLatin1String("plist")) refuse(QStringLiteral("it does not begin as one"));
            levels_.push_back({.isPlist = true});
            return;
        }
        if (name == QLatin1String("key")) {
            if (!levels_.back().isDictionary || levels_.back().hasKey)
                refuse(QStringLiteral("a key where none belongs"));
            reader_.readElementText();
            levels_.back().hasKey = true;
            return;
        }
        countValue();
        if (name == QLatin1String("dict") || name == QLatin1String("array"))
            levels_.push_back({.isDictionary = name == QLatin1String("dict")});
        else
            checkScalar(name.toString(), reader_.readElementText());
    }

    void countValue()
    {
        Level& level = levels_.back();
        if (level.isDictionary && !level.hasKey) refuse(QStringLiteral("a value without a key"));
        if (level.isPlist && values_ > 0) refuse(QStringLiteral("more than one value at its top"));
        level.hasKey = false;
        if (levels_.size() > deepest) refuse(QStringLiteral("it is nested too deeply"));
        if (++values_ > mostValues) refuse(QStringLiteral("it has too many values"));
    }

    void checkScalar(const QString& name, const QString& text)
    {
        bool known = true;
        bool valid = true;
        if (name == QLatin1String("integer"))
            valid = isInteger(QStringView(text).trimmed());
        else if (name == QLatin1String("real"))
            valid = isReal(QStringView(text).trimmed());
        else if (name == QLatin1String("data"))
            valid = isBase64(text);
        else if (name == QLatin1String("true") || name == QLatin1String("false"))
            valid = text.isEmpty();
        else
            known = name == QLatin1String("string") || name == QLatin1String("date");
        if (reader_.hasError()) return; // run() tells
        if (!known) refuse(QStringLiteral("it has an element <%1>").arg(name.left(40)));
        if (!valid) refuse(QStringLiteral("<%1>%2</%1>").arg(name, text.left(40)));
    }

    QXmlStreamReader reader_;
    std::vector<Level> levels_;
    qint64 values_ = 0;
};

/// Walks the object table of the binary form, without recursion.
class BinaryCheck
{
  public:
    explicit BinaryCheck(const QByteArray& bytes) : bytes_(bytes) {}

    void run()
    {
        constexpr qsizetype trailer = 32;
        if (bytes_.size() < 8 + trailer) refuse(QStringLiteral("it is cut short"));
        const qsizetype end = bytes_.size() - trailer;
        offsetSize_ = static_cast<int>(number(end + 6, 1));
        referenceSize_ = static_cast<int>(number(end + 7, 1));
        objects_ = number(end + 8, 8);
        const quint64 top = number(end + 16, 8);
        table_ = number(end + 24, 8);
        const bool sizesFit =
            offsetSize_ >= 1 && offsetSize_ <= 8 && referenceSize_ >= 1 && referenceSize_ <= 8;
        if (!sizesFit || objects_ == 0 || objects_ > mostValues || top >= objects_ ||
            table_ > static_cast<quint64>(end) ||
            objects_ * static_cast<quint64>(offsetSize_) > static_cast<quint64>(end) - table_)
            refuse(QStringLiteral("its table of contents is damaged"));
        walk(top);
    }

  private:
    struct Open
    {
        quint64 object;
        std::vector<quint64> children;
        std::size_t next = 0;
    };

    static constexpr unsigned asciiText = 5;
    static constexpr unsigned utf16Text = 6;
    static constexpr unsigned array = 0xA;
    static constexpr unsigned dictionary = 0xD;

    quint64 number(qsizetype at, int size) const
    {
        if (at < 0 || at + size > bytes_.size()) refuse(QStringLiteral("it is cut short"));
        quint64 value = 0;
        for (int i = 0; i < size; ++i)
            value = value << 8 | static_cast<unsigned char>(bytes_[at + i]);
        return value;
    }

    struct Object
    {
        unsigned kind = 0;
        quint64 count = 0; ///< of characters, bytes or references, where the kind has them
        qsizetype body = 0;
    };

    Object objectAt(quint64 index) const
    {
        const quint64 offset =
            number(static_cast<qsizetype>(table_) + static_cast<qsizetype>(index) * offsetSize_, offsetSize_);
        if (offset >= table_) refuse(QStringLiteral("its table of contents is damaged"));
        auto at = static_cast<qsizetype>(offset);
        const auto marker = static_cast<unsigned>(number(at++, 1));
        Object object{marker >> 4U, marker & 0xFU, at};
        if (object.count == 0xF && object.kind >= 4) {
            const auto sizeMarker = static_cast<unsigned>(number(at++, 1));
            if (sizeMarker >> 4U != 1 || (sizeMarker & 0xFU) > 3) refuse(QStringLiteral("a damaged length"));
            const int size = 1 << (sizeMarker & 0xFU);
            object.count = number(at, size);
            object.body = at + size;
        }
        return object;
    }

    /// The library takes texts for texts that end at their first zero.
    void checkText(const Object& text) const
    {
        const int width = text.kind == utf16Text ? 2 : 1;
        if (text.count > static_cast<quint64>(bytes_.size())) refuse(QStringLiteral("it is cut short"));
        for (quint64 i = 0; i < text.count; ++i)
            if (number(text.body + static_cast<qsizetype>(i) * width, width) == 0)
                refuse(QStringLiteral("a text with a zero in it"));
    }

    /// What an object of the table refers to; none for a scalar.
    std::vector<quint64> childrenOf(quint64 index) const
    {
        Object object = objectAt(index);
        if (object.kind == asciiText || object.kind == utf16Text) checkText(object);
        if (object.kind != array && object.kind != dictionary) return {};
        if (object.count > mostValues) refuse(QStringLiteral("it has too many values"));
        if (object.kind == dictionary) object.count *= 2;
        std::vector<quint64> children;
        for (quint64 i = 0; i < object.count; ++i) {
            children.push_back(number(object.body, referenceSize_));
            object.body += referenceSize_;
            if (children.back() >= objects_) refuse(QStringLiteral("it refers to what it does not hold"));
        }
        return children;
    }

    void walk(quint64 top)
    {
        std::vector<Open> open;
        open.push_back({top, childrenOf(top)});
        qint64 values = 1;
        while (!open.empty()) {
            Open& level = open.back();
            if (level.next == level.children.size()) {
                open.pop_back();
                continue;
            }
            const quint64 child = level.children[level.next++];
            // Objects may be shared, so the same one can be met again and again: every meeting counts.
            if (++values > mostValues) refuse(QStringLiteral("it has too many values"));
            auto children = childrenOf(child);
            if (children.empty()) continue;
            if (open.size() >= deepest) refuse(QStringLiteral("it is nested too deeply"));
            open.push_back({child, std::move(children)});
        }
    }

    const QByteArray& bytes_;
    int offsetSize_ = 0;
    int referenceSize_ = 0;
    quint64 objects_ = 0;
    quint64 table_ = 0;
};

} // namespace

bool isBinaryPropertyList(const QByteArray& bytes)
{
    return bytes.startsWith("bplist0");
}

void checkPropertyList(const QByteArray& bytes)
{
    if (isBinaryPropertyList(bytes))
        BinaryCheck(bytes).run();
    else
        XmlCheck(bytes).run();
}

} // namespace quillfern
