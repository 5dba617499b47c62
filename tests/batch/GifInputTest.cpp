// Frames of GIFs, as viewers show them one after the other.

#include "batch/RasterProcessing.h"
#include "support/ImageBytes.h"

namespace quillfern {
namespace {

class GifInput : public RasterProcessing
{
  protected:
    static constexpr QSize screen{90, 70};
    static constexpr QRect whole{0, 0, 90, 70};
    static constexpr QRect part{30, 20, 40, 21};

    static QList<QRgb> palette()
    {
        QList<QRgb> colours;
        for (int i = 0; i < 256; ++i)
            colours.append(qRgb(i, 255 - i, 128));
        return colours;
    }

    /// Enough different pixels to fill the table of strings, where the frame is noisy.
    static GifFrame frame(const QRect& rect, int seed, bool isNoisy = false)
    {
        GifFrame made{rect, {}};
        for (int y = 0; y < rect.height(); ++y)
            for (int x = 0; x < rect.width(); ++x)
                made.pixels += static_cast<char>(isNoisy ? (x * x * 7 + y * y * 13 + x * y + seed) % 251
                                                         : (x + y + seed) % 256);
        return made;
    }

    /// The pages that the frames make.
    static std::vector<QImage> shown(const std::vector<GifFrame>& frames)
    {
        std::vector<QImage> pages;
        QImage canvas(screen, QImage::Format_RGBA8888);
        canvas.fill(Qt::transparent);
        for (const GifFrame& each : frames) {
            const QImage before = canvas;
            for (int y = 0; y < each.rect.height(); ++y)
                for (int x = 0; x < each.rect.width(); ++x) {
                    const QPoint place = each.rect.topLeft() + QPoint(x, y);
                    const int index = static_cast<uchar>(each.pixels[y * each.rect.width() + x]);
                    if (canvas.rect().contains(place) && index != each.transparent)
                        canvas.setPixelColor(place, palette()[index]);
                }
            pages.push_back(canvas);
            if (each.disposal == 3) canvas = before;
            for (int y = 0; each.disposal == 2 && y < each.rect.height(); ++y)
                for (int x = 0; x < each.rect.width(); ++x)
                    canvas.setPixelColor(each.rect.topLeft() + QPoint(x, y), Qt::transparent);
        }
        return pages;
    }

    QString write(const QByteArray& bytes) { return scratch.write(QStringLiteral("in/a.gif"), bytes); }
};

TEST_F(GifInput, FramesAreCombined)
{
    const auto with = [](GifFrame made, int disposal, int transparent = -1, bool isInterlaced = false) {
        made.disposal = disposal;
        made.transparent = transparent;
        made.isInterlaced = isInterlaced;
        return made;
    };
    const struct
    {
        const char* name;
        int samples; ///< of the pages
        std::vector<GifFrame> frames;
    } cases[] = {
        {"one noisy frame", 4, {with(frame(whole, 0, true), 0, 252)}},
        {"frames that cover the screen", 3, {frame(whole, 0), frame(whole, 90)}},
        {"frames that keep the others", 3, {frame(whole, 0), with(frame(part, 7), 1), frame(whole, 4)}},
        {"interlaced", 3, {with(frame(whole, 0), 0, -1, true), with(frame(part, 9), 0, -1, true)}},
        {"transparent places", 3, {frame(whole, 0), with(frame(part, 60), 0, 75)}},
        {"a transparent first frame", 4, {with(frame(whole, 0), 0, 30), frame(part, 60)}},
        {"a first frame smaller than the screen", 4, {frame(part, 0), frame(part.translated(5, -9), 60)}},
        {"cleared", 4, {frame(whole, 0), with(frame(part, 60), 2), frame(QRect(0, 0, 9, 9), 3)}},
        {"restored", 3, {frame(whole, 0), with(frame(part, 60), 3), frame(QRect(0, 0, 9, 9), 3)}},
        {"beyond the screen", 3, {frame(whole, 0), frame(part.translated(40, 40), 60)}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const QString source = write(gifFile(screen, palette(), c.frames));
        EXPECT_EQ(raster::inspectImageFile(asPath(source))->pages, static_cast<int>(c.frames.size()));
        const auto expected = shown(c.frames);
        const auto pages = readTiff(process(source));
        ASSERT_EQ(pages.size(), expected.size());
        for (std::size_t i = 0; i < pages.size(); ++i) {
            EXPECT_EQ(pages[i].samples, c.samples);
            EXPECT_TRUE(showsSame(pages[i].image, expected[i], c.samples == 4 ? 0 : 5)) << "page " << i + 1;
        }
    }
}

TEST_F(GifInput, OnlyAMissingPixelIsDamage)
{
    const std::vector<GifFrame> frames = {frame(whole, 0), frame(whole, 60, true)};
    const QByteArray bytes = gifFile(screen, palette(), frames);
    QByteArray padded = bytes;
    padded.insert(padded.size() - 1, QByteArray(2, '\0')); // empty blocks behind the last frame
    for (const QByteArray& good : {bytes.chopped(1), bytes.chopped(2), padded, bytes + "more"}) {
        const auto pages = readTiff(process(write(good)));
        ASSERT_EQ(pages.size(), 2U);
        EXPECT_TRUE(showsSame(pages[1].image, shown(frames)[1], 8));
    }
    const qsizetype second = bytes.lastIndexOf(QByteArray("!\xF9", 2));
    for (const qsizetype length : {bytes.size() - 10, second + 3, second + 8 + 5, second - 10})
        process(write(bytes.left(length)), false);
}

} // namespace
} // namespace quillfern
