// What strips, directories and the JPEG round trip hold, checked with libtiff and with plain TurboJPEG.

#include "platform/raster/JpegCodec.h"
#include "platform/raster/RasterWriter.h"
#include "platform/raster/TiffContainer.h"
#include "platform/store/AtomicFile.h"
#include "support/TiffBuilder.h"
#include "support/Tools.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <turbojpeg.h>

namespace quillfern::raster {
namespace {

enum class Content { Zeros, Noise, FewValues, Paper, Ramp };

QByteArray rowsOf(Content content, qsizetype size, unsigned seed)
{
    std::mt19937 random(seed);
    QByteArray bytes(size, '\0');
    for (qsizetype i = 0; i < size; ++i) {
        const std::int64_t noise = random();
        const std::int64_t paper = i / 40 % 7 == 0 ? noise % 5 : 0xFF; // white with words on it
        const std::int64_t values[] = {0, noise, noise % 3, paper, i * 3};
        bytes[i] = static_cast<char>(values[static_cast<int>(content)]);
    }
    return bytes;
}

QByteArray pixelsOf(const QImage& image, int channels)
{
    QByteArray bytes;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            for (int c = 0; c < channels; ++c)
                bytes.append(static_cast<char>(image.constScanLine(y)[x * 4 + c]));
    return bytes;
}

TEST(StripCodecTest, LibtiffReadsBackEveryStrip)
{
    const Scratch scratch;
    const QString path = scratch.path(QStringLiteral("strips.tif"));
    for (const int compression : {1, 5, 8, 32946, 32773}) {
        for (const int channels : {1, 3, 4}) {
            for (const Content content :
                 {Content::Zeros, Content::Noise, Content::FewValues, Content::Paper, Content::Ramp}) {
                // Lengths around the places where a table of codes fills up and code widths change.
                for (const int width : {1, 2, 253, 255, 509, 511, 1020, 1023, 3838, 3841, 60000}) {
                    SCOPED_TRACE(testing::Message() << compression << ' ' << channels << ' '
                                                    << static_cast<int>(content) << ' ' << width);
                    StripFormat format;
                    format.width = static_cast<std::uint32_t>(width);
                    format.channels = static_cast<std::uint16_t>(channels);
                    format.compression = static_cast<std::uint16_t>(compression);
                    const QByteArray rows =
                        rowsOf(content, qsizetype{width} * channels, static_cast<unsigned>(width));
                    store::AtomicFile file(asPath(path));
                    TiffFileOutput output(file);
                    TiffContainer container(output);
                    container.beginPage(format, 1, 1, QSizeF(72, 72), {});
                    container.addStrip(encodeStrip(format, rows));
                    container.finish();
                    file.commit();
                    const auto pages = readTiff(path);
                    ASSERT_EQ(pages.size(), 1U);
                    ASSERT_EQ(pixelsOf(pages[0].image, channels), rows);
                }
            }
        }
    }
}

/// Rows of one bit a pixel in turns of three: runs of every length that has a code of its own, runs of any
/// length, and the row above with its changes moved a little, left out and doubled, as rows of writing are.
QByteArray bilevelRows(int width, int count, unsigned seed)
{
    std::mt19937 random(seed);
    const auto below = [&](unsigned limit) { return static_cast<int>(random() % limit); };
    std::vector<int> changes;
    QByteArray bytes;
    int length = 0;
    for (int y = 0; y < count; ++y) {
        std::vector<int> next;
        const unsigned longest = 1U << below(13);
        int x = below(2) * below(longest);
        if (y % 3 == 0) {
            for (; x < width; x += length) {
                if (next.size() % 2 == 0) length += length < 64 ? 1 : length < 2700 ? 64 : -length + 1;
                next.push_back(x);
            }
        } else if (y % 3 == 1) {
            for (; x < width; x += 1 + below(longest))
                next.push_back(x);
        } else {
            for (const int change : changes) {
                const int moved = change + below(9) - 4;
                if (below(12) > 0 && moved >= 0 && (next.empty() || moved > next.back()))
                    next.push_back(moved);
                if (below(12) == 0 && !next.empty()) next.push_back(next.back() + 1);
            }
        }
        QByteArray row((width + 7) / 8, '\0');
        bool isOne = false;
        for (x = 0; x < row.size() * 8; ++x) {
            const bool changesHere =
                x < width ? std::binary_search(next.begin(), next.end(), x) : below(2) == 0;
            if (changesHere) isOne = !isOne; // behind the last pixel the bits are anything
            if (isOne) row[x / 8] = static_cast<char>(row[x / 8] | 0x80 >> x % 8);
        }
        bytes += row;
        changes = std::move(next);
    }
    return bytes;
}

/// A page of such bits as a file of one page, written under a fax code, and read by libtiff again.
void expectFaxPage(const QString& path, int width, QByteArray rows, int compression, unsigned options,
                   bool isWhiteZero, int expected)
{
    const int rowBytes = (width + 7) / 8;
    const auto count = static_cast<int>(rows.size() / rowBytes);
    RasterPage page;
    page.image = QImage(width, count, QImage::Format_Mono);
    page.isBilevel = true;
    page.isWhiteZero = isWhiteZero;
    page.group3Options = options;
    for (int y = 0; y < count; ++y)
        std::copy_n(rows.constData() + y * rowBytes, rowBytes, page.image.scanLine(y));
    store::AtomicFile file(asPath(path));
    RasterWriter writer(file);
    writer.addPage(std::move(page), compression, QSizeF(72, 72));
    writer.finish();
    file.commit();
    const auto pages = readTiff(path);
    ASSERT_EQ(pages.size(), 1U);
    EXPECT_EQ(pages[0].compression, expected);
    for (int y = 0; y < count; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool isOne = (rows[y * rowBytes + x / 8] << x % 8 & 0x80) != 0;
            const int shade = pages[0].image.constScanLine(y)[x * 4];
            ASSERT_EQ(shade, isOne == isWhiteZero ? 0 : 255) << x << ", " << y;
        }
    }
}

constexpr struct
{
    int compression;
    unsigned options; ///< 1 for differences from the row above, 4 for rows that end with a byte
} faxCodes[] = {{2, 0}, {3, 0}, {3, 1}, {3, 4}, {3, 5}, {4, 0}};

TEST(StripCodecTest, LibtiffReadsBackFaxPages)
{
    const Scratch scratch;
    const QString path = scratch.path(QStringLiteral("fax.tif"));
    for (const auto& code : faxCodes)
        for (const int width : {1, 2, 7, 8, 63, 65, 100, 511, 2480, 6000, 30000})
            for (const bool isWhiteZero : {true, false}) {
                SCOPED_TRACE(testing::Message() << code.compression << ' ' << code.options << ' ' << width
                                                << ' ' << isWhiteZero);
                expectFaxPage(path, width, bilevelRows(width, 90, static_cast<unsigned>(width)),
                              code.compression, code.options, isWhiteZero, code.compression);
            }
}

TEST(StripCodecTest, FaxPagesThatEndWithARowOfOneByte)
{
    // libtiff reads bits behind the end of a strip while it looks for the end of the last row but one, and
    // counts them when it goes on to the next byte.
    const Scratch scratch;
    const QString path = scratch.path(QStringLiteral("fax.tif"));
    std::mt19937 random(1);
    for (const auto& code : faxCodes)
        for (int i = 0; i < 60; ++i) {
            const int width = 1 + static_cast<int>(random() % 20);
            QByteArray rows = rowsOf(Content::Noise, (width + 7) / 8 * (2 + i % 3), static_cast<unsigned>(i));
            rows.back() = '\0';
            SCOPED_TRACE(testing::Message() << code.compression << ' ' << code.options << ' ' << width << ' '
                                            << rows.toHex(' ').toStdString());
            expectFaxPage(path, width, rows, code.compression, code.options, true, code.compression);
        }
}

TEST(StripCodecTest, RowsWithMoreRunsThanLibtiffHasRoomForAreKept)
{
    const Scratch scratch;
    const QString path = scratch.path(QStringLiteral("fax.tif"));
    for (const auto& code : faxCodes)
        for (const int width : {32, 33, 63, 64, 2464, 2480})
            for (const char start : {'\xAA', '\x55'}) {
                SCOPED_TRACE(testing::Message()
                             << code.compression << ' ' << code.options << ' ' << width << ' ' << start);
                const int rowBytes = (width + 7) / 8;
                const QByteArray rows = QByteArray(rowBytes * 20, '\0') + QByteArray(rowBytes, start);
                const bool isTooMany =
                    code.compression < 4 && (code.options & 1U) == 0 && width % 32 == 0 && start == '\xAA';
                expectFaxPage(path, width, rows, code.compression, code.options, false,
                              isTooMany ? 5 : code.compression);
            }
}

TEST(TiffContainerTest, BecomesBigOnlyWhenItMust)
{
    const Scratch scratch;
    const QString path = scratch.path(QStringLiteral("pages.tif"));
    const QByteArray profile("not really a profile");
    for (const std::uint64_t limit : {std::uint64_t{0xFFFFFFFF}, std::uint64_t{1000}}) {
        StripFormat format;
        format.width = 10;
        format.channels = 3;
        format.compression = 5;
        const QByteArray rows = rowsOf(Content::Noise, 300, 1);
        store::AtomicFile file(asPath(path));
        TiffFileOutput output(file);
        TiffContainer container(output, limit);
        for (int page = 0; page < 3; ++page) {
            container.beginPage(format, 20, 10, QSizeF(300, 203.2), page == 1 ? profile : QByteArray());
            container.addStrip(encodeStrip(format, rows));
            container.addStrip(encodeStrip(format, rows));
        }
        container.finish();
        file.commit();
        EXPECT_EQ(readFile(path)[2], limit == 1000 ? 43 : 42);
        const auto pages = readTiff(path);
        ASSERT_EQ(pages.size(), 3U);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(pixelsOf(pages[i].image, 3), rows + rows);
            EXPECT_FLOAT_EQ(pages[i].xResolution, 300);
            EXPECT_FLOAT_EQ(pages[i].yResolution, 203.2F);
            EXPECT_EQ(pages[i].tags.contains(34675), i == 1);
        }
        const ToolResult info = runTool(QStringLiteral("tiffinfo"), {path});
        EXPECT_EQ(info.exitCode, 0);
        EXPECT_TRUE(info.err.isEmpty()) << info.err.toStdString();
    }
}

