#include "platform/pageimages/RenderProcess.h"

#include "platform/pageimages/PageImageCache.h"
#include "support/PdfBuilder.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <cmath>
#include <utime.h>

namespace quillfern::pageimages {
namespace {

QString renderer()
{
    return qEnvironmentVariable("QUILLFERN_BIN_DIR", QCoreApplication::applicationDirPath()) +
           u"/quillfern-render"_s;
}

/// 200 by 100 points, the left half red, on a page of twice that in its own units.
QByteArray halfRed(const QByteArray& entries = "/MediaBox[0 0 400 200]/UserUnit 0.5")
{
    return simplePdf({{"1 0 0 rg 0 0 200 200 re f", entries}, {"0 0 1 rg 0 0 400 200 re f", entries}});
}

bool isNear(QRgb a, QRgb b)
{
    return std::abs(qRed(a) - qRed(b)) < 4 && std::abs(qGreen(a) - qGreen(b)) < 4 &&
           std::abs(qBlue(a) - qBlue(b)) < 4;
}

TEST(RenderProcess, ShowsPagesAtTheSizeTheScreenNeeds)
{
    constexpr QRgb red = 0xFFFF0000;
    constexpr QRgb white = 0xFFFFFFFF;
    constexpr QRgb blue = 0xFF0000FF;
    const Rows<QSizeF, double, int, QSize, QRgb, QRgb> cases = {
        {{600, 850}, 1, 0, {200, 100}, red, white}, // never made larger
        {{600, 850}, 2, 0, {400, 200}, red, white}, // but crisp on a dense screen
        {{100, 850}, 1, 0, {100, 50}, red, white},  // made to fit
        {{100, 850}, 1.5, 1, {150, 75}, blue, blue},
    };
    const Scratch scratch;
    const QString path = scratch.write(u"half red.pdf"_s, halfRed());
    for (const auto& [box, density, index, pixels, left, right] : cases) {
        const auto page = RenderProcess(renderer()).page({asPath(path), index, box, density});
        ASSERT_TRUE(page);
        EXPECT_EQ(page->size, QSizeF(200, 100));
        EXPECT_EQ(page->image.size(), pixels);
        EXPECT_NEAR(page->image.deviceIndependentSize().width(), 200, 1);
        const int y = pixels.height() / 2;
        EXPECT_TRUE(isNear(page->image.pixel(pixels.width() / 4, y), left));
        EXPECT_TRUE(isNear(page->image.pixel(pixels.width() * 3 / 4, y), right));
    }
}

TEST(RenderProcess, TurnsPagesAsTheirReadersSeeThem)
{
    const Scratch scratch;
    const QString path = scratch.write(u"turned.pdf"_s, halfRed("/MediaBox[0 0 400 200]/Rotate 90"));
    const auto page = RenderProcess(renderer()).page({asPath(path), 0, {600, 850}, 1});
    ASSERT_TRUE(page);
    EXPECT_EQ(page->size, QSizeF(200, 400));
    EXPECT_TRUE(isNear(page->image.pixel(100, 100), 0xFFFF0000));
    EXPECT_TRUE(isNear(page->image.pixel(100, 300), 0xFFFFFFFF));
}

TEST(RenderProcess, ShowsRasterFiles)
{
    const Scratch scratch;
    QImage picture(300, 200, QImage::Format_RGB32);
    picture.fill(Qt::green);
    picture.setDotsPerMeterX(5906); // 150 dpi
    picture.setDotsPerMeterY(5906);
    const QString path = scratch.path(u"green.png"_s);
    ASSERT_TRUE(picture.save(path));
    const auto page = RenderProcess(renderer()).page({asPath(path), 0, {600, 850}, 1});
    ASSERT_TRUE(page);
    EXPECT_NEAR(page->size.width(), 144, 0.1);
    EXPECT_EQ(page->image.size(), QSize(144, 96));
    EXPECT_TRUE(isNear(page->image.pixel(70, 50), 0xFF00FF00));
}

/// A shading whose function takes seconds for every pixel row.
QByteArray spinningPdf()
{
    PdfBuilder pdf = onePage("/MediaBox[0 0 612 792]/Contents 4 0 R/Resources<</Shading<</S 5 0 R>>>>");
    pdf.addStream(QByteArray("/S sh ").repeated(1000));
    pdf.add("<</ShadingType 1/ColorSpace/DeviceRGB/Domain[0 612 0 792]/Function 6 0 R>>");
    pdf.addStream("{ " + QByteArray("2 copy mul sin exch cos add ").repeated(2000) + " pop pop 0 0 0 }",
                  "/FunctionType 4/Domain[0 612 0 792]/Range[0 1 0 1 0 1]");
    return pdf.build();
}

/// Forms that show forms ten times over, 24 levels deep: more marks than any memory holds.
QByteArray memoryEatingPdf()
{
    PdfBuilder pdf = onePage("/MediaBox[0 0 612 792]/Contents 4 0 R/Resources<</XObject<</X 5 0 R>>>>");
    pdf.addStream("/X Do");
    const QByteArray form = "/Type/XObject/Subtype/Form/BBox[0 0 612 792]";
    for (int next = 6; next < 29; ++next)
        pdf.addStream(QByteArray("/X Do ").repeated(10),
                      form + "/Resources<</XObject<</X " + PdfBuilder::ref(next) + ">>>>");
    pdf.addStream("0 0 9 9 re f", form);
    return pdf.build();
}

TEST(RenderProcess, HostileAndClosedFilesCostABoundedTimeAndGiveNone)
{
    const Scratch scratch;
    const QString open = scratch.write(u"open.pdf"_s, halfRed());
    const QString locked = scratch.path(u"locked.pdf"_s);
    runTool("qpdf --encrypt secret owner 256 --", {open, locked});
    ASSERT_TRUE(QFileInfo::exists(locked));
    const QString fifo = scratch.path(u"fifo.pdf"_s);
    runTool("mkfifo", {fifo});
    QFile huge(scratch.path(u"huge.pdf"_s));
    ASSERT_TRUE(huge.open(QIODevice::WriteOnly) && huge.resize(qint64{20} << 30));
    huge.close();

    // One that waits goes on until it is stopped.
    const Rows<QString, int, bool> cases = {
        {scratch.write(u"spin.pdf"_s, spinningPdf()), 0, true},
        {scratch.write(u"eat.pdf"_s, memoryEatingPdf()), 0, false},
        {fifo, 0, false},
        {huge.fileName(), 0, false},
        {locked, 0, false},
        {open, 2, false},
        {open, -1, false},
        {scratch.write(u"not.pdf"_s, "hello"), 0, false},
        {scratch.write(u"not.png"_s, "hello"), 0, false},
        {scratch.path(u"missing.pdf"_s), 0, false},
        {scratch.path(), 0, false},
        {QString(), 0, false},
    };
    const int limit = 1000;
    for (const auto& [path, page, waits] : cases) {
        RenderProcess process(renderer(), {limit});
        QElapsedTimer time;
        time.start();
        EXPECT_FALSE(process.page({asPath(path), page, {600, 850}, 1})) << path.toStdString();
        if (waits) {
            EXPECT_GE(time.elapsed(), limit) << path.toStdString() << " ended by itself";
        }
        // Ten times the limit: the check is that the process ends at all, not how fast.
        EXPECT_LT(time.elapsed(), 10 * limit) << path.toStdString();
    }
    EXPECT_TRUE(RenderProcess(renderer()).page({asPath(open), 0, {600, 850}, 1}))
        << "the open file is the wrong one";
}

TEST(RenderProcess, AnswersThatAreNoneAreRefused)
{
    const Scratch scratch;
    const QString path = scratch.write(u"a.pdf"_s, halfRed());
    const QString good = renderer();
    const std::vector<QByteArray> scripts = {
        "exit 0",
        "echo hello",
        "exec cat /dev/zero", // never ends
        "sleep 60",
        "kill -9 $$",
        "exit 3",
        good.toLocal8Bit() + " \"$@\" | head -c 1000", // cut short
        good.toLocal8Bit() + " \"$@\"; echo more",
        good.toLocal8Bit() + " \"$@\"; exit 1",
        good.toLocal8Bit() + " \"$1\" \"$2\" 77 \"$4\" \"$5\"", // another size than asked for
    };
    const PageImageRequest request{asPath(path), 0, {100, 100}, 1};
    for (const QByteArray& script : scripts) {
        const QString program = scratch.write(u"fake"_s, "#!/bin/sh\n" + script + "\n");
        QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        EXPECT_FALSE(RenderProcess(program, {1000}).page(request)) << script.constData();
    }
    EXPECT_FALSE(RenderProcess(scratch.path(u"none"_s)).page(request));
    EXPECT_TRUE(RenderProcess(good).page(request));
}

TEST(RenderProcess, OddRequestsAreDeclined)
{
    const Scratch scratch;
    const QString path = scratch.write(u"a.pdf"_s, halfRed());
    RenderProcess process(renderer());
    for (const PageImageRequest& request :
         {PageImageRequest{asPath(path), 0, {0, 100}, 1}, PageImageRequest{asPath(path), 0, {100, 100}, 0},
          PageImageRequest{asPath(path), 0, {100, 100}, -1}, PageImageRequest{asPath(path), 0, {1e9, 100}, 1},
          PageImageRequest{asPath(path), 0, {std::nan(""), 100}, 1},
          PageImageRequest{asPath(path), 0, {100, 100}, 1e300}})
        EXPECT_FALSE(process.page(request));
}

class CountedPages final : public PageImageSource
{
  public:
    std::optional<PageImage> page(const PageImageRequest& request) override
    {
        ++count;
        if (request.page == 9) return std::nullopt;
        QImage image(100, 100, QImage::Format_RGB32);
        image.fill(count);
        return PageImage{image, {100, 100}};
    }
    int count = 0;
};

TEST(PageImageCache, AsksAgainOnlyForWhatItDoesNotHave)
{
    const Scratch scratch;
    const QString path = scratch.write(u"a.pdf"_s, "one");
    const QString other = scratch.write(u"b.pdf"_s, "two");
    const QString link = scratch.path(u"link.pdf"_s);
    ASSERT_TRUE(QFile::link(path, link));
    CountedPages pages;
    PageImageCache cache(pages);
    const PageImageRequest first{asPath(path), 0, {600, 850}, 1};
    const Rows<const char*, PageImageRequest, int> steps = {
        {"new", first, 1},
        {"again", first, 1},
        {"by another name", {asPath(link), 0, {600, 850}, 1}, 1},
        {"another page", {asPath(path), 1, {600, 850}, 1}, 2},
        {"another size", {asPath(path), 0, {600, 851}, 1}, 3},
        {"another screen", {asPath(path), 0, {600, 850}, 2}, 4},
        {"another file", {asPath(other), 0, {600, 850}, 1}, 5},
        {"one that fails", {asPath(path), 9, {600, 850}, 1}, 6},
        {"fails again", {asPath(path), 9, {600, 850}, 1}, 6},
        {"the first once more", first, 6},
        {"no such file", {asPath(scratch.path(u"none"_s)), 0, {600, 850}, 1}, 6},
    };
    for (const auto& [what, request, countAfter] : steps) {
        static_cast<void>(cache.page(request));
        EXPECT_EQ(pages.count, countAfter) << what;
    }
    scratch.write(u"a.pdf"_s, "other bytes");
    static_cast<void>(cache.page(first));
    EXPECT_EQ(pages.count, 7) << "a changed file shows its old page";
    const utimbuf longAgo{1000, 1000};
    ASSERT_EQ(::utime(QFile::encodeName(path).constData(), &longAgo), 0);
    static_cast<void>(cache.page(first));
    EXPECT_EQ(pages.count, 8) << "a touched file shows its old page";
    static_cast<void>(cache.page(first));
    EXPECT_EQ(pages.count, 8);
}

TEST(PageImageCache, KeepsWithinItsMemory)
{
    const Scratch scratch;
    const QString path = scratch.write(u"a.pdf"_s, "one");
    CountedPages pages;
    PageImageCache cache(pages, 100'000); // room for two pictures of 40,000 bytes
    const auto show = [&](int page) { static_cast<void>(cache.page({asPath(path), page, {600, 850}, 1})); };
    show(1);
    show(2);
    show(1);
    show(3); // 2 was used longest ago
    EXPECT_EQ(pages.count, 3);
    show(1);
    EXPECT_EQ(pages.count, 3);
    show(2);
    EXPECT_EQ(pages.count, 4);
}

} // namespace
} // namespace quillfern::pageimages
