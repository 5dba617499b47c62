#include "platform/store/ArchivedColor.h"

#include "support/Cases.h"

namespace quillfern::store {
namespace {

QByteArray archived(const char* base64)
{
    return QByteArray::fromBase64(base64);
}

/// All bytes of a literal, zeros and all.
template <std::size_t Size>
QByteArray raw(const char (&literal)[Size])
{
    return {literal, Size - 1};
}

/// The bytes before the colour space, in little-endian order.
QByteArray opening()
{
    return raw("\x04\x0Bstreamtyped\x81\xE8\x03\x84\x01@\x84\x84\x84\x07NSColor\0\x84\x84\x08NSObject\0\x85"
               "\x84\x01"
               "c");
}

TEST(ArchivedColor, GivesTheComponents)
{
    const Rows<const char*, QByteArray, double, double, double, double> cases = {
        {"calibrated 1",
         archived("BAtzdHJlYW10eXBlZIHoA4QBQISEhAdOU0NvbG9yAISECE5TT2JqZWN0AIWEAWMBhARmZmZmg6i7UT+"
                  "DUATePYMl2hA+AYY="),
         0.8193, 0.1084, 0.1415, 1},
        {"calibrated 2",
         archived("BAtzdHJlYW10eXBlZIHoA4QBQISEhAdOU0NvbG9yAISECE5TT2JqZWN0AIWEAWMBhARmZmZmg/"
                  "j3dz+DlZSUPoP5+Hg+AYY="),
         0.9686, 0.2902, 0.2431, 1},
        {"big-endian",
         archived("BAt0eXBlZHN0cmVhbYED6IQBQISEhAdOU0NvbG9yAISECE5TT2JqZWN0AIWEAWMBhARmZmZmAAEAAYY="), 0, 1,
         0, 1},
        {"big-endian white",
         archived("BAt0eXBlZHN0cmVhbYED6IQBQISEhAdOU0NvbG9yAISECE5TT2JqZWN0AIWEAWMDhAJmZgEBhg=="), 1, 1, 1,
         1},
        // 0.5 and 0.25 as little-endian floats
        {"device white, half there",
         opening() + raw("\x04\x84\x02"
                         "ff\x83\0\0\0\x3F\x83\0\0\x80\x3E\x86"),
         0.5, 0.5, 0.5, 0.25},
        {"device CMYK",
         opening() + raw("\x05\x84\x05"
                         "fffff\0\x01\x01\0\x01\x86"),
         1, 0, 0, 1},
        {"beyond the range",
         opening() + raw("\x02\x84\x04"
                         "ffff\x02\xFF\0\x01\x86"),
         1, 0, 0, 1},
        {"named, then concrete",
         opening() + raw("\x06\x84\x01@\x84\x84\x84\x08NSString\x01\x94\x84\x01+\x06System\x86"
                         "\x92\x84\x99\x99\x04text\x86\x92\x84\x93\x98\x03\x84\x02"
                         "ff\0\x01\x86\x86"),
         0, 0, 0, 1},
    };
    for (const auto& [name, bytes, red, green, blue, alpha] : cases) {
        const auto color = readArchivedColor(bytes);
        ASSERT_TRUE(color) << name;
        EXPECT_NEAR(color->redF(), red, 0.0001) << name;
        EXPECT_NEAR(color->greenF(), green, 0.0001) << name;
        EXPECT_NEAR(color->blueF(), blue, 0.0001) << name;
        EXPECT_NEAR(color->alphaF(), alpha, 0.0001) << name;
    }
}

TEST(ArchivedColor, OtherBytesGiveNone)
{
    const QByteArray good = archived(
        "BAtzdHJlYW10eXBlZIHoA4QBQISEhAdOU0NvbG9yAISECE5TT2JqZWN0AIWEAWMBhARmZmZmg6i7UT+DUATePYMl2hA+AYY=");
    // The last byte only ends the object; every shorter piece lacks a component.
    for (qsizetype length = 0; length < good.size() - 1; ++length)
        EXPECT_FALSE(readArchivedColor(good.left(length))) << "cut at " << length;
    QByteArray otherVersion = good;
    otherVersion[14] = '\x01';
    QByteArray otherClass = good;
    otherClass.replace("NSColor", "NSImage");
    for (const QByteArray& bytes :
         {otherVersion, otherClass, QByteArray("#FF000000"), QByteArray("bplist00"), QByteArray(100, '\x84'),
          opening() + raw("\x01\x84\x02"
                          "ff\0\x01\x86"), // a space and a count that do not belong together
          opening() + raw("\x01\x84\x04"
                          "ffff\x83\0\0\xC0\x7F\0\0\x01")}) // not a number
        EXPECT_FALSE(readArchivedColor(bytes)) << bytes.toHex().constData();
}

} // namespace
} // namespace quillfern::store
