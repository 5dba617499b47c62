#include "platform/raster/ExtendedXmp.h"

#include <QXmlStreamReader>
#include <QtEndian>
#include <optional>

namespace quillfern::raster {

namespace {

constexpr qsizetype digestSize = 32;

/// The text between the start and the end of the packet's rdf:RDF element.
struct Content
{
    qsizetype start = 0;
    qsizetype end = 0;
    bool isBare = true; ///< the content needs no names that are declared around it but "rdf"
};

/// Nothing for text that is no packet, or one that calls the element otherwise.
std::optional<Content> contentOf(const QString& text)
{
    static const QString rdf = QStringLiteral("http://www.w3.org/1999/02/22-rdf-syntax-ns#");
    QXmlStreamReader reader(text);
    Content content;
    bool isInside = false;
    for (qint64 before = 0; !reader.atEnd(); before = reader.characterOffset()) {
        reader.readNext();
        const bool isRdf = reader.namespaceUri() == rdf && reader.name() == QLatin1String("RDF");
        if (reader.isStartElement() && !isInside)
            for (const auto& declared : reader.namespaceDeclarations())
                if (declared.namespaceUri() != QLatin1String("adobe:ns:meta/") &&
                    declared.namespaceUri() != rdf)
                    content.isBare = false;
        if (reader.isStartElement() && isRdf) {
            if (reader.prefix() != QLatin1String("rdf")) return std::nullopt;
            isInside = true;
            content.start = reader.characterOffset();
        }
        if (reader.isEndElement() && isRdf) content.end = before;
    }
    return reader.hasError() || content.end < content.start || !isInside ? std::nullopt
                                                                         : std::optional(content);
}

} // namespace

void ExtendedXmp::addPart(const QByteArray& segment)
{
    if (segment.size() <= digestSize + 8) return;
    const QByteArray digest = segment.left(digestSize);
    sizes_[digest] = qFromBigEndian<quint32>(segment.constData() + digestSize);
    parts_[digest][qFromBigEndian<quint32>(segment.constData() + digestSize + 4)] =
        segment.mid(digestSize + 8);
}

QByteArray ExtendedXmp::packet() const
{
    for (const auto& [digest, parts] : parts_) {
        if (!packet_.contains(digest)) continue;
        QByteArray extension;
        for (const auto& [place, part] : parts)
            if (place == static_cast<quint32>(extension.size())) extension += part;
        if (extension.size() != qsizetype{sizes_.at(digest)}) continue;
        QString text = QString::fromUtf8(packet_);
        const QString more = QString::fromUtf8(extension);
        const auto place = contentOf(text);
        const auto content = contentOf(more);
        if (!place || !content || !content->isBare) continue;
        text.insert(place->end, more.mid(content->start, content->end - content->start));
        return text.toUtf8();
    }
    return packet_;
}

} // namespace quillfern::raster
