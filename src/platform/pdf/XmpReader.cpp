#include "platform/pdf/XmpReader.h"

#include <QXmlStreamReader>

namespace quillfern::pdf {

namespace {

const QString rdfNamespace = QStringLiteral("http://www.w3.org/1999/02/22-rdf-syntax-ns#");
const QString xmpNamespace = QStringLiteral("http://ns.adobe.com/xap/1.0/");
const QString claimNamespace = QStringLiteral("http://www.aiim.org/pdfa/ns/id/");

// Far above what any packet holds; the XML reader compares each attribute with each, and looks through all
// bound namespaces for each name.
constexpr int mostAttributes = 500;
constexpr qsizetype mostNamespaces = 200;
constexpr std::size_t deepest = 100;

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

/// The place behind the tag that begins at `at`; -1 for one that never ends or has too many attributes.
qsizetype behindTag(QStringView text, qsizetype at)
{
    int attributes = 0;
    for (++at; at < text.size(); ++at) {
        if (text[at] == u'>') return at + 1;
        if (text[at] != u'"' && text[at] != u'\'') continue;
        at = text.indexOf(text[at], at + 1);
        if (at < 0 || ++attributes > mostAttributes) return -1;
    }
    return -1;
}

/// Goes over the markup alone, before the XML reader sees it: no tag may be crowded, and a document type
/// declaration, with entities that could grow without end, is refused unread.
bool isFitToRead(QStringView text)
{
    for (qsizetype at = text.indexOf(u'<'); at >= 0; at = text.indexOf(u'<', at)) {
        const QStringView rest = text.mid(at);
        const auto behind = [&](QStringView mark) {
            const qsizetype found = text.indexOf(mark, at);
            return found < 0 ? found : found + mark.size();
        };
        if (rest.startsWith(u"<!--"))
            at = behind(u"-->");
        else if (rest.startsWith(u"<![CDATA["))
            at = behind(u"]]>");
        else if (rest.startsWith(u"<?"))
            at = behind(u"?>");
        else
            at = rest.startsWith(u"<!") ? -1 : behindTag(text, at);
        if (at < 0) return false;
    }
    return true;
}

class Reader
{
  public:
    explicit Reader(const QString& text) : text_(text), begin_(text.startsWith(QChar::ByteOrderMark) ? 1 : 0)
    {
        xml_.addData(begin_ == 0 ? text : text.mid(begin_));
    }

    std::optional<XmpPacket::Content> run()
    {
        while (!xml_.atEnd()) {
            const auto token = xml_.readNext();
            if (token == QXmlStreamReader::Invalid) break;
            if (!takePlace(token)) return std::nullopt;
            if (token == QXmlStreamReader::StartElement) startElement();
            if (token == QXmlStreamReader::EndElement) endElement();
            if (token == QXmlStreamReader::Characters) characters();
            if (token == QXmlStreamReader::DTD || token == QXmlStreamReader::EntityReference)
                return std::nullopt;
            if (open_.size() > deepest || namespaces_ > mostNamespaces) return std::nullopt;
            last_ = place_.to;
        }
        // What follows the root (zeros that pad a stream, say) is ignored.
        if (!rootEnded_) return std::nullopt;
        return std::move(content_);
    }

  private:
    enum class Kind { Other, Rdf, Description, Property };
    struct Open
    {
        Kind kind = Kind::Other;
        qsizetype namespaces = 0;
    };
    using Property = XmpPacket::Property;
    using Range = XmpPacket::Range;

    /// Sets place_ to the place of the token. The XML reader reports where it stopped: behind the token or,
    /// for text, behind the < of the next token. False when the text there is not such a token.
    bool takePlace(QXmlStreamReader::TokenType token)
    {
        place_ = {last_, begin_ + static_cast<qsizetype>(xml_.characterOffset())};
        if (place_.to < place_.from || place_.to > text_.size()) return false;
        const auto lastIs = [this](QChar c) { return place_.to > place_.from && text_[place_.to - 1] == c; };
        switch (token) {
        case QXmlStreamReader::Characters:
            if (xml_.isCDATA()) return lastIs(u'>');
            if (!lastIs(u'<')) return false;
            --place_.to;
            return true;
        case QXmlStreamReader::StartElement:
            place_.from = text_.lastIndexOf(u'<', place_.to - 1); // no attribute's value holds another
            return place_.from >= begin_ && lastIs(u'>');
        case QXmlStreamReader::EndElement:
            return place_.from == place_.to || (text_[place_.from] == u'<' && lastIs(u'>'));
        default:
            return true;
        }
    }

