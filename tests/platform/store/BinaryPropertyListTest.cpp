#include "platform/store/PropertyLists.h"
#include "support/Tools.h"

#include <QtEndian>

namespace quillfern::store {
namespace {

using testing::HasSubstr;

TEST(BinaryPropertyList, IsReadAsOthersWriteIt)
{
    const Scratch scratch;
    const QString path = scratch.path(u"b.plist"_s);
    const auto result =
        runTool("python3 -c",
                {u"import plistlib,sys,datetime\n"
                 "plistlib.dump({'n':-3,'r':0.25,'t':'\\u00e9\\U0001F600','d':b'\\0x','l':[True,{'k':'v'}],"
                 "'when':datetime.datetime(2020,1,1)},open(sys.argv[1],'wb'),"
                 "fmt=plistlib.FMT_BINARY,sort_keys=False)"_s,
                 path});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    Record expected;
    expected.set(u"n"_s, -3);
    expected.set(u"r"_s, 0.25);
    expected.set(u"t"_s, u"\u00e9\U0001F600"_s);
    expected.set(u"d"_s, QByteArray("\0x", 2));
    expected.set(u"l"_s, RecordValue::List{true, holding(u"v"_s, u"k"_s)});
    EXPECT_EQ(readPropertyListFile(asPath(path)), expected);
}

QByteArray bigEndian(quint64 value, int size = 8)
{
    char bytes[8];
    qToBigEndian(value, bytes);
    return {bytes + 8 - size, size};
}

/// A binary list with references of four bytes; the first object is the top.
QByteArray binary(const QByteArrayList& objects)
{
    QByteArray bytes = "bplist00";
    QByteArray offsets;
    for (const QByteArray& object : objects) {
        offsets += bigEndian(static_cast<quint64>(bytes.size()), 4);
        bytes += object;
    }
    const auto table = static_cast<quint64>(bytes.size());
    return bytes + offsets + QByteArray(6, '\0') + "\4\4" + bigEndian(static_cast<quint64>(objects.size())) +
           bigEndian(0) + bigEndian(table);
}

/// A binary list that holds `objects` from number 2 on and, under "v", the first of them.
QByteArray holdingBinary(const QByteArrayList& objects)
{
    return binary(QByteArrayList{"\xD1" + bigEndian(1, 4) + bigEndian(2, 4), "\x51v"} + objects);
}

TEST(BinaryPropertyList, MayHoldEveryKindOfObject)
{
    // value: nothing: left out
    const Rows<const char*, std::optional<RecordValue>> cases = {
        {"08", false},
        {"09", true},
        {"10FF", 255},
        {"11FFFB", 65531},
        {"12FFFFFFFB", std::int64_t{4294967291}},
        {"13FFFFFFFFFFFFFFFB", -5},
        {"140000000000000000FFFFFFFFFFFFFFFF", -1}, // wraps around
        {"223FC00000", 1.5},
        {"233FF8000000000000", 1.5},
        {"33419D000000000000", std::nullopt},
        {"43610062", QByteArray("a\0b", 3)},
        {"4F1002 6162", QByteArray("ab")},
        {"50", QString()},
        {"53C3A962", u"\u00e9b"_s},
        {"6300E9D83DDE00", u"\u00e9\U0001F600"_s},
        {"8005", std::nullopt},
        {"A0", RecordValue::List()},
        {"A20000000100000001", RecordValue::List{u"v"_s, u"v"_s}},
        {"D10000000100000001", holding(u"v"_s)},
    };
    for (const auto& [hex, value] : cases) {
        const QByteArray bytes = holdingBinary({QByteArray::fromHex(hex)});
        ASSERT_EQ(refusal(bytes), "") << hex;
        EXPECT_EQ(readPropertyList(bytes), value ? holding(*value) : Record()) << hex;
    }
}

TEST(BinaryPropertyList, IsRefusedWhenDamaged)
{
    QByteArrayList deep;
    for (quint64 i = 0; i < 100'000; ++i)
        deep += "\xA1" + bigEndian(i + 3, 4);
    deep += "\x08";
    // A hundred thousand times the same 4000 bytes.
    const QByteArray shared = "\xAF\x12" + bigEndian(100'000, 4) + bigEndian(3, 4).repeated(100'000);
    const Rows<const char*, QByteArray, const char*> cases = {
        {"no dictionary", binary({"\xA0"}), "not a dictionary"},
        {"depth", holdingBinary(deep), "nested too deeply"},
        {"a list in itself", holdingBinary({"\xA1" + bigEndian(2, 4)}), "nested too deeply"},
        {"the top in itself", holdingBinary({"\xA1" + bigEndian(0, 4)}), "nested too deeply"},
        {"few bytes for many", holdingBinary({shared, "\x4F\x11\x0F\xA0" + QByteArray(4000, 'x')}),
         "again and again"},
        {"a missing object", holdingBinary({"\xA1" + bigEndian(3, 4)}), "does not hold"},
        {"a number as a key", holdingBinary({"\xD1" + bigEndian(3, 4) + bigEndian(1, 4), "\x10\x05"}),
         "no text"},
        {"data beyond the end",
         holdingBinary({"\x4E"
                        "ab"}),
         "cut short"},
        {"an enormous length", holdingBinary({"\x6F\x13" + bigEndian(~quint64{0})}), "cut short"},
        {"an enormous list", holdingBinary({"\xAF\x13" + bigEndian(~quint64{0})}), "cut short"},
        {"an enormous dictionary", holdingBinary({"\xDF\x13" + bigEndian(~quint64{0} >> 2U)}), "cut short"},
        {"a length that is a real", holdingBinary({"\x4F\x23" + bigEndian(0)}), "damaged length"},
        {"a text with a zero",
         holdingBinary({QByteArray("\x53"
                                   "a\0b",
                                   4)}),
         "zero"},
        {"an unknown kind", holdingBinary({"\x70"}), "unknown kind"},
        {"an unknown size", holdingBinary({QByteArray("\x15") + QByteArray(32, '\1')}), "unknown kind"},
        {"one byte more", holdingBinary({"\x09"}) + '\0', "damaged"},
    };
    for (const auto& [what, bytes, reason] : cases)
        EXPECT_THAT(refusal(bytes), HasSubstr(reason)) << what;
}

} // namespace
} // namespace quillfern::store
