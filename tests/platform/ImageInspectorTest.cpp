#include "platform/raster/ImageInspector.h"

#include "platform/system/NativePath.h"
#include "support/PdfBuilder.h"
#include "support/Tools.h"

#include <QFile>
#include <QImage>
#include <QtEndian>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillfern {
namespace {

/// What this process has read so far, as the system counts it.
qint64 bytesRead()
{
    QFile io(QStringLiteral("/proc/self/io"));
    EXPECT_TRUE(io.open(QIODevice::ReadOnly));
    for (const QByteArray& line : io.readAll().split('\n'))
        if (line.startsWith("rchar: ")) return line.mid(7).toLongLong();
    ADD_FAILURE() << "the system does not count";
    return 0;
}

/// A PDF file of one page with a hole of `gap` bytes before its cross-reference table.
QString pdfWithHole(const Scratch& scratch, qint64 gap)
{
    PdfBuilder builder;
    builder.add("<</Type/Catalog/Pages 2 0 R>>");
    builder.add("<</Type/Pages/Count 1/Kids[3 0 R]>>");
    builder.add("<</Type/Page/Parent 2 0 R/MediaBox[0 0 99 99]>>");
    const QByteArray whole = builder.build();
    const qsizetype table = whole.indexOf("\nxref") + 1;
    QFile file(scratch.write(QStringLiteral("hole.pdf"), whole.left(table)));
    EXPECT_TRUE(file.open(QIODevice::ReadWrite));
    file.seek(table + gap);
    const QByteArray rest = whole.mid(table, whole.indexOf("startxref") - table);
    file.write(rest + "startxref\n" + QByteArray::number(table + gap) + "\n%%EOF\n");
    return file.fileName();
}

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

TEST(ImageInspector, CountsPagesWithoutReadingTheFile)
{
    const Scratch scratch;
    constexpr qint64 large = 600LL << 20;
    const std::vector<std::tuple<QString, int, int>> cases = {
        {pdfWithHole(scratch, large), 1, 1},
        {tiffWithHoles(scratch, 12, 50U << 20), 12, 5},
    };
    for (const auto& [path, pages, compression] : cases) {
        ASSERT_GE(QFile(path).size(), large);
        const qint64 before = bytesRead();
        const ImageFacts facts = inspectImageFile(asPath(path));
        const qint64 read = bytesRead() - before;
        EXPECT_EQ(facts.pages, pages) << path.toStdString();
        EXPECT_EQ(facts.compression, compression) << path.toStdString();
        EXPECT_LT(read, 4 << 20) << path.toStdString();
    }
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
            EXPECT_EQ(inspectImageFile(asPath(pathText(target))).pages, 1) << format << ' ' << name;
        }
    }
    const QString pdf = scratch.write(QStringLiteral("three.png"), numberedPdf(3));
    EXPECT_EQ(inspectImageFile(asPath(pdf)).pages, 3);
}

TEST(ImageInspector, WhatIsNoDocumentHasNoPages)
{
    const Scratch scratch;
    const QString pipe = scratch.path(QStringLiteral("pipe.pdf"));
    ASSERT_EQ(::mkfifo(nativePath(pipe).constData(), 0600), 0); // opening it would wait for a writer
    for (const QString& path :
         {pipe, scratch.path(QStringLiteral("missing.pdf")), scratch.path(), QString(),
          scratch.write(QStringLiteral("empty.tif"), {}),
          scratch.write(QStringLiteral("text.pdf"), "not a PDF"),
          scratch.write(QStringLiteral("header.tif"), QByteArray("II*\0\xFF\xFF\xFF\x7F", 8)),
          scratch.write(QStringLiteral("cut.pdf"), numberedPdf(3).left(30))}) {
        EXPECT_EQ(inspectImageFile(asPath(path)).pages, 0) << path.toStdString();
        EXPECT_EQ(inspectImageFile(asPath(path)).compression, 1) << path.toStdString();
    }
}

} // namespace
} // namespace quillfern
