#include "platform/store/PropertyLists.h"
#include "support/Tools.h"

#include <QStringEncoder>
#include <clocale>
#include <cmath>
#include <limits>
#include <random>

namespace quillfern::store {
namespace {

using testing::HasSubstr;

QByteArray xml(const QByteArray& body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body + "</plist>\n";
}

Record everyKind()
{
    Record inner;
    inner.set(u"z"_s, 1);
    inner.set(u"a"_s, u" two  blanks "_s);
    Record record;
    record.set(u"yes"_s, true);
    record.set(u"no"_s, false);
    record.set(u"negative"_s, -7);
    record.set(u"lowest"_s, std::numeric_limits<std::int32_t>::min());
    record.set(u"wide"_s, std::int64_t{1} << 40);
    record.set(u"real"_s, 28.34645669291339);
    record.set(u"tiny"_s, 1.5e-7);
    record.set(u"text"_s, u"<&>\"' \u00e9\u4e2d\U0001F600"_s);
    record.set(u"blank"_s, u" "_s);
    record.set(u"empty"_s, QString());
    record.set(u"data"_s, QByteArray("\0\xFF\x7F*", 4));
    record.set(u"nothing"_s, QByteArray());
    record.set(u"list"_s, RecordValue::List{1, u"b"_s, inner, RecordValue::List()});
    record.set(u"inner"_s, inner);
    return record;
}

// A profile that is saved again must not change.
TEST(PropertyList, WritesTheSameBytesForEver)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const Rows<RecordValue, QByteArray> cases = {
        {true, "<true/>"},
        {false, "<false/>"},
        {0, "<integer>0</integer>"},
        {-5, "<integer>-5</integer>"},
        {std::numeric_limits<std::int32_t>::min(), "<integer>-2147483648</integer>"},
        {std::numeric_limits<std::int64_t>::max(), "<integer>9223372036854775807</integer>"},
        {std::numeric_limits<std::int64_t>::min(), "<integer>-9223372036854775808</integer>"},
        {0.0, "<real>0.0</real>"},
        {-0.0, "<real>0.0</real>"},
        {-72.5, "<real>-72.5</real>"},
        {18.0, "<real>18</real>"},
        {0.1, "<real>0.10000000000000001</real>"},
        {0.0001, "<real>0.0001</real>"},
        {0.00001, "<real>1.0000000000000001e-05</real>"},
        {28.34645669291339, "<real>28.346456692913389</real>"},
        {148801145796586.625, "<real>148801145796586.62</real>"},
        {1e16, "<real>10000000000000000</real>"},
        {1e17, "<real>1e+17</real>"},
        {std::numeric_limits<double>::max(), "<real>1.7976931348623157e+308</real>"},
        {std::numeric_limits<double>::denorm_min(), "<real>4.9406564584124654e-324</real>"},
        {infinity, "<real>+infinity</real>"},
        {-infinity, "<real>-infinity</real>"},
        {std::nan(""), "<real>nan</real>"},
        {QString(), "<string></string>"},
        {u" "_s, "<string> </string>"},
        {u"<&>\"' \u00e9\u4e2d\U0001F600 ]]>"_s,
         "<string>&lt;&amp;&gt;\"' \u00e9\u4e2d\U0001F600 ]]&gt;</string>"},
        {u"\na\tb\r\n\u007f\u0085"_s, "<string>\na\tb\r\n\u007f\u0085</string>"},
        {QByteArray(), "<data>\n\t</data>"},
        {QByteArray("\0\xFF\x7F*", 4), "<data>\n\tAP9/Kg==\n\t</data>"},
        {QByteArray(51, 'x'), "<data>\n\t" + QByteArray("eHh4").repeated(17) + "\n\t</data>"},
        {QByteArray(52, 'x'), "<data>\n\t" + QByteArray("eHh4").repeated(17) + "\n\teA==\n\t</data>"},
        {Record(), "<dict/>"},
        {RecordValue::List(), "<array/>"},
        {RecordValue::List{1, holding(QByteArray(47, 'x')), RecordValue::List()},
         "<array>\n\t\t<integer>1</integer>\n\t\t<dict>\n\t\t\t<key>v</key>\n\t\t\t<data>\n\t\t\t" +
             QByteArray("eHh4").repeated(13) + "\n\t\t\t" + QByteArray("eHh4").repeated(2) +
             "eHg=\n\t\t\t</data>\n\t\t</dict>\n\t\t<array/>\n\t</array>"},
    };
    const QByteArray start = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                             "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                             "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                             "<plist version=\"1.0\">\n";
    for (const auto& [value, element] : cases)
        EXPECT_EQ(writePropertyList(holding(value)),
                  start + "<dict>\n\t<key>v</key>\n\t" + element + "\n</dict>\n</plist>\n");
    EXPECT_EQ(writePropertyList(Record()), start + "<dict/>\n</plist>\n");

