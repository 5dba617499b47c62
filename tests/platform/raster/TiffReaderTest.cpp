// Pages of TIFFs that are unusual beyond what other tests make with libtiff.

#include "platform/raster/CmykColours.h"
#include "platform/raster/JpegCodec.h"
#include "platform/raster/RasterReader.h"
#include "platform/raster/RasterWriter.h"
#include "platform/raster/StripCodec.h"
#include "platform/raster/TiffDirectory.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Cancellation.h"
#include "support/Tools.h"

#include <QtEndian>
#include <algorithm>
#include <gtest/gtest.h>
#include <lcms2.h>
#include <tiff.h>

namespace quillfern::raster {
namespace {

constexpr int width = 64;
constexpr int height = 40;

/// Rows of a grey or bilevel page with a slope of shades.
QByteArray slope(bool isBilevel)
{
    QByteArray rows(isBilevel ? width / 8 * height : width * height, '\0');
    for (qsizetype i = 0; i < rows.size(); ++i)
        rows[i] = static_cast<char>(i * 7 + i / 64);
    return rows;
}

/// A TIFF whose directory is in front of its only strip, which ends with the file, `missing` bytes before the
/// end that the directory states.
QByteArray directoryInFront(int compression, qsizetype missing, qsizetype overstated)
{
    StripFormat format;
    format.width = width;
    format.isBilevel = compression == 4;
    format.compression = static_cast<std::uint16_t>(compression);
    const QByteArray strip = encodeStrip(format, slope(format.isBilevel));
    const auto make = [&](std::uint64_t stripAt) {
        TiffDirectory directory(false);
        directory.number(256, width);
        directory.number(257, height);
        directory.shorts(258, {static_cast<std::uint16_t>(format.isBilevel ? 1 : 8)});
        directory.shorts(259, {format.compression});
        directory.shorts(262, {format.photometric()});
        directory.offsets(273, {stripAt});
        directory.number(278, height);
        directory.offsets(279, {static_cast<std::uint64_t>(strip.size() + overstated)});
        if (format.hasPredictor()) directory.shorts(317, {2});
        return directory.take(8, true);
    };
    const QByteArray front = TiffDirectory::header(false, 8);
    const auto stripAt = static_cast<std::uint64_t>(8 + make(0).size());
    return front + make(stripAt) + strip.chopped(missing);
}

TEST(TiffReaderTest, AStripMayEndEarlyWhereNoPixelIsMissing)
{
    const Rows<const char*, int, qsizetype, qsizetype, bool> cases = {
        {"plain, size too large", 1, 0, 100, true},   {"LZW, size too large", 5, 0, 100, true},
        {"LZW, end mark missing", 5, 1, 0, true},     {"Deflate, size too large", 8, 0, 5000, true},
        {"Group 4, size too large", 4, 0, 100, true}, {"Group 4, end mark missing", 4, 3, 0, true},
        {"plain, pixels missing", 1, 1, 0, false},    {"LZW, pixels missing", 5, 10, 0, false},
        {"Deflate, pixels missing", 8, 40, 0, false}, {"Group 4, pixels missing", 4, 10, 0, false},
        {"size much too large", 5, 0, 200000, false},
    };
    const Scratch scratch;
    for (const auto& [name, compression, missing, overstated, isWhole] : cases) {
        SCOPED_TRACE(name);
        const QString path =
            scratch.write(QStringLiteral("a.tif"), directoryInFront(compression, missing, overstated));
        const auto reader = RasterReader::open(asPath(path));
        if (!isWhole) {
            EXPECT_THROW(static_cast<void>(reader->readPage()), Failure);
            continue;
        }
        const RasterPage page = reader->readPage();
        const QByteArray rows = slope(page.isMono());
        const qsizetype rowBytes = rows.size() / height;
        for (int y = 0; y < height; ++y)
            ASSERT_EQ(QByteArray(reinterpret_cast<const char*>(page.image.constScanLine(y)), rowBytes),
                      rows.mid(y * rowBytes, rowBytes));
    }
}

// Two threads decode a half of a large page each.
TEST(TiffReaderTest, LargePagesAreWholeOrDamaged)
{
    RasterPage page;
    page.image = QImage(2400, 2404, QImage::Format_RGB888);
    for (int y = 0; y < page.image.height(); ++y)
        for (int x = 0; x < page.image.width() * 3; ++x)
            page.image.scanLine(y)[x] = static_cast<uchar>((x / 50 + y / 3) ^ (y / 100));
    RasterPage expected = page;
    jpegRoundTrip(expected.image.bits(), 2400, 2404, 3);
    const Scratch scratch;
    const QString path = scratch.path(QStringLiteral("a.tif"));
    for (const int compression : {COMPRESSION_LZW, COMPRESSION_JPEG, COMPRESSION_ADOBE_DEFLATE}) {
        SCOPED_TRACE(compression);
        store::AtomicFile file(asPath(path));
        RasterWriter writer(file);
        writer.addPage(page, compression, QSizeF(72, 72));
        writer.finish();
        file.commit();
        EXPECT_TRUE(RasterReader::open(asPath(path))->readPage().image == expected.image);
        if (compression == COMPRESSION_JPEG) continue; // whose codes mean something whatever they are
        QByteArray bytes = readFile(path);
        for (qsizetype i = bytes.size() / 8 * 7; i < bytes.size() / 8 * 7 + 100; ++i)
            bytes[i] = static_cast<char>(i * 37 ^ i >> 3);
        const QString wrong = scratch.write(QStringLiteral("wrong.tif"), bytes);
        EXPECT_THROW(static_cast<void>(RasterReader::open(asPath(wrong))->readPage()), Failure);
    }
}

/// Where the link behind the directory at `directory` is.
qsizetype linkAt(const QByteArray& bytes, qsizetype directory)
{
    return directory + 2 + 12 * qsizetype{qFromLittleEndian<quint16>(bytes.constData() + directory)};
}

TEST(TiffReaderTest, AWrongLastLinkCostsNoPage)
{
    // Two pages of the same strip; the second directory stands at the end of the file.
    QByteArray two = directoryInFront(5, 0, 0);
    const qsizetype first = linkAt(two, 8);
    const QByteArray directory = two.mid(8, first + 4 - 8);
    if (two.size() % 2 != 0) two += '\0';
    const qsizetype second = two.size();
    qToLittleEndian<quint32>(static_cast<quint32>(second), two.data() + first);
    two += directory;
    const qsizetype last = linkAt(two, second);
    const auto withLink = [&](qsizetype at, quint32 link) {
        QByteArray bytes = two;
        qToLittleEndian<quint32>(link, bytes.data() + at);
        return bytes;
    };
    // pages: 0 where the file is refused
    const Rows<const char*, QByteArray, int> cases = {
        {"as it should be", two, 2},
        {"a link behind the end", withLink(last, 0x7FFFFFF0), 2},
        {"a link back to the first", withLink(last, 8), 2},
        {"no link", two.chopped(4), 2},
        {"cut off in the second directory", two.chopped(20), 0},
        {"the first link is wrong", withLink(first, 0x7FFFFFF0), 0},
    };
    const Scratch scratch;
    for (const auto& [name, bytes, pages] : cases) {
        SCOPED_TRACE(name);
        const QString path = scratch.write(QStringLiteral("a.tif"), bytes);
        if (pages == 0) {
            EXPECT_THROW(static_cast<void>(RasterReader::open(asPath(path))), Failure);
            continue;
        }
        const auto reader = RasterReader::open(asPath(path));
        ASSERT_EQ(reader->pageCount(), pages);
        for (int page = 0; page < pages; ++page)
            EXPECT_EQ(reader->readPage().image.height(), height);
    }
}

TEST(TiffReaderTest, IptcRecordsOfAnyTypeAreKept)
{
    const QByteArray records("\x1C\2\x05\0\4abcd\0\0\0", 12);
    QByteArray swapped = records;
    for (qsizetype i = 0; i < swapped.size(); i += 4)
        std::reverse(swapped.begin() + i, swapped.begin() + i + 4);
    const Scratch scratch;
    for (const auto& [type, stored] : {std::pair{1, records}, {4, records}, {7, records}, {4, swapped}}) {
        TiffDirectory directory(false);
        directory.number(256, 4);
        directory.number(257, 4);
        directory.shorts(258, {8});
        directory.shorts(262, {1});
        directory.offsets(273, {8});
        directory.offsets(279, {16});
        directory.bytes(33723, static_cast<std::uint16_t>(type), stored);
        QByteArray bytes = TiffDirectory::header(false, 24) + QByteArray(16, '\0') + directory.take(24, true);
        // The directory counts bytes; a type of larger numbers counts these.
        const qsizetype entry = 24 + 2 + 6 * 12;
        if (type == 4) qToLittleEndian<quint32>(3, bytes.data() + entry + 4);
        const auto reader = RasterReader::open(asPath(scratch.write(QStringLiteral("a.tif"), bytes)));
        EXPECT_EQ(reader->readPage().tags[33723], records) << type;
    }
}

/// A profile of inks under which black ink is a dark grey and every other mixture one light grey.
QByteArray inkProfile()
{
    const cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetDeviceClass(profile, cmsSigOutputClass);
    cmsSetColorSpace(profile, cmsSigCmykData);
    cmsSetPCS(profile, cmsSigLabData);
    cmsSetProfileVersion(profile, 2.1);
    cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, 4, 3);
    cmsStage* table = cmsStageAllocCLut16bit(nullptr, 2, 4, 3, nullptr);
    cmsStageSampleCLut16bit(
        table,
        [](const cmsUInt16Number in[], cmsUInt16Number out[], void*) {
            out[0] = in[3] > 0x8000 ? 0x4000 : 0xC000; // lightness
            out[1] = out[2] = 0x8000;
            return 1;
        },
        nullptr, 0);
    cmsPipelineInsertStage(pipeline, cmsAT_END, table);
    cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
    cmsPipelineFree(pipeline);
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    QByteArray bytes(static_cast<qsizetype>(size), '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

TEST(CmykColoursTest, TheProfileDecides)
{
    const QByteArray profile = inkProfile();
    const std::array<uchar, 8> inks = {255, 0, 0, 0, 0, 0, 0, 255};
    const auto converted = [&](const QByteArray& with, bool isInverted) {
        std::array<uchar, 6> colours = {};
        CmykColours(with, isInverted).convert(inks.data(), 2, colours.data());
        return std::vector<int>(colours.begin(), colours.end());
    };
    EXPECT_EQ(converted({}, false), (std::vector<int>{0, 255, 255, 0, 0, 0}));
    EXPECT_EQ(converted("no profile", false), (std::vector<int>{0, 255, 255, 0, 0, 0}));
    EXPECT_EQ(converted({}, true), (std::vector<int>{0, 0, 0, 0, 0, 0}));
    const std::vector<int> light = converted(profile, false);
    for (const std::size_t i : {0U, 1U, 2U}) {
        EXPECT_NEAR(light[i], 181, 3); // a lightness of three quarters
        EXPECT_EQ(light[3 + i], 0);    // the darkest that the inks can be is black
    }
    const std::vector<int> inverted = converted(profile, true); // the first is all inks but cyan
    EXPECT_EQ(inverted[0], 0);
    EXPECT_NEAR(inverted[3], 181, 3);
}

} // namespace
} // namespace quillfern::raster
