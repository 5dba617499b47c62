// Files that claim more than they hold, and reading and writing that is given up.

#include "batch/RasterProcessing.h"
#include "platform/raster/PageFeed.h"
#include "platform/raster/RasterWriter.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Cancellation.h"
#include "support/ImageBytes.h"

#include <sys/resource.h>

namespace quillfern {
namespace {

/// A TIFF of one strip of 10,000 bytes, which are all zero, and of so many pixels and samples.
QByteArray shortTiff(quint32 width, quint32 height, quint32 bits, quint32 compression, quint32 photometric,
                     quint32 samples, bool isTiled = false)
{
    constexpr quint32 size = 10000;
    QByteArray bytes("II*\0", 4);
    putLittle(bytes, quint32{8 + size});
    bytes += QByteArray(size, '\0');
    std::vector<std::pair<quint16, quint32>> fields = {
        {256, width}, {257, height}, {258, bits}, {259, compression}, {262, photometric}, {277, samples}};
    if (isTiled)
        fields.insert(fields.end(), {{322, 65536}, {323, 65536}, {324, 8}, {325, size}});
    else
        fields.insert(fields.begin() + 5, {273, 8});
    if (!isTiled) fields.insert(fields.end(), {{278, height}, {279, size}});
    putLittle(bytes, static_cast<quint16>(fields.size()));
    for (const auto& [tag, value] : fields) {
        putLittle(bytes, tag);
        putLittle(bytes, quint16{4});
        putLittle(bytes, quint32{1});
        putLittle(bytes, value);
    }
    putLittle(bytes, quint32{0});
    return bytes;
}

/// A JPEG whose last pass stands there many times.
QByteArray jpegOfManyScans(int width, int height, int scans)
{
    QImage image(width, height, QImage::Format_Grayscale8);
    image.fill(Qt::white);
    QByteArray bytes = encodedImage(image, "jpg", true);
    const qsizetype start = bytes.lastIndexOf("\xFF\xDA");
    const QByteArray scan = bytes.mid(start, bytes.size() - 2 - start);
    return bytes.insert(start, scan.repeated(scans));
}

/// A GIF of which only the header and the beginning of a frame are there.
QByteArray hugeGif()
{
    QByteArray bytes("GIF89a");
    for (int i = 0; i < 2; ++i)
        putLittle(bytes, quint16{15000});
    bytes += QByteArray("\x80\0\0\0\0\0\xFF\xFF\xFF,\0\0\0\0", 14);
    for (int i = 0; i < 2; ++i)
        putLittle(bytes, quint16{15000});
    return bytes + QByteArray("\0\x02\x02\x4C\x01\0;", 7);
}

class RasterClaims : public RasterProcessing
{
  protected:
    /// The most memory that this process has had, in bytes.
    static qint64 peakMemory()
    {
        rusage usage = {};
        ::getrusage(RUSAGE_SELF, &usage);
        return qint64{usage.ru_maxrss} << 10;
    }
};

TEST_F(RasterClaims, PagesThatTheFileCannotHoldAreRefusedBeforeMemoryIsTaken)
{
    addStamp();
    QByteArray png = encodedImage(colourPicture(16000, 1), "png");
    const QByteArray jpeg = encodedImage(colourPicture().convertToFormat(QImage::Format_Grayscale8), "jpg");
    QByteArray tallJpeg = jpeg;
    const qsizetype frame = tallJpeg.indexOf("\xFF\xC0");
    qToBigEndian<quint16>(30000, tallJpeg.data() + frame + 5);
    qToBigEndian<quint16>(30000, tallJpeg.data() + frame + 7);
    const Rows<const char*, QByteArray, const char*> cases = {
        {"rows of 60000 samples.tif", shortTiff(32000, 10, 16, 5, 1, 60000), "too large"},
        {"many samples.tif", shortTiff(2000, 1000, 16, 5, 2, 1000), "too short"},
        {"plain.tif", shortTiff(32000, 32000, 8, 1, 1, 1), "too short"},
        {"lzw.tif", shortTiff(32000, 32000, 8, 5, 1, 1), "too short"},
        {"lab.tif", shortTiff(16000, 16000, 8, 5, 8, 3), "too short"},
        {"one tile.tif", shortTiff(100, 100, 8, 5, 1, 1, true), "too large"},
        {"fax.tif", shortTiff(1000, 900000, 1, 4, 0, 1), "too short"},
        {"a.jpg", tallJpeg, "too short"},
        {"scans.jpg", jpegOfManyScans(4000, 4000, 300), "passes"},
        {"a.gif", hugeGif(), "too short"},
    };
    const qint64 before = peakMemory();
    for (const auto& [name, bytes, word] : cases) {
        SCOPED_TRACE(name);
        process(write(QString::fromLatin1(name), bytes), false, 5);
        EXPECT_TRUE(problem().contains(QLatin1String(word))) << problem().toStdString();
    }
    EXPECT_LT(peakMemory() - before, qint64{100} << 20);
}

TEST_F(RasterClaims, DensePagesAreRead)
{
    QImage white(9000, 9000, QImage::Format_Grayscale8);
    white.fill(Qt::white);
    const QString fax = path(u"fax.tif"_s);
    TiffBuilder(fax).page(blackAndWhitePicture(64, 4000), {.photometric = 0, .bits = 1, .compression = 4});
    for (const QString& source : {fax, write(u"white.png"_s, encodedImage(white, "png")),
                                  write(u"white.jpg"_s, encodedImage(white, "jpg", true)),
                                  write(u"scans.jpg"_s, jpegOfManyScans(100, 100, 300))}) {
        SCOPED_TRACE(source.toStdString());
        process(source, true, 5);
    }
}

TEST_F(RasterClaims, GivenUpWorkEndsWithTheWordForIt)
{
    const QImage picture = colourPicture().convertToFormat(QImage::Format_RGB888);
    const QString tiff = path(u"a.tif"_s);
    TiffBuilder(tiff).page(picture, {.compression = 5}).page(picture, {.compression = 5});
    std::vector<QString> sources = {tiff, write(u"a.gif"_s, encodedImage(picture, "png"))};
    for (const char* format : {"png", "jpg", "bmp", "ppm"})
        sources.push_back(write(QString::fromLatin1(format), encodedImage(picture, format)));
    for (const QString& source : sources) {
        SCOPED_TRACE(source.toStdString());
        std::stop_source stop;
        const auto reader = raster::RasterReader::open(asPath(source), stop.get_token());
        stop.request_stop();
        EXPECT_THROW(static_cast<void>(reader->readPage(stop.get_token())), Cancelled);
        const auto again = raster::RasterReader::open(asPath(source));
        raster::PageFeed feed(*again, 1, 1, stop.get_token());
        EXPECT_THROW(static_cast<void>(feed.next()), Cancelled);
    }
    std::stop_source stop;
    store::AtomicFile file(asPath(scratch.path(u"copy.tif"_s)));
    raster::RasterWriter writer(file, stop.get_token());
    writer.addPage(raster::RasterReader::open(asPath(tiff))->readPage(), 5, QSizeF(72, 72));
    stop.request_stop();
    EXPECT_THROW(writer.finish(), Cancelled);
}

} // namespace
} // namespace quillfern
