#include "filelist/PageCount.h"

#include "platform/system/NativePath.h"
#include "support/PdfBuilder.h"

#include <sys/stat.h>

namespace quillfern {
namespace {

/// A PDF file of one page with a hole of `gap` bytes before its cross-reference table.
QString pdfWithHole(const Scratch& scratch, qint64 gap)
{
    PdfBuilder builder = onePage("/MediaBox[0 0 99 99]");
    const QByteArray whole = builder.build();
    const qsizetype table = whole.indexOf("\nxref") + 1;
    QFile file(scratch.write(u"hole.pdf"_s, whole.left(table)));
    EXPECT_TRUE(file.open(QIODevice::ReadWrite));
    file.seek(table + gap);
    const QByteArray rest = whole.mid(table, whole.indexOf("startxref") - table);
    file.write(rest + "startxref\n" + QByteArray::number(table + gap) + "\n%%EOF\n");
    return file.fileName();
}

TEST(PageCountTest, CountsAPdfWithoutReadingItWhole)
{
    const Scratch scratch;
    constexpr qint64 large = 600LL << 20;
    const QString path = pdfWithHole(scratch, large);
    ASSERT_GE(QFile(path).size(), large);
    const qint64 before = bytesRead();
    EXPECT_EQ(countPages(asPath(path)).pages, 1);
    EXPECT_LT(bytesRead() - before, 4 << 20);
}

TEST(PageCountTest, TheContentDecidesUnderAnyName)
{
    const Scratch scratch;
    EXPECT_EQ(countPages(asPath(scratch.write(u"three.png"_s, numberedPdf(3)))).pages, 3);
    EXPECT_EQ(countPages(asPath(scratch.write(u"late.tif"_s, QByteArray(3000, ' ') + numberedPdf(2)))).pages,
              2);
    const QString picture = scratch.path(u"picture.pdf"_s);
    for (const char* format : {"png", "bmp", "jpg"}) {
        ASSERT_TRUE(QImage(20, 10, QImage::Format_RGB32).save(picture, format));
        EXPECT_EQ(countPages(asPath(picture)).pages, 1) << format;
    }
    const QString samples = qEnvironmentVariable("QUILLFERN_SOURCE_DIR") + u"/samples/"_s;
    for (const auto& [sample, pages, compression] :
         {std::tuple("letter-fax.tif", 3, 4), {"photos.tif", 2, 5}, {"animation.gif", 3, 1}}) {
        const QByteArray bytes = readFile(samples + QString::fromLatin1(sample));
        const QString named = scratch.write(u"named.pdf"_s, bytes);
        EXPECT_EQ(countPages(asPath(named)).pages, pages) << sample;
        EXPECT_EQ(countPages(asPath(named)).compression, compression) << sample;
    }
}

TEST(PageCountTest, WhatIsNoDocumentHasNoPages)
{
    const Scratch scratch;
    const QString pipe = scratch.path(u"pipe.pdf"_s);
    ASSERT_EQ(::mkfifo(nativePath(pipe).constData(), 0600), 0); // opening it would wait for a writer
    for (const QString& path : {pipe, scratch.path(u"missing.pdf"_s), scratch.path(), QString(),
                                scratch.write(u"empty.tif"_s, {}), scratch.write(u"text.pdf"_s, "not a PDF"),
                                scratch.write(u"header.tif"_s, QByteArray("II*\0\xFF\xFF\xFF\x7F", 8)),
                                scratch.write(u"cut.pdf"_s, numberedPdf(3).left(30))}) {
        EXPECT_EQ(countPages(asPath(path)).pages, 0) << path.toStdString();
        EXPECT_EQ(countPages(asPath(path)).compression, 1) << path.toStdString();
    }
}

} // namespace
} // namespace quillfern
