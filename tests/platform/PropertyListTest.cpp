#include "platform/store/PropertyList.h"

#include "platform/system/Failure.h"
#include "support/Tools.h"

#include <QProcess>
#include <QtEndian>
#include <clocale>
#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <random>

namespace quillfern {
namespace {

using testing::HasSubstr;

/// What the record holds, printed by a reader of another language.
QByteArray seenByPython(const QString& path)
{
    const auto result = runTool(QStringLiteral("python3"),
                                {QStringLiteral("-c"),
                                 QStringLiteral("import plistlib,sys\n"
                                                "print(ascii(plistlib.load(open(sys.argv[1],'rb'))))"),
                                 path});
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();
    return result.out.trimmed();
}

std::string refusal(const QByteArray& bytes)
{
    try {
        static_cast<void>(readPropertyList(bytes));
        return {};
    } catch (const Failure& failure) {
        return failure.what();
    }
}

QByteArray xml(const QByteArray& body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body + "</plist>\n";
}

Record everyKind()
{
    Record inner;
    inner.set(QStringLiteral("z"), 1);
    inner.set(QStringLiteral("a"), QStringLiteral(" two  blanks "));
    Record record;
    record.set(QStringLiteral("yes"), true);
    record.set(QStringLiteral("no"), false);
    record.set(QStringLiteral("negative"), -7);
    record.set(QStringLiteral("lowest"), std::numeric_limits<std::int32_t>::min());
    record.set(QStringLiteral("wide"), std::int64_t{1} << 40);
    record.set(QStringLiteral("real"), 28.34645669291339);
    record.set(QStringLiteral("tiny"), 1.5e-7);
    record.set(QStringLiteral("text"), QStringLiteral("<&>\"' \u00e9\u4e2d\U0001F600"));
    record.set(QStringLiteral("blank"), QStringLiteral(" "));
    record.set(QStringLiteral("empty"), QString());
    record.set(QStringLiteral("data"), QByteArray("\0\xFF\x7F*", 4));
    record.set(QStringLiteral("nothing"), QByteArray());
    record.set(QStringLiteral("list"), RecordValue::List{1, QStringLiteral("b"), inner, RecordValue::List()});
    record.set(QStringLiteral("inner"), inner);
    return record;
}

TEST(PropertyList, GivesBackEveryKindOfValueInOrder)
{
    EXPECT_EQ(readPropertyList(writePropertyList(everyKind())), everyKind());
    EXPECT_EQ(readPropertyList(writePropertyList(Record())), Record());
}

TEST(PropertyList, IsReadByOthers)
{
    const Scratch scratch;
    EXPECT_EQ(
        seenByPython(scratch.write(QStringLiteral("a.plist"), writePropertyList(everyKind()))),
        R"({'yes': True, 'no': False, 'negative': -7, 'lowest': -2147483648, 'wide': 1099511627776, )"
        R"('real': 28.34645669291339, 'tiny': 1.5e-07, )"
        R"('text': '<&>"\' \xe9\u4e2d\U0001f600', 'blank': ' ', 'empty': '', )"
        R"('data': b'\x00\xff\x7f*', 'nothing': b'', )"
        R"('list': [1, 'b', {'z': 1, 'a': ' two  blanks '}, []], 'inner': {'z': 1, 'a': ' two  blanks '}})");
}

TEST(PropertyList, ReadsTheBinaryFormOfOthers)
{
    const Scratch scratch;
    const QString path = scratch.path(QStringLiteral("b.plist"));
    const auto result = runTool(
        QStringLiteral("python3"),
        {QStringLiteral("-c"),
         QStringLiteral(
             "import plistlib,sys,datetime\n"
             "plistlib.dump({'n':-3,'r':0.25,'t':'\\u00e9\\U0001F600','d':b'\\0x','l':[True,{'k':'v'}],"
             "'when':datetime.datetime(2020,1,1)},open(sys.argv[1],'wb'),"
             "fmt=plistlib.FMT_BINARY,sort_keys=False)"),
         path});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    Record inner;
    inner.set(QStringLiteral("k"), QStringLiteral("v"));
    Record expected;
    expected.set(QStringLiteral("n"), -3);
    expected.set(QStringLiteral("r"), 0.25);
    expected.set(QStringLiteral("t"), QStringLiteral("\u00e9\U0001F600"));
    expected.set(QStringLiteral("d"), QByteArray("\0x", 2));
    expected.set(QStringLiteral("l"), RecordValue::List{true, inner});
    EXPECT_EQ(readPropertyListFile(asPath(path)), expected);
}

TEST(PropertyList, LeavesOutWhatXmlCannotHold)
{
    const QChar high(0xD83D);
    const QChar low(0xDE00);
    struct Case
    {
        QString text, kept;
    };
    const std::vector<Case> cases = {
        {QStringLiteral("a\tb\nc\rd"), QStringLiteral("a\tb\nc\rd")},
        {QStringLiteral("a") + QChar(0) + QChar(1) + QChar(0x1F) + QStringLiteral("b"), QStringLiteral("ab")},
        {QStringLiteral("x") + QChar(0xFFFE) + QChar(0xFFFF) + QStringLiteral("y"), QStringLiteral("xy")},
        {high + QStringLiteral("lone") + low, QStringLiteral("lone")},
        {QString(high) + low, QString(high) + low},
        {QString(1'000'000, u'\u00e9'), QString(1'000'000, u'\u00e9')},
    };
    for (const Case& c : cases) {
        Record record;
        record.set(QStringLiteral("label"), c.text);
        const QByteArray bytes = writePropertyList(record);
        EXPECT_TRUE(readPropertyList(bytes).text(QStringLiteral("label")) == c.kept)
            << bytes.left(300).constData();
    }
}

TEST(PropertyList, IsTheSameWhereTheDecimalMarkIsAComma)
{
    const Scratch scratch;
    // Not every machine has the locale installed; making one takes a moment.
    const auto made = runTool(QStringLiteral("localedef"),
                              {QStringLiteral("-i"), QStringLiteral("de_DE"), QStringLiteral("-f"),
                               QStringLiteral("UTF-8"), scratch.path(QStringLiteral("de_DE.UTF-8"))});
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
    struct Case
    {
        QByteArray bytes;
        const char* reason;
    };
    const QByteArray nested =
        QByteArray("<array>").repeated(100'000) + QByteArray("</array>").repeated(100'000);
    const QByteArray laughs =
        "<?xml version=\"1.0\"?><!DOCTYPE plist [<!ENTITY a \"ha\"><!ENTITY b \"&a;&a;\">]>"
        "<plist><dict><key>a</key><string>&b;</string></dict></plist>";
    const std::vector<Case> cases = {
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
        {xml("stray<dict/>"), "text where none"},
        {"<svg/>", "does not begin"},
        {xml("<dict><key>deep</key>" + nested + "</dict>"), "nested too deeply"},
        {xml("<dict><key>many</key><array>" + QByteArray("<true/>").repeated(1'100'000) + "</array></dict>"),
         "too many values"},
        {laughs, "declares things"},
        {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><plist><dict/></plist>", "UTF-8"},
        {"bplist00", "cut short"},
        {"bplist00" + QByteArray(40, '\xFF'), "damaged"},
    };
    for (const Case& c : cases)
        EXPECT_THAT(refusal(c.bytes), HasSubstr(c.reason)) << c.bytes.left(120).constData();
}

/// A binary list of `depth` arrays, each holding the next; the last one holds the first if `loops`.
QByteArray nestedBinary(int depth, bool loops)
{
    QByteArray bytes = "bplist00";
    QByteArray offsets;
    const auto append = [](QByteArray& to, quint32 value) {
        char big[4];
        qToBigEndian(value, big);
        to.append(big, 4);
    };
    for (int i = 0; i < depth; ++i) {
        append(offsets, static_cast<quint32>(bytes.size()));
        const bool isLast = i == depth - 1;
        bytes.append(isLast && !loops ? '\xA0' : '\xA1');
        if (!isLast || loops) append(bytes, isLast ? 0 : static_cast<quint32>(i + 1));
    }
    const auto table = static_cast<quint32>(bytes.size());
    bytes += offsets + QByteArray(6, '\0') + "\4\4";
    for (const quint32 value : {0U, static_cast<quint32>(depth), 0U, 0U, 0U, table})
        append(bytes, value);
    return bytes;
}

TEST(PropertyList, RefusesDeepAndEndlessBinaryLists)
{
    EXPECT_THAT(refusal(nestedBinary(8, false)), HasSubstr("not a dictionary"))
        << "the test's own list is wrong";
    EXPECT_THAT(refusal(nestedBinary(100'000, false)), HasSubstr("nested too deeply"));
    EXPECT_THAT(refusal(nestedBinary(3, true)), HasSubstr("nested too deeply"));
}

TEST(PropertyList, DamagedBytesAreReadOrRefused)
{
    const QByteArray whole = writePropertyList(everyKind());
    for (qsizetype length = 0; length < whole.lastIndexOf("</plist>"); ++length)
        EXPECT_NE(refusal(whole.left(length)), "") << "cut at " << length;

    const Scratch scratch;
    const QString path = scratch.path(QStringLiteral("binary.plist"));
    runTool(QStringLiteral("python3"),
            {QStringLiteral("-c"),
             QStringLiteral("import plistlib,sys\nd=plistlib.load(open(sys.argv[1],'rb'))\n"
                            "plistlib.dump(d,open(sys.argv[2],'wb'),fmt=plistlib.FMT_BINARY)"),
             scratch.write(QStringLiteral("x.plist"), whole), path});
    std::mt19937 random(20261121);
    for (const QByteArray& original : {whole, readFile(path)}) {
        ASSERT_EQ(refusal(original), "");
        for (int i = 0; i < 3000; ++i) {
            QByteArray bytes = original;
            for (int j = 0; j < 3; ++j)
                bytes[static_cast<qsizetype>(random() % static_cast<unsigned>(bytes.size()))] =
                    static_cast<char>(random());
            refusal(bytes); // must come back, whatever it says
        }
    }
}

TEST(PropertyList, RefusesFilesThatCannotBeOne)
{
    const Scratch scratch;
    QFile huge(scratch.path(QStringLiteral("huge.plist")));
    ASSERT_TRUE(huge.open(QIODevice::WriteOnly));
    ASSERT_TRUE(huge.resize(qint64{40} << 30)); // takes no room on the disk
    huge.close();
    struct Case
    {
        QString path;
        const char* reason;
    };
    const std::vector<Case> cases = {{huge.fileName(), "256 MB"},
                                     {QStringLiteral("/dev/zero"), "cannot read"},
                                     {scratch.path(), "cannot read"},
                                     {scratch.path(QStringLiteral("missing")), "cannot read"}};
    for (const Case& c : cases) {
        try {
            static_cast<void>(readPropertyListFile(asPath(c.path)));
            ADD_FAILURE() << c.path.toStdString() << " was read";
        } catch (const Failure& failure) {
            EXPECT_THAT(failure.what(), HasSubstr(c.reason));
        }
    }
}

TEST(PropertyList, IsNotWrittenLargerThanItCanBeRead)
{
    Record record;
    record.set(QStringLiteral("picture"), QByteArray(200 << 20, 'x'));
    EXPECT_THROW(static_cast<void>(writePropertyList(record)), Failure);
}

} // namespace
} // namespace quillfern
