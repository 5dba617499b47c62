#include "platform/pdf/XmpPacket.h"

#include "support/Cases.h"

#include <QStringConverter>

namespace quillfern::pdf {
namespace {

/// The ways in which a packet's bytes are written, with and without a byte order mark.
struct Writing
{
    const char* name;
    QStringConverter::Encoding encoding;
    bool marked;
};
constexpr Writing writings[] = {{"UTF-8", QStringConverter::Utf8, false},
                                {"UTF-8 with a mark", QStringConverter::Utf8, true},
                                {"UTF-16, little end first", QStringConverter::Utf16LE, true},
                                {"UTF-16, big end first", QStringConverter::Utf16BE, true},
                                {"UTF-16 without a mark", QStringConverter::Utf16BE, false},
                                {"UTF-32", QStringConverter::Utf32LE, true}};

QByteArray written(const QString& text, const Writing& writing)
{
    QStringEncoder encoder(writing.encoding);
    return encoder((writing.marked ? QString(QChar::ByteOrderMark) : QString()) + text);
}

/// A packet as other programs write them, with `rdf` inside of rdf:RDF: characters of two, three and four
/// bytes, both kinds of line ends, processing instructions, unknown properties, padding.
QString packet(const QString& rdf)
{
    return QString::fromUtf8(
               "<?xpacket begin='\xEF\xBB\xBF' id='W5M0MpCehiHzreSzNTczkc9d'?>\r\n"
               "<?adobe-xap-filters esc=\"CR\r\nLF\"?><!-- 🌿\r\n\r <a> & -\u00A0>ä -->\n"
               "<x:xmpmeta xmlns:x='adobe:ns:meta/' x:xmptk='é 🌿 &#x1F33F;'>\r\n"
               "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'\n"
               " xmlns:xmp = \"http://ns.adobe.com/xap/1.0/\""
               " xmlns:pdfaid='http://www.aiim.org/pdfa/ns/id/'>\r"
               "<rdf:Description rdf:about='' xmlns:o='urn:odd'>"
               "<o:t>CreatorTool=\"x\" &lt;xmp:CreatorTool> 漢🌿 <![CDATA[</rdf:RDF>\r\n\r]]></o:t>"
               "<o:CreatorTool>theirs</o:CreatorTool>"
               "<o:s rdf:parseType='Resource'><xmp:CreatorTool>inner</xmp:CreatorTool></o:s>"
               "</rdf:Description>") +
           rdf + u"</rdf:RDF ></x:xmpmeta>\n  \r\n "_s + QString(100, u' ') + u"\n<?xpacket end=\"w\"?>"_s;
}

QString description(const QString& attributes, const QString& content)
{
    return u"<rdf:Description rdf:about=''%1>%2</rdf:Description>"_s.arg(attributes, content);
}

/// Applies `change` to every case in every encoding; all bytes must be those of the text after.
template <class Change>
void expectEdits(const Rows<const char*, QString, QString>& cases, Change change)
{
    for (const auto& [what, before, after] : cases)
        for (const Writing& writing : writings) {
            XmpPacket xmp(written(before, writing));
            ASSERT_TRUE(xmp.isUnderstood()) << what << ", " << writing.name;
            EXPECT_EQ(xmp.bytes(), written(before, writing)) << what << ", " << writing.name;
            EXPECT_EQ(change(xmp), before != after) << what << ", " << writing.name;
            EXPECT_EQ(xmp.bytes(), written(after, writing)) << what << ", " << writing.name;
        }
}

TEST(XmpPacketTest, NamesTheCreatorWhereverItStands)
{
    const auto s = [](const char* text) { return QString::fromUtf8(text); };
    // "@" stands for the name that is set, as it is written in an element or an attribute.
    const auto element = [&](const char* content) {
        return packet(description({}, s(content).replace(u'@', u"A &lt;b&gt; &amp; \\1 'c'"_s)));
    };
    const auto attribute = [&](const char* written, const char* content = "<o/>") {
        return packet(description(s(written).replace(u'@', u"A &lt;b&gt; &amp; \\1 &#39;c&#39;"_s),
                                  s(content).replace(u'@', u"A &lt;b&gt; &amp; \\1 'c'"_s)));
    };
    const QString declared = s("<?xml version='1.0' encoding='UTF-16'?>");
    const QString rdf = s("<RDF xmlns='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>%1</RDF>");
    const QString added =
        s("<rdf:Description%1 rdf:about=\"\" xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\">"
          "<xmp:CreatorTool>A &lt;b&gt; &amp; \\1 'c'</xmp:CreatorTool></rdf:Description>\n");
    const Rows<const char*, QString, QString> cases = {
        {"an element", element("<xmp:CreatorTool>Old ä</xmp:CreatorTool>"),
         element("<xmp:CreatorTool>@</xmp:CreatorTool>")},
        {"between blanks and line ends",
         element("\r\n<xmp:CreatorTool\n >\r\nO&amp;&#65;\r</xmp:CreatorTool >\r"),
         element("\r\n<xmp:CreatorTool\n >@</xmp:CreatorTool >\r")},
        {"behind a declaration of some encoding", declared + element("<xmp:CreatorTool>x</xmp:CreatorTool>"),
         declared + element("<xmp:CreatorTool>@</xmp:CreatorTool>")},
        {"an empty element", element("<xmp:CreatorTool />"),
         element("<xmp:CreatorTool >@</xmp:CreatorTool>")},
        {"an empty pair of tags", element("<xmp:CreatorTool></xmp:CreatorTool>"),
         element("<xmp:CreatorTool>@</xmp:CreatorTool>")},
        {"with a language", element("<xmp:CreatorTool xml:lang='en/'>x</xmp:CreatorTool>"),
         element("<xmp:CreatorTool xml:lang='en/'>@</xmp:CreatorTool>")},
        {"another prefix", element("<q:CreatorTool xmlns:q='http://ns.adobe.com/xap/1.0/'>x</q:CreatorTool>"),
         element("<q:CreatorTool xmlns:q='http://ns.adobe.com/xap/1.0/'>@</q:CreatorTool>")},
        {"no prefix", element("<CreatorTool xmlns='http://ns.adobe.com/xap/1.0/'>x</CreatorTool>"),
         element("<CreatorTool xmlns='http://ns.adobe.com/xap/1.0/'>@</CreatorTool>")},
        {"a section", element("<xmp:CreatorTool><![CDATA[a</xmp:CreatorTool>]]></xmp:CreatorTool>"),
         element("<xmp:CreatorTool>@</xmp:CreatorTool>")},
        {"text around comments",
         element("<xmp:CreatorTool>a<!-- > c -->b<![CDATA[<]]><?p i?></xmp:CreatorTool>"),
         element("<xmp:CreatorTool>@<!-- > c --><?p i?></xmp:CreatorTool>")},
        {"an attribute", attribute(" xmp:CreatorTool = \"it's > old\" o='1'"),
         attribute(" xmp:CreatorTool = \"@\" o='1'")},
        {"an attribute in single quotes", attribute(" o='xmp:CreatorTool=\"no\"'\nxmp:CreatorTool='a\"=b'"),
         attribute(" o='xmp:CreatorTool=\"no\"'\nxmp:CreatorTool='@'")},
        {"twice", attribute(" xmp:CreatorTool='a'", "<xmp:CreatorTool>b</xmp:CreatorTool>"),
         attribute(" xmp:CreatorTool='@'", "<xmp:CreatorTool>@</xmp:CreatorTool>")},
        {"a structure in its place", element("<xmp:CreatorTool><rdf:Bag/></xmp:CreatorTool>"),
         element("<xmp:CreatorTool><rdf:Bag/></xmp:CreatorTool>")},
        {"a reference in its place", element("<xmp:CreatorTool rdf:resource='urn:x'/>"),
         element("<xmp:CreatorTool rdf:resource='urn:x'/>")},
        {"nowhere", packet({}), packet(added.arg(QString()))},
        {"nowhere, with RDF as the default namespace", rdf.arg(QString()),
         rdf.arg(added.arg(s(" xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"")))},
    };
    expectEdits(cases, [](XmpPacket& xmp) { return xmp.setCreatorTool(u"A <b> & \\1 'c'"_s); });
}

TEST(XmpPacketTest, WithdrawsTheArchivalClaimAndNothingElse)
{
    const auto with = [](const char* attributes, const char* content) {
        return packet(description(QString::fromUtf8(attributes), QString::fromUtf8(content)));
    };
    const Rows<const char*, QString, QString> cases = {
        {"elements",
         with("",
              "a<pdfaid:part>2</pdfaid:part>\r\n<pdfaid:conformance\n>B<!-- c --></pdfaid:conformance >b"),
         with("", "a\r\nb")},
        {"attributes", with(" pdfaid:part='2'\n\tpdfaid:conformance = \"U\" o=' pdfaid:part=\"2\"'", "<o/>"),
         with(" o=' pdfaid:part=\"2\"'", "<o/>")},
        {"both, with an amendment and a revision",
         with(" pdfaid:rev='2020'",
              "<pdfaid:amd>2005</pdfaid:amd><pdfaid:part/><pdfaid:other>x</pdfaid:other>"),
         with("", "<pdfaid:other>x</pdfaid:other>")},
        {"another prefix", with(" xmlns:a='http://www.aiim.org/pdfa/ns/id/' a:part='1'", "<a:conformance/>"),
         with(" xmlns:a='http://www.aiim.org/pdfa/ns/id/'", "")},
        {"none", with(" xmlns:o='urn:o'", "<o:part>1</o:part>"),
         with(" xmlns:o='urn:o'", "<o:part>1</o:part>")},
    };
    expectEdits(cases, [](XmpPacket& xmp) { return xmp.withdrawArchivalClaim(); });
}

TEST(XmpPacketTest, ReadsTheArchivalPart)
{
    const Rows<QString, QString, int> cases = {
        {QString(), u"<pdfaid:part>1</pdfaid:part>"_s, 1},
        {QString(), u"<pdfaid:part>\n 2\n</pdfaid:part>"_s, 2},
        {QString(), u"<pdfaid:part><![CDATA[3]]></pdfaid:part>"_s, 3},
        {QString(), u"<pdfaid:part>&#52;</pdfaid:part>"_s, 4},
        {u" pdfaid:part = '3'"_s, QString(), 3},
        {QString(), u"<pdfaid:part></pdfaid:part>"_s, 0},
        {QString(), u"<pdfaid:part>x</pdfaid:part>"_s, 0},
        {QString(), u"<!--<pdfaid:part>1</pdfaid:part>-->"_s, 0},
        {QString(), u"<o:a><pdfaid:part>1</pdfaid:part></o:a>"_s, 0},
        {QString(), u"&lt;pdfaid:part>1&lt;/pdfaid:part>"_s, 0},
    };
    for (const auto& [attributes, content, part] : cases)
        for (const Writing& writing : writings) {
            const QString rdf = description(attributes + u" xmlns:o='urn:o'"_s, content);
            EXPECT_EQ(XmpPacket(written(packet(rdf), writing)).archivalPart(), part)
                << content.toStdString() << ", " << writing.name;
        }
}

/// Cut at every place and with every byte changed in turn: a packet that is still understood keeps its bytes
/// and can be edited.
TEST(XmpPacketTest, SurvivesDamage)
{
    const QString text =
        packet(description(u" pdfaid:part='2'"_s, u"<xmp:CreatorTool>Old</xmp:CreatorTool>"_s));
    const qsizetype end = text.lastIndexOf(u"</x:xmpmeta>"_s) + 12;
    for (qsizetype length = 0; length < end; ++length)
        EXPECT_FALSE(XmpPacket(text.left(length).toUtf8()).isUnderstood()) << length;
    EXPECT_TRUE(XmpPacket(text.left(end).toUtf8()).isUnderstood()) << "a packet without its padding";
    const QByteArray bytes = text.toUtf8();
    for (const char damage : {'<', '>', '&', '"', '\'', '/', '\0', '\xFF', '\xC3'})
        for (qsizetype at = 0; at < bytes.size(); ++at) {
            QByteArray damaged = bytes;
            damaged[at] = damage;
            XmpPacket xmp(damaged);
            if (!xmp.isUnderstood()) continue;
            ASSERT_EQ(xmp.bytes(), damaged) << at;
            if (!xmp.setCreatorTool(u"New"_s)) continue;
            // The edit is complete: the packet can be read again and holds the new value.
            ASSERT_TRUE(xmp.isUnderstood()) << damaged.toStdString();
            ASSERT_TRUE(xmp.bytes().contains("CreatorTool>New</")) << damaged.toStdString();
        }
    EXPECT_TRUE(XmpPacket(bytes + QByteArray(50, '\0')).isUnderstood()) << "zeros that fill up the stream";
}

TEST(XmpPacketTest, LeavesAloneWhatItCannotRead)
{
    const auto inside = [](const QString& rdf) { return packet(rdf).toUtf8(); };
    const QByteArray good = inside({});
    QString manyAttributes;
    QString manyNamespaces;
    QString deep;
    for (int i = 0; i < 100'000; ++i) {
        manyAttributes += u" a%1=''"_s.arg(i);
        if (i < 400) manyNamespaces += u" xmlns:a%1='u'"_s.arg(i);
        deep += u"<a>"_s;
    }
    QByteArray bomb = "<!DOCTYPE x [<!ENTITY a0 \"aaaaaaaaaa\">";
    for (int i = 1; i < 12; ++i) {
        const QByteArray last = "&a" + QByteArray::number(i - 1) + ';';
        bomb += "<!ENTITY a" + QByteArray::number(i) + " \"" + last.repeated(10) + "\">";
    }
    const Rows<const char*, QByteArray> cases = {
        {"nothing", {}},
        {"no markup", "CreatorTool"},
        {"entities that grow", bomb + "]><x>&a11;</x>"},
        {"a type declared outside", "<!DOCTYPE x SYSTEM 'file:///etc/passwd'>" + good},
        {"an entity that nobody declares", inside(u"&x;"_s)},
        {"a prefix that nobody binds", inside(u"<u:a/>"_s)},
        {"a tag too many", inside(u"</rdf:Description>"_s)},
        {"bytes of another encoding", inside(u"@"_s).replace('@', '\xE4')},
        {"an overlong character", inside(u"@"_s).replace("@", "\xC0\xBC")},
        {"half a character at the end", written(packet({}), writings[2]) + 'x'},
        {"attributes without end", inside(u"<a%1/>"_s.arg(manyAttributes))},
        {"namespaces without end", inside(u"<a%1/>"_s.arg(manyNamespaces))},
        {"elements without end", inside(deep)},
        {"a comment without end", good + "<!--"},
    };
    for (const auto& [what, bytes] : cases) {
        XmpPacket xmp(bytes);
        EXPECT_FALSE(xmp.isUnderstood()) << what;
        EXPECT_EQ(xmp.archivalPart(), 0) << what;
        EXPECT_FALSE(xmp.withdrawArchivalClaim()) << what;
        EXPECT_FALSE(xmp.setCreatorTool(u"x"_s)) << what;
    }
}

} // namespace
} // namespace quillfern::pdf