TEST(TiffContainerTest, ThousandsOfPagesKeepTheirOrder)
{
    const Scratch scratch;
    const QString path = scratch.path(QStringLiteral("many.tif"));
    store::AtomicFile file(asPath(path));
    TiffFileOutput output(file);
    TiffContainer container(output);
    StripFormat format;
    format.width = 3;
    constexpr int count = 5000;
    for (int i = 0; i < count; ++i) {
        container.beginPage(format, 1, 1, QSizeF(72, 72), {});
        container.addStrip(QByteArray(1, static_cast<char>(i % 251)) +
                           QByteArray(1, static_cast<char>(i / 251)) + "x");
    }
    container.finish();
    file.commit();
    const auto pages = readTiff(path);
    ASSERT_EQ(pages.size(), std::size_t{count});
    for (int i = 0; i < count; ++i) {
        const uchar* row = pages[static_cast<std::size_t>(i)].image.constScanLine(0);
        ASSERT_EQ(row[0] + 251 * row[4], i);
    }
}

/// The whole picture in one go, as any program would do it.
QByteArray plainRoundTrip(QByteArray pixels, int width, int rows, int channels)
{
    const tjhandle coder = tjInitCompress();
    const tjhandle decoder = tjInitDecompress();
    auto* data = reinterpret_cast<uchar*>(pixels.data());
    uchar* jpeg = nullptr;
    unsigned long size = 0;
    const int format = channels == 1 ? TJPF_GRAY : TJPF_RGB;
    EXPECT_EQ(tjCompress2(coder, data, width, 0, rows, format, &jpeg, &size,
                          channels == 1 ? TJSAMP_GRAY : TJSAMP_444, 100, 0),
              0);
    EXPECT_EQ(tjDecompress2(decoder, jpeg, size, data, width, 0, rows, format, 0), 0);
    tjFree(jpeg);
    tjDestroy(coder);
    tjDestroy(decoder);
    return pixels;
}

TEST(JpegCodecTest, RoundTripIsThatOfTheWholePicture)
{
    for (const int channels : {1, 3}) {
        for (const auto& [width, rows] :
             {std::pair{64, 64}, {61, 37}, {7, 3}, {1, 1}, {1000, 9}, {9000, 16}}) {
            for (const Content content : {Content::Zeros, Content::Noise, Content::Paper, Content::Ramp}) {
                SCOPED_TRACE(testing::Message()
                             << channels << ' ' << width << ' ' << rows << ' ' << static_cast<int>(content));
                QByteArray pixels = rowsOf(content, qsizetype{width} * rows * channels, 7);
                const QByteArray expected = plainRoundTrip(pixels, width, rows, channels);
                jpegRoundTrip(reinterpret_cast<uchar*>(pixels.data()), width, rows, channels);
                ASSERT_EQ(pixels, expected);
            }
        }
    }
}

} // namespace
} // namespace quillfern::raster