    // Lines of data grow shorter to the eighth level, and are indented no further.
    RecordValue nested = QByteArray(27, 'x');
    for (int i = 0; i < 9; ++i)
        nested = RecordValue::List{nested};
    Record odd;
    odd.set(u"<\"&\n"_s, nested);
    const QByteArray line = "\n" + QByteArray(8, '\t') + "eHh4eHh4eHh4";
    EXPECT_THAT(writePropertyList(odd).toStdString(), HasSubstr("<key>&lt;\"&amp;\n</key>"));
    EXPECT_THAT(
        writePropertyList(odd).toStdString(),
        HasSubstr(("<data>" + line + line + line + "\n" + QByteArray(10, '\t') + "</data>").toStdString()));
}

TEST(PropertyList, ReadsWhatAnyXmlListMayHold)
{
    const auto text = [](const char* utf8) { return QString::fromUtf8(utf8); };
    const double infinity = std::numeric_limits<double>::infinity();
    // An element without a value is left out.
    const Rows<QByteArray, std::optional<RecordValue>> cases = {
        {"<integer> +5\n</integer>", 5},
        {"<integer>-5<!-- c --></integer>", -5},
        {"<integer>007</integer>", 7},
        {"<integer>-0x1F</integer>", -31},
        {"<integer>-9223372036854775808</integer>", std::numeric_limits<std::int64_t>::min()},
        {"<integer>18446744073709551615</integer>", -1}, // wraps around
        {"<real> 1.5\n</real>", 1.5},
        {"<real>-.5E+1</real>", -5.0},
        {"<real>4.9406564584124654e-324</real>", std::numeric_limits<double>::denorm_min()},
        {"<real>+infinity</real>", infinity},
        {"<real>-Infinity</real>", -infinity},
        {"<real>inf</real>", infinity},
        {"<data>\n\tQ UJD\r\n\tREV&#71;\n</data>", QByteArray("ABCDEF")},
        {"<data>Q<!-- c -->UI=</data>", QByteArray("AB")},
        {"<data/>", QByteArray()},
        {"<string/>", QString()},
        {"<string>\n\ta </string>", text("\n\ta ")},
        {"<string>a\rb\r\nc&#13;</string>", text("a\rb\r\nc\r")},
        {"<string a='b'>&lt;&gt;&amp;&apos;&quot;&#65;&#x1F600;</string>", text("<>&'\"A\U0001F600")},
        {"<string>x<![CDATA[<b>&amp;]]>y<!-- c -->z > w</string>", text("x<b>&amp;yz > w")},
        {"<true></true>", true},
        {"<!-- c --><false/>", false},
        {"<date>2020-01-01T00:00:00Z</date>", std::nullopt},
        {"<array><date/><true/>\r\n<!-- c --></array>", RecordValue::List{true}},
        {"<dict>\n</dict>", Record()},
        {"<integer>1</integer><key>v</key><integer>2</integer>", 2}, // the last one counts
    };
    for (const auto& [element, value] : cases) {
        const QByteArray body = "<dict><key>v</key>" + element + "</dict>";
        ASSERT_EQ(refusal(xml(body)), "") << body.constData();
        EXPECT_EQ(readPropertyList(xml(body)), value ? holding(*value) : Record()) << body.constData();
    }
    EXPECT_TRUE(std::isnan(readPropertyList(xml("<dict><key>v</key><real>nan</real></dict>")).real(u"v"_s)));

    Record ordered;
    ordered.set(u"b"_s, 3);
    ordered.set(QString(), 2);
    EXPECT_EQ(readPropertyList(xml("<dict><key>b</key><integer>1</integer><key/><integer>2</integer>"
                                   "<key>b</key><integer>3</integer></dict>")),
              ordered);
}

TEST(PropertyList, ReadsEveryEncodingThatXmlAsksFor)
{
    const Record expected = holding(u"\u00e9\U0001F600\r\n"_s);
    for (const char* declaration :
         {"", "<?xml version='1.0'?>\r\n", "<?xml version='1.0' encoding='UTF-16'?>\n<!DOCTYPE plist>\n"}) {
        const QString list = QString::fromLatin1(declaration) +
                             u"<plist>\r\n<dict><key>v</key><string>\u00e9\U0001F600\r\n</string>"
                             "</dict></plist>"_s;
        for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE})
            for (const auto flag : {QStringConverter::Flag::Default, QStringConverter::Flag::WriteBom})
                EXPECT_EQ(readPropertyList(QStringEncoder(encoding, flag).encode(list)), expected)
                    << declaration;
    }
    EXPECT_EQ(readPropertyList("\xEF\xBB\xBF" + writePropertyList(expected)), expected);
    EXPECT_EQ(readPropertyList(writePropertyList(expected).replace("UTF-8", "utf-8")), expected);
}

