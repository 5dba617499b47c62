#include "platform/store/PropertyList.h"

#include "platform/store/PropertyListCheck.h"
#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"

#include <clocale>
#include <cstdlib>
#include <limits>
#include <locale.h>
#include <memory>
#include <plist/plist.h>

namespace quillfern {

namespace {

struct NodeFree
{
    void operator()(void* node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, NodeFree>;

struct Release
{
    void operator()(char* text) const { std::free(text); }
};
using Text = std::unique_ptr<char, Release>;

/// The library prints and reads real numbers with the decimal mark of the locale. This takes the calling
/// thread to the "C" locale for as long as it lives, and no other thread with it.
class PointAsDecimalMark
{
  public:
    PointAsDecimalMark() : plain_(::newlocale(LC_ALL_MASK, "C", nullptr))
    {
        if (!plain_) throw Failure(QStringLiteral("the system has no \"C\" locale"));
        before_ = ::uselocale(plain_);
    }
    ~PointAsDecimalMark()
    {
        ::uselocale(before_);
        ::freelocale(plain_);
    }
    PointAsDecimalMark(const PointAsDecimalMark&) = delete;
    PointAsDecimalMark& operator=(const PointAsDecimalMark&) = delete;

  private:
    locale_t plain_;
    locale_t before_ = nullptr;
};

/// The text without what XML cannot hold: control characters, halves of surrogate pairs, and the two codes
/// that are no characters.
QByteArray writable(const QString& text)
{
    QString kept;
    kept.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            kept += c;
            kept += text[++i];
            continue;
        }
        const char16_t u = c.unicode();
        const bool isControl = u < 0x20 && u != '\t' && u != '\n' && u != '\r';
        if (!isControl && !c.isSurrogate() && u < 0xFFFE) kept += c;
    }
    return kept.toUtf8();
}

Node nodeFor(const RecordValue& value);

struct NodeMaker
{
    Node operator()(bool value) const { return Node(plist_new_bool(value ? 1 : 0)); }
    Node operator()(std::int64_t value) const
    {
        return Node(plist_new_uint(static_cast<std::uint64_t>(value)));
    }
    Node operator()(double value) const { return Node(plist_new_real(value)); }
    Node operator()(const QString& value) const
    {
        return Node(plist_new_string(writable(value).constData()));
    }
    Node operator()(const QByteArray& value) const
    {
        return Node(plist_new_data(value.constData(), static_cast<std::uint64_t>(value.size())));
    }
    Node operator()(const Record& record) const
    {
        Node node(plist_new_dict());
        for (const auto& [key, value] : record.entries())
            plist_dict_set_item(node.get(), writable(key).constData(), nodeFor(value).release());
        return node;
    }
    Node operator()(const RecordValue::List& list) const
    {
        Node node(plist_new_array());
        for (const RecordValue& value : list)
            plist_array_append_item(node.get(), nodeFor(value).release());
        return node;
    }
};

Node nodeFor(const RecordValue& value)
{
    return std::visit(NodeMaker(), value.variant());
}

/// At least as much as the value takes in XML form.
struct SizeEstimate
{
    qint64 operator()(const QString& value) const { return 40 + 6 * qint64{value.size()}; }
    // Base64, in indented lines.
    qint64 operator()(const QByteArray& value) const { return 60 + qint64{value.size()} * 2; }
    qint64 operator()(const Record& record) const
    {
        qint64 size = 60;
        for (const auto& [key, value] : record.entries())
            size += (*this)(key) + std::visit(*this, value.variant());
        return size;
    }
    qint64 operator()(const RecordValue::List& list) const
    {
        qint64 size = 60;
        for (const RecordValue& value : list)
            size += std::visit(*this, value.variant());
        return size;
    }
    template <class Scalar>
    qint64 operator()(const Scalar&) const
    {
        return 80;
    }
};

[[noreturn]] void tooLarge()
{
    throw Failure(QStringLiteral("there is more in it than the %1 MB that a property list may have here")
                      .arg(largestPropertyList >> 20));
}

std::optional<RecordValue> valueOf(plist_t node);

Record recordOf(plist_t node)
{
    Record record;
    plist_dict_iter position = nullptr;
    plist_dict_new_iter(node, &position);
    const Text iterator(static_cast<char*>(position));
    for (;;) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, position, &key, &item);
        const Text owned(key);
        if (!item) return record;
        auto value = valueOf(item);
        if (key && value) record.set(QString::fromUtf8(key), std::move(*value));
    }
}

RecordValue::List listOf(plist_t node)
{
    RecordValue::List list;
    plist_array_iter position = nullptr;
    plist_array_new_iter(node, &position);
    const Text iterator(static_cast<char*>(position));
    for (;;) {
        plist_t item = nullptr;
        plist_array_next_item(node, position, &item);
        if (!item) return list;
        if (auto value = valueOf(item)) list.push_back(std::move(*value));
    }
}

std::optional<RecordValue> valueOf(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        std::uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return value != 0;
    }
    case PLIST_UINT: {
        std::uint64_t value = 0;
        plist_get_uint_val(node, &value);
        return static_cast<std::int64_t>(value);
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return value;
    }
    case PLIST_STRING: {
        char* value = nullptr;
        plist_get_string_val(node, &value);
        const Text owned(value);
        return QString::fromUtf8(value ? value : "");
    }
    case PLIST_DATA: {
        char* value = nullptr;
        std::uint64_t length = 0;
        plist_get_data_val(node, &value, &length);
        const Text owned(value);
        return QByteArray(value, static_cast<qsizetype>(length));
    }
    case PLIST_DICT:
        return recordOf(node);
    case PLIST_ARRAY:
        return listOf(node);
    default:
        return std::nullopt;
    }
}

} // namespace

QByteArray writePropertyList(const Record& record)
{
    // The library counts in 32 bits: what would not fit must not reach it.
    if (SizeEstimate()(record) > std::numeric_limits<std::int32_t>::max()) tooLarge();
    const PointAsDecimalMark locale;
    const Node node = NodeMaker()(record);
    char* xml = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(node.get(), &xml, &length);
    const Text owned(xml);
    if (!xml) throw Failure(QStringLiteral("the property list cannot be written"));
    if (length > largestPropertyList) tooLarge();
    return {xml, static_cast<qsizetype>(length)};
}

Record readPropertyList(const QByteArray& bytes)
{
    if (bytes.size() > largestPropertyList) tooLarge();
    checkPropertyList(bytes);
    const PointAsDecimalMark locale;
    plist_t parsed = nullptr;
    const auto length = static_cast<std::uint32_t>(bytes.size());
    if (isBinaryPropertyList(bytes))
        plist_from_bin(bytes.constData(), length, &parsed);
    else
        plist_from_xml(bytes.constData(), length, &parsed);
    const Node node(parsed);
    if (!node) throw Failure(QStringLiteral("not a usable property list: it is damaged"));
    if (plist_get_node_type(node.get()) != PLIST_DICT)
        throw Failure(QStringLiteral("not a usable property list: its top level is not a dictionary"));
    return recordOf(node.get());
}

Record readPropertyListFile(const FilePath& path)
{
    const auto file = readRegularFile(path);
    // Bounded by what is read: the file may grow meanwhile.
    const QByteArray bytes = file->read(largestPropertyList + 1);
    if (file->error() != QFileDevice::NoError)
        throw Failure(QStringLiteral("cannot read %1: %2").arg(path.readable(), file->errorString()));
    return readPropertyList(bytes);
}

} // namespace quillfern
