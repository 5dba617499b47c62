// Every kind of BMP file, made byte by byte, comes out with its pixels.

#include "batch/RasterProcessing.h"
#include "support/ImageBytes.h"

namespace quillfern {
namespace {

struct BmpKind
{
    const char* name;
    int bits = 24;
    quint32 compression = 0; ///< 1 and 2 run lengths, 3 and 6 bit fields
    quint32 headerSize = 40;
    bool isTopDown = false;
    std::vector<quint32> masks = {}; ///< of red, green, blue, opacity
    bool isOpaque = true;            ///< false where every pixel's opacity is written as half
};

/// The colours of a test's picture, and a spare one so that the first is not black.
const std::vector<QColor> colours = {{200, 100, 50}, Qt::white, Qt::red, Qt::blue, Qt::green, Qt::black};

class BmpBuilder
{
  public:
    BmpBuilder(const QImage& image, const BmpKind& kind) : image_(image), kind_(kind) {}

    QByteArray build()
    {
        const bool isOld = kind_.headerSize == 12;
        QByteArray palette;
        if (kind_.bits <= 8)
            for (int i = 0; i < 1 << kind_.bits; ++i) {
                const QColor c = colour(i);
                palette.append(static_cast<char>(c.blue())).append(static_cast<char>(c.green()));
                palette.append(static_cast<char>(c.red()));
                if (!isOld) palette.append('\0');
            }
        QByteArray header;
        putLittle<quint32>(header, kind_.headerSize);
        if (isOld) {
            putLittle<quint16>(header, static_cast<quint16>(image_.width()));
            putLittle<quint16>(header, static_cast<quint16>(image_.height()));
        } else {
            putLittle<qint32>(header, image_.width());
            putLittle<qint32>(header, kind_.isTopDown ? -image_.height() : image_.height());
        }
        putLittle<quint16>(header, 1);
        putLittle<quint16>(header, static_cast<quint16>(kind_.bits));
        if (!isOld) {
            putLittle<quint32>(header, kind_.compression);
            putLittle<quint32>(header, 0);
            putLittle<quint32>(header, 11811); // 300 dpi
            putLittle<quint32>(header, 5906);
            putLittle<quint32>(header, 0);
            putLittle<quint32>(header, 0);
        }
        header.resize(std::min(header.size(), static_cast<qsizetype>(kind_.headerSize)));
        for (const quint32 mask : kind_.masks)
            putLittle<quint32>(header, mask);
        header.append(QByteArray(
            std::max<qsizetype>(0, static_cast<qsizetype>(kind_.headerSize) - header.size()), '\0'));
        QByteArray bytes("BM");
        putLittle<quint32>(bytes, 0);
        putLittle<quint32>(bytes, 0);
        putLittle<quint32>(bytes, static_cast<quint32>(14 + header.size() + palette.size()));
        return bytes + header + palette + pixels();
    }

  private:
    [[nodiscard]] QColor colour(int index) const
    {
        if (kind_.bits == 1) return index == 0 ? Qt::white : Qt::black;
        return index < static_cast<int>(colours.size()) ? colours[static_cast<std::size_t>(index)] : Qt::gray;
    }

    [[nodiscard]] int indexAt(int x, int y) const
    {
        for (int i = 0; i < 1 << kind_.bits; ++i)
            if (colour(i).rgb() == image_.pixelColor(x, y).rgb()) return i;
        ADD_FAILURE() << "a colour that the palette lacks";
        return 0;
    }

    [[nodiscard]] QByteArray pixels() const
    {
        QByteArray bytes;
        for (int i = 0; i < image_.height(); ++i) {
            const int y = kind_.isTopDown ? i : image_.height() - 1 - i;
            bytes += kind_.compression == 1 || kind_.compression == 2 ? runs(y) : row(y);
        }
        return kind_.compression == 1 || kind_.compression == 2 ? bytes + QByteArray("\0\1", 2) : bytes;
    }

    /// A row as runs, as single pixels, or with its first pixels, which have the first colour, jumped over.
    [[nodiscard]] QByteArray runs(int y) const
    {
        QByteArray bytes;
        const bool isFour = kind_.compression == 2;
        const auto coded = [&](int index) { return static_cast<char>(isFour ? index << 4 | index : index); };
        int x = 0;
        if (y % 3 == 0) {
            while (indexAt(x, y) == 0)
                ++x;
            bytes += QByteArray("\0\2", 2) + static_cast<char>(x) + '\0';
        }
        if (y % 3 == 1) {
            bytes += QByteArray("\0\5", 2); // five pixels as they are
            QByteArray single;
            for (int i = 0; i < 5; ++i, ++x)
                if (!isFour)
                    single += coded(indexAt(x, y));
                else if (i % 2 == 0)
                    single += static_cast<char>(indexAt(x, y) << 4 | (i < 4 ? indexAt(x + 1, y) : 0));
            bytes += single;
            if (single.size() % 2 != 0) bytes += '\0';
        }
        while (x < image_.width()) {
            int count = 1;
            while (x + count < image_.width() && count < 255 && indexAt(x + count, y) == indexAt(x, y))
                ++count;
            bytes.append(static_cast<char>(count)).append(coded(indexAt(x, y)));
            x += count;
        }
        return bytes + QByteArray("\0\0", 2);
    }