// A list of unknown keys once kept the window waiting for half a minute.
TEST(PropertyList, ReadsHundredsOfThousandsOfKeys)
{
    QByteArray body;
    constexpr int count = 400'000;
    for (int i = 0; i < count; ++i)
        body +=
            "<key>key " + QByteArray::number(i) + "</key><integer>" + QByteArray::number(i) + "</integer>";
    const Record record = readPropertyList(xml("<dict>" + body + "</dict>"));
    ASSERT_EQ(record.entries().size(), std::size_t{count});
    EXPECT_EQ(record.entries().back().first, u"key 399999"_s);
    EXPECT_EQ(record.integer32(u"key 399999"_s), 399'999);
}

TEST(PropertyList, IsReadByOthers)
{
    const Scratch scratch;
    EXPECT_EQ(
        runTool("python3 -c", {u"import plistlib,sys\nprint(ascii(plistlib.load(open(sys.argv[1],'rb'))))"_s,
                               scratch.write(u"a.plist"_s, writePropertyList(everyKind()))})
            .out.trimmed(),
        R"({'yes': True, 'no': False, 'negative': -7, 'lowest': -2147483648, 'wide': 1099511627776, )"
        R"('real': 28.34645669291339, 'tiny': 1.5e-07, )"
        R"('text': '<&>"\' \xe9\u4e2d\U0001f600', 'blank': ' ', 'empty': '', )"
        R"('data': b'\x00\xff\x7f*', 'nothing': b'', )"
        R"('list': [1, 'b', {'z': 1, 'a': ' two  blanks '}, []], 'inner': {'z': 1, 'a': ' two  blanks '}})");
}

TEST(PropertyList, LeavesOutWhatXmlCannotHold)
{
    const QChar high(0xD83D);
    const QChar low(0xDE00);
    const Rows<QString, QString> cases = {
        {u"a\tb\nc\rd"_s, u"a\tb\nc\rd"_s},
        {u"a"_s + QChar(0) + QChar(1) + QChar(0x1F) + u"b"_s, u"ab"_s},
        {u"x"_s + QChar(0xFFFE) + QChar(0xFFFF) + u"y"_s, u"xy"_s},
        {high + u"lone"_s + low, u"lone"_s},
        {QString(high) + low, QString(high) + low},
        {QString(1'000'000, u'\u00e9'), QString(1'000'000, u'\u00e9')},
    };
    for (const auto& [text, kept] : cases) {
        const QByteArray bytes = writePropertyList(holding(text));
        EXPECT_TRUE(readPropertyList(bytes) == holding(kept)) << bytes.left(300).constData();
    }
}

