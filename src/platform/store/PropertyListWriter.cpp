#include "platform/store/PropertyList.h"
#include "platform/system/Failure.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace quillfern::store {

namespace {

/// The text without what XML cannot hold: control characters, halves of surrogate pairs, and the two codes
/// that are no characters.
QString writable(const QString& text)
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
    return kept;
}

QByteArray numberText(double value)
{
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-infinity" : "+infinity";
    if (value == 0) return "0.0";
    // Seventeen digits. Of two decimals that are equally near the even one is wanted, as std::to_chars()
    // gives it; QByteArray::number() gives the larger.
    std::array<char, 32> text{};
    const char* end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 17).ptr;
    return {text.data(), end - text.data()};
}

/// Writes the XML form. QXmlStreamWriter would write a quotation mark as an entity, but a profile that is
/// saved again unchanged must have the same bytes as before.
class PropertyListWriter
{
  public:
    QByteArray write(const Record& record)
    {
        (*this)(record);
        return out_ + "</plist>\n";
    }

    void operator()(bool value) { line(value ? "<true/>" : "<false/>"); }
    void operator()(std::int64_t value) { line("<integer>" + QByteArray::number(value) + "</integer>"); }
    void operator()(double value) { line("<real>" + numberText(value) + "</real>"); }
    void operator()(const QString& value) { element("string", value); }

    void operator()(const QByteArray& value)
    {
        line("<data>");
        const qsizetype tabs = std::min<qsizetype>(depth_, 8);
        const qsizetype width = 76 - 8 * tabs;
        const QByteArray base64 = value.toBase64();
        for (qsizetype at = 0; at < base64.size(); at += width)
            out_.append(tabs, '\t').append(base64.mid(at, width)).append('\n');
        line("</data>");
    }

    void operator()(const Record& record)
    {
        if (record.empty()) return line("<dict/>");
        line("<dict>");
        ++depth_;
        for (const auto& [key, value] : record.entries()) {
            element("key", key);
            std::visit(*this, value.variant());
        }
        --depth_;
        line("</dict>");
    }

    void operator()(const RecordValue::List& list)
    {
        if (list.empty()) return line("<array/>");
        line("<array>");
        ++depth_;
        for (const RecordValue& value : list)
            std::visit(*this, value.variant());
        --depth_;
        line("</array>");
    }

  private:
    void element(const QByteArray& name, const QString& text)
    {
        QByteArray escaped = writable(text).toUtf8();
        escaped.replace('&', "&amp;").replace('<', "&lt;").replace('>', "&gt;");
        line('<' + name + '>' + escaped + "</" + name + '>');
    }

    void line(const QByteArray& xml)
    {
        out_.append(depth_, '\t').append(xml).append('\n');
        if (out_.size() > largestPropertyList)
            throw Failure(
                QStringLiteral("there is more in it than the %1 MB that a property list may have here")
                    .arg(largestPropertyList >> 20));
    }

    QByteArray out_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                      "<plist version=\"1.0\">\n";
    qsizetype depth_ = 0;
};

} // namespace

QByteArray writePropertyList(const Record& record)
{
    return PropertyListWriter().write(record);
}

} // namespace quillfern::store
