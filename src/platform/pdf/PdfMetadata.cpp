#include "platform/pdf/PdfMetadata.h"

#include "platform/pdf/BoundedStream.h"

#include <QRegularExpression>
#include <QStringDecoder>

namespace quillfern {

namespace {

const QString xmpNamespace = QStringLiteral("http://ns.adobe.com/xap/1.0/");

/// Empty for bytes that are not what they say: such a packet is better left alone.
QString decodePacket(const std::string& bytes)
{
    const QByteArray raw(bytes.data(), static_cast<qsizetype>(bytes.size()));
    const auto encoding = QStringConverter::encodingForData(raw, u'<');
    QStringDecoder decoder(encoding.value_or(QStringConverter::Utf8));
    const QString text = decoder(raw);
    return decoder.hasError() ? QString() : text;
}

/// The prefix that the packet binds to a namespace; empty when it binds none.
QString prefixOf(const QString& packet, const QString& name)
{
    const QRegularExpression binding(QStringLiteral("xmlns:([\\w.-]+)\\s*=\\s*[\"']") +
                                     QRegularExpression::escape(name) + QStringLiteral("[\"']"));
    return binding.match(packet).captured(1);
}

} // namespace

QString withCreatorTool(QString packet, const QString& creator)
{
    const QString value = creator.toHtmlEscaped();
    const QString prefix = prefixOf(packet, xmpNamespace);
    if (!prefix.isEmpty()) {
        const QString name = QRegularExpression::escape(prefix) + QStringLiteral(":CreatorTool");
        const QRegularExpression element(QStringLiteral("(<%1(?:\\s[^>]*)?>)[^<]*(</%1\\s*>)").arg(name));
        const QRegularExpression empty(QStringLiteral("<%1\\s*/>").arg(name));
        const QRegularExpression attribute(QStringLiteral("(\\s%1\\s*=\\s*)(\"[^\"]*\"|'[^']*')").arg(name));
        for (const auto& [pattern, before, after] :
             {std::tuple(element, QStringLiteral("\\1"), QStringLiteral("\\2")),
              std::tuple(empty, QStringLiteral("<%1:CreatorTool>").arg(prefix),
                         QStringLiteral("</%1:CreatorTool>").arg(prefix)),
              std::tuple(attribute, QStringLiteral("\\1\""), QStringLiteral("\""))}) {
            if (pattern.match(packet).hasMatch())
                return packet.replace(pattern,
                                      before + QString(value).replace(u'\\', QStringLiteral("\\\\")) + after);
        }
    }
    const qsizetype end = packet.lastIndexOf(QStringLiteral("</rdf:RDF>"));
    if (end >= 0)
        packet.insert(end,
                      QStringLiteral("<rdf:Description rdf:about=\"\" xmlns:xmp=\"%1\"><xmp:CreatorTool>%2"
                                     "</xmp:CreatorTool></rdf:Description>\n")
                          .arg(xmpNamespace, value));
    return packet;
}

PdfMetadata::PdfMetadata(QPDF& document)
    : document_(document), stream_(document.getRoot().getKey("/Metadata"))
{
    if (!stream_.isStream()) return;
    constexpr std::size_t largestPacket = std::size_t{32} << 20;
    const BoundedStream packet = decodeBounded(stream_, largestPacket);
    if (packet.data) packet_ = decodePacket(*packet.data);
}

void PdfMetadata::storePacket()
{
    // Without a filter, as archival profiles demand and other programs expect.
    stream_.replaceStreamData(packet_.toStdString(), QPDFObjectHandle::newNull(),
                              QPDFObjectHandle::newNull());
}

void PdfMetadata::setCreator(const QString& creator)
{
    QPDFObjectHandle info = document_.getTrailer().getKey("/Info");
    if (!info.isDictionary()) {
        info = document_.makeIndirectObject(QPDFObjectHandle::newDictionary());
        document_.getTrailer().replaceKey("/Info", info);
    }
    info.replaceKey("/Creator", QPDFObjectHandle::newUnicodeString(creator.toStdString()));
    if (packet_.isEmpty()) return;
    packet_ = withCreatorTool(packet_, creator);
    storePacket();
}

int PdfMetadata::archivalPart() const
{
    const QString prefix = prefixOf(packet_, QStringLiteral("http://www.aiim.org/pdfa/ns/id/"));
    if (prefix.isEmpty()) return 0;
    const QRegularExpression part(
        QStringLiteral("%1:part(?:\\s*=\\s*[\"']|\\s*>\\s*)(\\d)").arg(QRegularExpression::escape(prefix)));
    return part.match(packet_).captured(1).toInt();
}

void PdfMetadata::withdrawArchivalClaim()
{
    const QString prefix = prefixOf(packet_, QStringLiteral("http://www.aiim.org/pdfa/ns/id/"));
    if (prefix.isEmpty()) return;
    const QString name = QRegularExpression::escape(prefix) + QStringLiteral(":(?:part|conformance|rev|amd)");
    packet_.remove(QRegularExpression(QStringLiteral("<(%1)(?:\\s[^>]*)?>[^<]*</\\1\\s*>").arg(name)));
    packet_.remove(QRegularExpression(QStringLiteral("\\s%1\\s*=\\s*(?:\"[^\"]*\"|'[^']*')").arg(name)));
    storePacket();
}

bool PdfMetadata::hasRgbOutputIntent() const
{
    QPDFObjectHandle intents = document_.getRoot().getKey("/OutputIntents");
    if (!intents.isArray()) return false;
    for (int i = 0; i < intents.getArrayNItems(); ++i) {
        QPDFObjectHandle intent = intents.getArrayItem(i);
        if (!intent.isDictionary()) continue;
        QPDFObjectHandle profile = intent.getKey("/DestOutputProfile");
        if (profile.isStream() && profile.getDict().getKey("/N").isInteger() &&
            profile.getDict().getKey("/N").getIntValue() == 3)
            return true;
    }
    return false;
}

} // namespace quillfern
