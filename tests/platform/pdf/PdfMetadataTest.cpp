#include "platform/pdf/PdfMetadata.h"

#include "platform/pdf/DocumentChanges.h"
#include "platform/pdf/NewObjects.h"
#include "support/PdfBuilder.h"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFWriter.hh>

namespace quillfern::pdf {
namespace {

/// The smallest XMP packet that claims PDF/A-2 and names its creator.
const QByteArray claiming =
    "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
    "<rdf:Description xmlns:a='http://www.aiim.org/pdfa/ns/id/' a:part='2' "
    "xmlns:xap='http://ns.adobe.com/xap/1.0/' xap:CreatorTool='Old'/></rdf:RDF></x:xmpmeta>";

QByteArray asUtf16(const QByteArray& ascii)
{
    QByteArray bytes("\xFE\xFF", 2);
    for (const char c : ascii)
        bytes.append('\0').append(c);
    return bytes;
}

/// An open document whose catalogue has these metadata, in a stream with `entries`.
class WithMetadata
{
  public:
    explicit WithMetadata(const QByteArray& packet, const QByteArray& entries = {},
                          const QByteArray& catalogueEntries = {})
    {
        PdfBuilder builder = onePage("/MediaBox[0 0 99 99]", {}, "/Metadata 4 0 R" + catalogueEntries);
        builder.addStream(packet, "/Type/Metadata/Subtype/XML" + entries);
        file_ = builder.build();
        document.setSuppressWarnings(true);
        document.processMemoryFile("metadata", file_.constData(), static_cast<std::size_t>(file_.size()));
        objects.emplace(document, false);
    }

    QByteArray raw()
    {
        const auto buffer = document.getObjectByID(4, 0).getRawStreamData();
        return {reinterpret_cast<const char*>(buffer->getBuffer()),
                static_cast<qsizetype>(buffer->getSize())};
    }
    [[nodiscard]] bool isFiltered()
    {
        return !document.getObjectByID(4, 0).getDict().getKey("/Filter").isNull();
    }
    /// The document as it is saved, streams as they are.
    QByteArray written()
    {
        QPDFWriter writer(document);
        writer.setOutputMemory();
        writer.setStreamDataMode(qpdf_s_preserve);
        writer.write();
        const auto buffer = writer.getBufferSharedPointer();
        return {reinterpret_cast<const char*>(buffer->getBuffer()),
                static_cast<qsizetype>(buffer->getSize())};
    }
    QString creator()
    {
        return QString::fromStdString(
            document.getTrailer().getKey("/Info").getKey("/Creator").getUTF8Value());
    }

    QPDF document;
    DocumentChanges changes;
    std::optional<NewObjects> objects;

  private:
    QByteArray file_;
};

QByteArray deflated(const QByteArray& bytes)
{
    return qCompress(bytes).mid(4);
}

TEST(PdfMetadataTest, ChangesThePacketInItsOwnEncoding)
{
    QByteArray named = claiming;
    named.replace("'Old'", "'Quillfern'");
    QByteArray withdrawn = named;
    withdrawn.replace(" a:part='2'", "");
    for (const bool wide : {false, true})
        for (const bool filtered : {false, true}) {
            const auto bytes = [wide](const QByteArray& text) { return wide ? asUtf16(text) : text; };
            WithMetadata with(filtered ? deflated(bytes(claiming)) : bytes(claiming),
                              filtered ? "/Filter/FlateDecode" : "");
            PdfMetadata metadata(with.document, with.changes, *with.objects);
            EXPECT_EQ(metadata.archivalPart(), 2);
            metadata.setCreator(u"Quillfern"_s);
            EXPECT_EQ(with.raw(), bytes(named));
            EXPECT_FALSE(with.isFiltered()) << "archival profiles want none";
            EXPECT_EQ(metadata.archivalPart(), 2);
            metadata.withdrawArchivalClaim();
            EXPECT_EQ(with.raw(), bytes(withdrawn));
            EXPECT_EQ(metadata.archivalPart(), 0);
        }
}

TEST(PdfMetadataTest, LeavesWhatItCannotReadAsItIs)
{
    const QByteArray large = claiming + QByteArray(40 << 20, ' ');
    const Rows<const char*, QByteArray, QByteArray> cases = {
        {"broken markup", deflated(claiming + "<"), "/Filter/FlateDecode"},
        {"another encoding", QByteArray(claiming).replace("Old", "\xC4lt"), ""},
        {"entities", "<!DOCTYPE x [<!ENTITY e 'e'>]>" + claiming, ""},
        {"larger than any packet", deflated(large), "/Filter/FlateDecode"},
        {"a filter that nobody has", claiming, "/Filter/Unheard"},
        {"nothing", "", ""},
    };
    for (const auto& [what, bytes, entries] : cases) {
        WithMetadata with(bytes, entries);
        PdfMetadata metadata(with.document, with.changes, *with.objects);
        EXPECT_EQ(metadata.archivalPart(), 0) << what;
        metadata.setCreator(QString::fromUtf8("Ä \"(q)"));
        metadata.withdrawArchivalClaim();
        EXPECT_TRUE(with.raw() == bytes) << what;
        EXPECT_EQ(with.isFiltered(), !entries.isEmpty()) << what;
        EXPECT_TRUE(with.written().contains("stream\n" + bytes + "endstream")) << what;
        EXPECT_EQ(with.creator(), QString::fromUtf8("Ä \"(q)")) << what;
    }
}

TEST(PdfMetadataTest, AnRgbOutputIntentIsOneWithThreeChannels)
{
    // Object 4 is the packet; here it stands for the profile, too.
    const Rows<QByteArray, QByteArray, bool> cases = {
        {"", "", false},
        {"/OutputIntents 7", "", false},
        {"/OutputIntents[7<<>><</DestOutputProfile 7>>]", "/N 3", false},
        {"/OutputIntents[<</DestOutputProfile 4 0 R>>]", "/N 4", false},
        {"/OutputIntents[<</DestOutputProfile 4 0 R>>]", "", false},
        {"/OutputIntents[<<>><</DestOutputProfile 4 0 R>>]", "/N 3", true},
    };
    for (const auto& [catalogue, stream, rgb] : cases) {
        WithMetadata with(claiming, stream, catalogue);
        EXPECT_EQ(PdfMetadata(with.document, with.changes, *with.objects).hasRgbOutputIntent(), rgb)
            << catalogue.toStdString();
    }
}

} // namespace
} // namespace quillfern::pdf