    void startElement()
    {
        const auto declared = xml_.namespaceDeclarations().size();
        namespaces_ += declared;
        const Kind parent = open_.empty() ? Kind::Other : open_.back().kind;
        Kind kind = Kind::Other;
        if (property_) {
            property_->isPlain = false;
        } else if (xml_.namespaceUri() == rdfNamespace && xml_.name() == u"RDF") {
            kind = Kind::Rdf;
        } else if (parent == Kind::Rdf && xml_.namespaceUri() == rdfNamespace &&
                   xml_.name() == u"Description") {
            kind = Kind::Description;
            descriptionAttributes();
        } else if (parent == Kind::Description && listsOf(xml_.namespaceUri(), xml_.name()) != 0) {
            kind = Kind::Property;
            beginProperty();
        }
        open_.push_back({kind, declared});
    }

    void beginProperty()
    {
        property_.emplace();
        property_->name = xml_.qualifiedName().toString();
        property_->whole = place_;
        property_->contentAt = place_.to;
        property_->isEmptyElement = text_[place_.to - 2] == u'/';
        lists_ = listsOf(xml_.namespaceUri(), xml_.name());
        for (const QXmlStreamAttribute& attribute : xml_.attributes())
            if (attribute.namespaceUri() == rdfNamespace)
                property_->isPlain = false; // a reference, a structure
    }

    void endElement()
    {
        if (open_.empty()) return;
        const Open ended = open_.back();
        open_.pop_back();
        namespaces_ -= ended.namespaces;
        rootEnded_ = open_.empty();
        if (ended.kind == Kind::Property) {
            property_->whole.to = place_.to;
            keep(std::move(*property_), lists_);
            property_.reset();
        }
        if (ended.kind == Kind::Rdf && place_.from < place_.to) {
            content_.behindLast = place_.from;
            content_.hasRdfPrefix = xml_.prefix() == u"rdf";
        }
    }

    void characters()
    {
        if (!property_) return;
        property_->texts.push_back(place_);
        property_->value += xml_.text();
    }

    /// The attributes of the start tag just read that are properties.
    void descriptionAttributes()
    {
        QXmlStreamAttributes properties = xml_.attributes();
        properties.removeIf([](const QXmlStreamAttribute& attribute) {
            return listsOf(attribute.namespaceUri(), attribute.name()) == 0;
        });
        if (properties.isEmpty()) return;
        qsizetype at = place_.from;
        while (!isBlank(text_[at]))
            ++at;
        for (;;) {
            // white space, name, =, quoted value
            const qsizetype start = at;
            at = behindBlanks(at);
            if (text_[at] == u'/' || text_[at] == u'>') return;
            const qsizetype equals = text_.indexOf(u'=', at);
            const QString name = text_.mid(at, equals - at).trimmed();
            const qsizetype quote = behindBlanks(equals + 1);
            const qsizetype end = text_.indexOf(text_[quote], quote + 1);
            at = end + 1;
            for (const QXmlStreamAttribute& attribute : properties) {
                if (attribute.qualifiedName() != name) continue;
                Property property;
                property.name = name;
                property.whole = {start, at};
                property.texts = {{quote + 1, end}};
                property.value = attribute.value().toString();
                property.isAttribute = true;
                keep(std::move(property), listsOf(attribute.namespaceUri(), attribute.name()));
            }
        }
    }

    [[nodiscard]] qsizetype behindBlanks(qsizetype at) const
    {
        while (isBlank(text_[at]))
            ++at;
        return at;
    }

    static constexpr int creatorTool = 1;
    static constexpr int part = 2;
    static constexpr int claim = 4;

    /// Which lists of the content a property of this name belongs to.
    static int listsOf(QStringView uri, QStringView name)
    {
        if (uri == xmpNamespace && name == u"CreatorTool") return creatorTool;
        if (uri != claimNamespace) return 0;
        if (name == u"part") return part | claim;
        return name == u"conformance" || name == u"rev" || name == u"amd" ? claim : 0;
    }

    void keep(Property property, int lists)
    {
        if ((lists & creatorTool) != 0) content_.creatorTools.push_back(property);
        if ((lists & part) != 0) content_.parts.push_back(property);
        if ((lists & claim) != 0) content_.claims.push_back(std::move(property));
    }

    const QString& text_;
    qsizetype begin_; ///< behind the byte order mark
    QXmlStreamReader xml_;
    qsizetype last_ = begin_; ///< where the token before ended
    Range place_;             ///< of the token in work
    std::vector<Open> open_;
    qsizetype namespaces_ = 0; ///< how many the open elements declare
    std::optional<Property> property_;
    int lists_ = 0; ///< of property_
    bool rootEnded_ = false;
    XmpPacket::Content content_;
};

} // namespace

std::optional<XmpPacket::Content> readXmp(const QString& text)
{
    if (!isFitToRead(text)) return std::nullopt;
    return Reader(text).run();
}

} // namespace quillfern::pdf