    [[nodiscard]] QByteArray row(int y) const
    {
        QByteArray bytes;
        quint64 pending = 0;
        int filled = 0;
        for (int x = 0; x < image_.width(); ++x) {
            const QColor c = image_.pixelColor(x, y);
            if (kind_.bits <= 8) {
                pending = pending << kind_.bits | static_cast<quint64>(indexAt(x, y));
                filled += kind_.bits;
                if (filled == 8 || x == image_.width() - 1) {
                    bytes.append(static_cast<char>(pending << (8 - filled)));
                    filled = 0;
                }
            } else if (kind_.bits == 24) {
                bytes.append(static_cast<char>(c.blue())).append(static_cast<char>(c.green()));
                bytes.append(static_cast<char>(c.red()));
            } else {
                const quint32 pixel = masked(c);
                for (int i = 0; i < kind_.bits; i += 8)
                    bytes.append(static_cast<char>(pixel >> i));
            }
        }
        return bytes.append(QByteArray((4 - bytes.size() % 4) % 4, '\0'));
    }

    [[nodiscard]] quint32 masked(const QColor& c) const
    {
        std::vector<quint32> masks = kind_.masks;
        if (masks.empty())
            masks = kind_.bits == 16 ? std::vector<quint32>{0x7C00, 0x3E0, 0x1F}
                                     : std::vector<quint32>{0xFF0000, 0xFF00, 0xFF};
        const int values[] = {c.red(), c.green(), c.blue(), kind_.isOpaque ? 0 : 128};
        quint32 pixel = 0;
        for (std::size_t i = 0; i < masks.size(); ++i) {
            if (masks[i] == 0) continue;
            const int shift = std::countr_zero(masks[i]);
            const quint64 largest = masks[i] >> shift;
            pixel |= static_cast<quint32>(static_cast<quint64>(values[i]) * largest / 255) << shift;
        }
        return pixel;
    }

    const QImage& image_;
    const BmpKind& kind_;
};

class BmpInput : public RasterProcessing, public testing::WithParamInterface<BmpKind>
{
};

TEST_P(BmpInput, ComesOutAsItWas)
{
    const BmpKind& kind = GetParam();
    QImage picture = kind.bits == 1 ? blackAndWhitePicture(121, 87) : colourPicture(121, 87);
    if (kind.bits != 1)
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < 7; ++x)
                picture.setPixelColor(x, y, colours[0]);
    const QByteArray bytes = BmpBuilder(picture, kind).build();
    addStamp();
    const auto pages = readTiff(process(scratch.write(QStringLiteral("in/a.bmp"), bytes)));
    ASSERT_EQ(pages.size(), 1U);
    if (!kind.isOpaque)
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                QColor pixel = picture.pixelColor(x, y);
                pixel.setAlpha(128);
                picture.setPixelColor(x, y, pixel);
            }
    EXPECT_TRUE(showsSame(pages[0].image, picture, kind.bits == 16 ? 17 : 3));
    EXPECT_TRUE(hasStamp(pages[0].image));
    EXPECT_EQ(pages[0].bits, kind.bits == 1 ? 1 : 8);
    EXPECT_EQ(pages[0].samples, kind.bits == 1 ? 1 : kind.isOpaque ? 3 : 4);
    EXPECT_NEAR(pages[0].xResolution, kind.headerSize < 40 ? 72 : 300, 0.1);
    EXPECT_NEAR(pages[0].yResolution, kind.headerSize < 40 ? 72 : 150, 0.1);
    process(scratch.write(QStringLiteral("in/cut.bmp"), bytes.left(bytes.size() * 9 / 10)), false);
    EXPECT_TRUE(problem().contains(QStringLiteral("cut off"))) << problem().toStdString();
}

const std::vector<quint32> mask565 = {0xF800, 0x7E0, 0x1F};

INSTANTIATE_TEST_SUITE_P(
    , BmpInput,
    testing::Values(BmpKind{"Bits1", 1}, BmpKind{"Bits1TopDown", 1, 0, 40, true}, BmpKind{"Bits4", 4},
                    BmpKind{"Bits8", 8}, BmpKind{"Bits8TopDown", 8, 0, 40, true}, BmpKind{"RunLength8", 8, 1},
                    BmpKind{"RunLength8TopDown", 8, 1, 40, true}, BmpKind{"RunLength4", 4, 2},
                    BmpKind{"RunLength4TopDown", 4, 2, 40, true}, BmpKind{"Bits16", 16},
                    BmpKind{"Bits16TopDown", 16, 0, 40, true}, BmpKind{"Bits565", 16, 3, 40, false, mask565},
                    BmpKind{"Bits565Version4", 16, 3, 108, false, mask565},
                    BmpKind{"Bits444", 16, 3, 40, true, {0xF00, 0xF0, 0xF}}, BmpKind{"Bits24", 24},
                    BmpKind{"Bits24TopDown", 24, 0, 40, true}, BmpKind{"Bits24Version5", 24, 0, 124},
                    BmpKind{"Bits32", 32},
                    BmpKind{"Bits32Swapped", 32, 3, 40, false, {0xFF, 0xFF00, 0xFF0000}},
                    BmpKind{"Bits32Ten", 32, 3, 40, false, {0x3FF00000, 0xFFC00, 0x3FF}},
                    BmpKind{"EmptyOpacity", 32, 3, 56, false, {0xFF0000, 0xFF00, 0xFF, 0xFF000000}},
                    BmpKind{"Opacity", 32, 3, 108, false, {0xFF0000, 0xFF00, 0xFF, 0xFF000000}, false},
                    BmpKind{"AlphaFields", 32, 6, 40, true, {0xFF0000, 0xFF00, 0xFF, 0xFF000000}, false},
                    BmpKind{"Os2Bits8", 8, 0, 12}, BmpKind{"Os2Bits1", 1, 0, 12},
                    BmpKind{"Os2Bits24", 24, 0, 12}, BmpKind{"Os2Version2Short", 24, 0, 16},
                    BmpKind{"Os2Version2", 8, 1, 64}),
    [](const auto& kind) { return std::string(kind.param.name); });

} // namespace
} // namespace quillfern
