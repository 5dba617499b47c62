// The order in which pages come out of several threads.

#include "platform/raster/PageFeed.h"

#include "platform/raster/RasterLimits.h"
#include "platform/raster/RasterWriter.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Failure.h"
#include "support/Tools.h"

#include <gtest/gtest.h>

namespace quillfern::raster {
namespace {

/// A document of white bilevel pages of these heights.
void writePages(const QString& path, const std::vector<int>& heights)
{
    store::AtomicFile file(asPath(path));
    RasterWriter writer(file);
    for (const int height : heights) {
        RasterPage page;
        page.isBilevel = true;
        page.isWhiteZero = true;
        page.image = QImage(10000, height, QImage::Format_Mono);
        page.image.setColorTable({0xFFFFFFFF, 0xFF000000});
        page.image.fill(0);
        writer.addPage(std::move(page), 4, QSizeF(72, 72));
    }
    writer.finish();
    file.commit();
}

TEST(PageFeedTest, PagesComeInOrderWhateverTheirSize)
{
    constexpr int large = 6800; // at a byte a pixel too much to be decoded ahead
    static_assert(std::int64_t{10000} * large > largestPageAhead);
    const std::vector<int> heights = {1, large, large + 1, 2, 3, 4, large + 2, 5, 6};
    const Scratch scratch;
    const QString path = scratch.path(QStringLiteral("pages.tif"));
    writePages(path, heights);
    const int count = static_cast<int>(heights.size());
    for (const auto& [first, last] :
         {std::pair{1, count}, {2, 3}, {4, count}, {count, count}, {3, 3}, {3, 2}}) {
        SCOPED_TRACE(testing::Message() << first << " to " << last);
        const auto reader = RasterReader::open(asPath(path));
        PageFeed feed(*reader, first, last);
        for (int page = first; page <= last; ++page)
            EXPECT_EQ(feed.next().value().image.height(), heights[static_cast<std::size_t>(page - 1)]);
        EXPECT_FALSE(feed.next());
    }
}

TEST(PageFeedTest, ADamagedPageFailsInItsTurn)
{
    const Scratch scratch;
    const QString path = scratch.path(QStringLiteral("pages.tif"));
    writePages(path, {8, 8, 8, 8});
    // The pages' data stand in front, one white row a bit.
    QByteArray bytes = readFile(path);
    const qsizetype pageBytes = 4; // 8 bits of rows, 24 of the end, rounded up to an even number
    bytes.replace(16 + 2 * pageBytes, pageBytes, QByteArray(pageBytes, '\0'));
    scratch.write(QStringLiteral("pages.tif"), bytes);
    const auto reader = RasterReader::open(asPath(path));
    PageFeed feed(*reader, 1, 4);
    EXPECT_TRUE(feed.next());
    EXPECT_TRUE(feed.next());
    EXPECT_THROW(static_cast<void>(feed.next()), Failure);
}

} // namespace
} // namespace quillfern::raster
