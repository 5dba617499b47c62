#pragma once

#include <QByteArray>
#include <QString>
#include <QStringConverter>
#include <vector>

namespace quillfern::pdf {

/// An XMP packet (ISO 16684-1): what a document says about itself, in RDF. Changes are made where the value
/// stands, in whatever form it is written there and in the packet's own encoding; every other byte stays.
///
/// A packet is left as it is when it cannot be understood: one that is not well-formed or not in the Unicode
/// encoding that it begins in, that holds a document type declaration, or that is nested, or crowded with
/// attributes or namespaces, beyond all reason.
class XmpPacket
{
  public:
    /// A place in the packet's decoded text.
    struct Range
    {
        qsizetype from = 0;
        qsizetype to = 0;
    };
    /// A property of the document itself: a child element or an attribute of a top rdf:Description.
    struct Property
    {
        QString name;             ///< as it is written, with its prefix
        Range whole;              ///< the element with its tags; the attribute with the white space before it
        qsizetype contentAt = 0;  ///< behind an element's start tag
        std::vector<Range> texts; ///< the character data of the value, apart from comments between them
        QString value;
        bool isAttribute = false;
        bool isEmptyElement = false; ///< written as one tag
        bool isPlain = true;         ///< nothing but text
    };
    /// What the packet says, as far as it matters here.
    struct Content
    {
        std::vector<Property> creatorTools;
        std::vector<Property> parts;  ///< pdfaid:part
        std::vector<Property> claims; ///< every property of the archival claim, the part included
        qsizetype behindLast = -1;    ///< where another rdf:Description may stand; -1 for nowhere
        bool hasRdfPrefix = false;    ///< at that place the prefix rdf: is bound to RDF
    };

    /// The bytes are decoded here and need not outlive the call.
    explicit XmpPacket(const QByteArray& bytes);

    [[nodiscard]] bool isUnderstood() const { return understood_; }
    [[nodiscard]] QByteArray bytes() const;

    /// The archival profile that the packet claims (pdfaid:part, ISO 19005); 0 for none.
    [[nodiscard]] int archivalPart() const;
    /// Removes the archival claim. False when there is none.
    bool withdrawArchivalClaim();
    /// Sets xmp:CreatorTool to `creator`, adding the property where it is missing. False when that is not
    /// possible.
    bool setCreatorTool(const QString& creator);

  private:
    struct Edit
    {
        Range range;
        QString replacement;
    };
    void read();
    void apply(std::vector<Edit> edits);

    QStringConverter::Encoding encoding_ = QStringConverter::Utf8;
    QString text_; ///< a byte order mark included
    Content content_;
    bool understood_ = false;
};

} // namespace quillfern::pdf
