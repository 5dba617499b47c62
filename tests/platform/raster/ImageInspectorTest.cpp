#include "platform/raster/ImageInspector.h"

#include "platform/system/NativePath.h"
#include "support/Paths.h"
#include "support/Tools.h"

#include <QFile>
#include <QImage>
#include <QtEndian>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillfern::raster {
namespace {

/// A TIFF file of `pages` directories, each with a strip of `stripBytes` that is a hole in the file.
QString tiffWithHoles(const Scratch& scratch, int pages, quint32 stripBytes)
{
    QFile file(scratch.write(QStringLiteral("holes.tif"), {}));
    EXPECT_TRUE(file.open(QIODevice::ReadWrite));
    const auto number = [&](auto value) {
        const auto little = qToLittleEndian(value);
        file.write(reinterpret_cast<const char*>(&little), sizeof little);
    };
    file.write("II*\0", 4);
    for (int page = 0; page < pages; ++page) {
        const auto strip = static_cast<quint32>(file.pos() + 4);
        const quint32 directory = strip + stripBytes;
        number(directory); // the link from the header, or from the directory before
        file.seek(directory);
        const std::vector<std::pair<quint16, quint32>> entries = {
            {256, 1000},  {257, stripBytes / 125}, {258, 1},         {259, 5}, {262, 0},
            {273, strip}, {278, 1 << 20},          {279, stripBytes}};
        number(static_cast<quint16>(entries.size()));
        for (const auto& [tag, value] : entries) {
            number(tag);
            number(quint16{4}); // a long
            number(quint32{1});
            number(value);
        }
    }
    number(quint32{0});
    return file.fileName();
}

TEST(ImageInspector, CountsDirectoriesWithoutReadingThePictures)
{
    const Scratch scratch;
    constexpr qint64 large = 600LL << 20;
    const QString path = tiffWithHoles(scratch, 12, 50U << 20);
    ASSERT_GE(QFile(path).size(), large);
    const qint64 before = bytesRead();
    const auto facts = inspectImageFile(asPath(path));
    EXPECT_LT(bytesRead() - before, 4 << 20);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->pages, 12);
    EXPECT_EQ(facts->compression, 5);
}

TEST(ImageInspector, TheContentDecidesUnderAnyName)
{
    const Scratch scratch;
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(Qt::red);
    for (const char* format : {"png", "jpg", "bmp"}) {
        const QString path = scratch.path(QString::fromLatin1(format));
        ASSERT_TRUE(image.save(path, format));
        for (const char* name : {"lie.pdf", "latin\xE9.tif", "line\nbreak.png"}) {
            const QByteArray target = nativePath(scratch.path()) + '/' + name;
            ::unlink(target.constData());
            ASSERT_EQ(::link(nativePath(path).constData(), target.constData()), 0);
            const auto facts = inspectImageFile(asPath(pathText(target)));
            ASSERT_TRUE(facts) << format << ' ' << name;
            EXPECT_EQ(facts->pages, 1) << format << ' ' << name;
        }
    }
}

TEST(ImageInspector, TellsABrokenTiffFromWhatIsNoPicture)
{
    const Scratch scratch;
    const QString pipe = scratch.path(QStringLiteral("pipe.tif"));
    ASSERT_EQ(::mkfifo(nativePath(pipe).constData(), 0600), 0); // opening it would wait for a writer
    for (const QString& path : {pipe, scratch.path(QStringLiteral("missing.tif")), scratch.path(), QString(),
                                scratch.write(QStringLiteral("empty.tif"), {}),
                                scratch.write(QStringLiteral("text.tif"), "not a picture")})
        EXPECT_FALSE(inspectImageFile(asPath(path))) << path.toStdString();
    const auto broken = inspectImageFile(
        asPath(scratch.write(QStringLiteral("header.tif"), QByteArray("II*\0\xFF\xFF\xFF\x7F", 8))));
    ASSERT_TRUE(broken);
    EXPECT_EQ(broken->pages, 0);
    EXPECT_EQ(broken->compression, 1);
}

} // namespace
} // namespace quillfern::raster
