#include "platform/pdf/XmpPacket.h"

#include "platform/pdf/XmpReader.h"

#include <algorithm>

namespace quillfern::pdf {

namespace {

QByteArray encoded(const QString& text, QStringConverter::Encoding encoding)
{
    QStringEncoder encoder(encoding);
    return encoder(text);
}

} // namespace

XmpPacket::XmpPacket(const QByteArray& bytes)
{
    encoding_ = QStringConverter::encodingForData(bytes, u'<').value_or(QStringConverter::Utf8);
    QStringDecoder decoder(encoding_, QStringConverter::Flag::ConvertInitialBom);
    text_ = decoder(bytes);
    // Encoding it again must give the same bytes, or an edit would change others.
    if (!decoder.hasError() && encoded(text_, encoding_) == bytes) read();
    if (!understood_) text_.clear();
}

void XmpPacket::read()
{
    auto content = readXmp(text_);
    understood_ = content.has_value();
    content_ = understood_ ? std::move(*content) : Content();
}

QByteArray XmpPacket::bytes() const
{
    return encoded(text_, encoding_);
}

void XmpPacket::apply(std::vector<Edit> edits)
{
    std::stable_sort(edits.begin(), edits.end(),
                     [](const Edit& a, const Edit& b) { return a.range.from < b.range.from; });
    QString changed;
    qsizetype done = 0;
    for (const Edit& edit : edits) {
        changed += QStringView(text_).mid(done, edit.range.from - done);
        changed += edit.replacement;
        done = edit.range.to;
    }
    changed += QStringView(text_).mid(done);
    text_ = changed;
    read();
}

int XmpPacket::archivalPart() const
{
    for (const Property& part : content_.parts) {
        const QString value = part.value.trimmed();
        if (!value.isEmpty() && value[0] >= u'0' && value[0] <= u'9') return value[0].digitValue();
    }
    return 0;
}

bool XmpPacket::withdrawArchivalClaim()
{
    if (content_.claims.empty()) return false;
    std::vector<Edit> edits;
    for (const Property& claim : content_.claims)
        edits.push_back({claim.whole, {}});
    apply(std::move(edits));
    return true;
}

bool XmpPacket::setCreatorTool(const QString& creator)
{
    const QString value = creator.toHtmlEscaped();
    std::vector<Edit> edits;
    for (const Property& tool : content_.creatorTools) {
        if (!tool.isPlain) continue;
        if (tool.isAttribute) {
            edits.push_back({tool.texts.front(), QString(value).replace(u'\'', QStringLiteral("&#39;"))});
        } else if (tool.isEmptyElement) {
            edits.push_back(
                {{tool.contentAt - 2, tool.contentAt}, QStringLiteral(">%1</%2>").arg(value, tool.name)});
        } else if (tool.texts.empty()) {
            edits.push_back({{tool.contentAt, tool.contentAt}, value});
        } else {
            for (const Range& text : tool.texts)
                edits.push_back({text, &text == &tool.texts.front() ? value : QString()});
        }
    }
    if (content_.creatorTools.empty() && content_.behindLast >= 0) {
        const QString binding =
            content_.hasRdfPrefix
                ? QString()
                : QStringLiteral(" xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"");
        edits.push_back({{content_.behindLast, content_.behindLast},
                         QStringLiteral("<rdf:Description%1 rdf:about=\"\" "
                                        "xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\"><xmp:CreatorTool>%2"
                                        "</xmp:CreatorTool></rdf:Description>\n")
                             .arg(binding, value)});
    }
    if (edits.empty()) return false;
    apply(std::move(edits));
    return true;
}

} // namespace quillfern::pdf