TEST(PropertyList, IsTheSameWhereTheDecimalMarkIsAComma)
{
    const Scratch scratch;
    // Not every machine has the locale installed; making one takes a moment.
    const auto made = runTool("localedef -i de_DE -f UTF-8", {scratch.path(u"de_DE.UTF-8"_s)});
    if (made.exitCode == 0) qputenv("LOCPATH", scratch.path().toLocal8Bit());
    const bool hasComma = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
    qunsetenv("LOCPATH");
    if (!hasComma) GTEST_SKIP() << "no German locale on this machine";
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    const QByteArray bytes = writePropertyList(everyKind());
    const Record read = readPropertyList(bytes);
    EXPECT_STREQ(std::localeconv()->decimal_point, ",") << "the caller's locale was not put back";
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_EQ(read, everyKind());
    EXPECT_EQ(bytes, writePropertyList(everyKind()));
}

TEST(PropertyList, RefusesWhatIsNone)
{
    const QByteArray nested =
        QByteArray("<array>").repeated(100'000) + QByteArray("</array>").repeated(100'000);
    QByteArray manyAttributes;
    for (int i = 0; i < 200'000; ++i)
        manyAttributes += "a" + QByteArray::number(i) + "='' ";
    const QByteArray laughs =
        "<?xml version=\"1.0\"?><!DOCTYPE plist [<!ENTITY a \"ha\"><!ENTITY b \"&a;&a;\">]>"
        "<plist><dict><key>a</key><string>&b;</string></dict></plist>";
    const Rows<QByteArray, const char*> cases = {
        {"", "property list"},
        {"hello", "property list"},
        {QByteArray(5000, '\0'), "property list"},
        {"%PDF-1.7\n", "property list"},
        {xml(""), "no value"},
        {xml("<array/>"), "not a dictionary"},
        {xml("<string>x</string>"), "not a dictionary"},
        {xml("<dict/><dict/>"), "more than one"},
        {xml("<dict><key>a</key></dict>"), "key without a value"},
        {xml("<dict><integer>1</integer></dict>"), "value without a key"},
        {xml("<dict><key>a</key><key>b</key><true/></dict>"), "a key where none"},
        {xml("<dict><key>a</key><integer>12x</integer></dict>"), "<integer>12x"},
        {xml("<dict><key>a</key><integer></integer></dict>"), "<integer>"},
        {xml("<dict><key>a</key><real>1,5</real></dict>"), "<real>1,5"},
        {xml("<dict><key>a</key><data>#$!</data></dict>"), "<data>"},
        {xml("<dict><key>a</key><blob/></dict>"), "<blob>"},
        {xml("<dict><key>a</key><true>no</true></dict>"), "<true>"},
        {xml("<dict><key>a</key><string><b/></string></dict>"), "line 2"},
        {xml("<dict>"), "line 2"},
        {xml("<d><integer>0</integer><key>a</key></d>"), "top level"},
        {xml("<dict><key>a</key><d><integer>0</integer></d></dict>"), "an element <d>"},
        {xml("<dict><key>a</key><integer>18446744073709551616</integer></dict>"), "<integer>184"},
        {xml("<dict><key>a</key><integer>+-5</integer></dict>"), "<integer>+-5"},
        {xml("<dict><key>a</key><real>1e999</real></dict>"), "<real>1e999"},
        {xml("<dict><key>a</key><real></real></dict>"), "<real>"},
        {xml("<dict><key>a</key><data>QQ==QQ==</data></dict>"), "<data>QQ=="},
        {xml("<dict><key>a</key><string>&nbsp;</string></dict>"), "nbsp"},
        {xml("<dict " + manyAttributes + "/>"), "a tag that is too long"},
        {xml("<dict/>") + "x", "line 3"},
        {QByteArray("\xFF\xFE<\0\0\xD8/\0", 8), "UTF-16"},
        {xml("stray<dict/>"), "text where none"},
        {"<svg/>", "does not begin"},
        {xml("<dict><key>deep</key>" + nested + "</dict>"), "nested too deeply"},
        {xml("<dict><key>many</key><array>" + QByteArray("<true/>").repeated(1'100'000) + "</array></dict>"),
         "too many values"},
        {laughs, "declares things"},
        {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><plist><dict/></plist>", "UTF-8"},
        {"bplist00", "cut short"},
        {"bplist00" + QByteArray(40, '\xFF'), "damaged"},
        {"bplist15" + QByteArray(40, '\0'), "version"},
    };
    for (const auto& [bytes, reason] : cases)
        EXPECT_THAT(refusal(bytes), HasSubstr(reason)) << bytes.left(120).constData();
}

TEST(PropertyList, DamagedBytesAreReadOrRefused)
{
    const QByteArray whole = writePropertyList(everyKind());
    for (qsizetype length = 0; length < whole.lastIndexOf("</plist>"); ++length)
        EXPECT_NE(refusal(whole.left(length)), "") << "cut at " << length;

    const Scratch scratch;
    const QString path = scratch.path(u"binary.plist"_s);
    runTool("python3 -c", {u"import plistlib,sys\nd=plistlib.load(open(sys.argv[1],'rb'))\n"
                           "plistlib.dump(d,open(sys.argv[2],'wb'),fmt=plistlib.FMT_BINARY)"_s,
                           scratch.write(u"x.plist"_s, whole), path});
    std::mt19937 random(20261121);
    const auto below = [&](qsizetype end) {
        return static_cast<qsizetype>(random() % static_cast<std::size_t>(end));
    };
    const QByteArray wide = QStringEncoder(QStringConverter::Utf16BE).encode(QString::fromUtf8(whole));
    const QByteArrayList pieces = {"<",    ">",         "/",   "</dict>", "<key>", "<string>",
                                   "<!--", "<![CDATA[", "]]>", "\r",      "&"};
    for (const QByteArray& original : {whole, wide, readFile(path)}) {
        ASSERT_EQ(refusal(original), "");
        int kept = 0;
        for (int i = 0; i < 3000; ++i) {
            QByteArray bytes = original;
            for (int j = 0; j < 1 + i % 3; ++j) {
                const qsizetype at = below(bytes.size());
                if (i % 4 == 0)
                    bytes.insert(at, pieces[below(pieces.size())]);
                else if (i % 4 == 1)
                    bytes.remove(at, 1 + below(8));
                else
                    bytes[at] = static_cast<char>(random());
            }
            // Damaged bytes are either read, and then written and read again, or refused with a reason.
            if (const std::string reason = refusal(bytes); !reason.empty()) {
                EXPECT_THAT(reason, HasSubstr("not a usable property list: "));
                continue;
            }
            static_cast<void>(readPropertyList(writePropertyList(readPropertyList(bytes))));
            ++kept;
        }
        EXPECT_GT(kept, 0);
        EXPECT_LT(kept, 3000);
    }
}

TEST(PropertyList, RefusesFilesThatCannotBeOne)
{
    const Scratch scratch;
    QFile huge(scratch.path(u"huge.plist"_s));
    ASSERT_TRUE(huge.open(QIODevice::WriteOnly));
    ASSERT_TRUE(huge.resize(qint64{40} << 30)); // takes no room on the disk
    huge.close();
    for (const auto& [path, reason] :
         Rows<QString, const char*>{{huge.fileName(), "256 MB"},
                                    {u"/dev/zero"_s, "cannot be read"},
                                    {scratch.path(), "cannot be read"},
                                    {scratch.path(u"missing"_s), "cannot be read"}})
        EXPECT_THAT(refusal(asPath(path)), HasSubstr(reason));
}

TEST(PropertyList, IsNotWrittenLargerThanItCanBeRead)
{
    EXPECT_THROW(static_cast<void>(writePropertyList(holding(QByteArray(200 << 20, 'x')))), Failure);
}

} // namespace
} // namespace quillfern::store
