#include "platform/pageimages/BackgroundPages.h"

#include "support/Cases.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QSemaphore>

namespace quillfern::pageimages {
namespace {

/// Returns pages whose width is the page number, counted from 1. Those of the file "slow" wait for `gate`;
/// the file "none" has no pages.
class GatedPages final : public PageImageSource
{
  public:
    GatedPages(QSemaphore& gate, QSemaphore& begun) : gate_(gate), begun_(begun) {}

    std::optional<PageImage> page(const PageImageRequest& request) override
    {
        begun_.release();
        if (request.path.name() == "slow"_L1) gate_.acquire();
        if (request.path.name() == "none"_L1) return std::nullopt;
        return PageImage{{}, QSizeF(request.page + 1, 1)};
    }

  private:
    QSemaphore& gate_;
    QSemaphore& begun_;
};

PageImageRequest request(const char* path, int page)
{
    return {FilePath::fromBytes(path), page, {10, 10}, 1};
}

TEST(BackgroundPages, AnswerAtOnceWhenTheyCanAndLaterWhenTheyCannot)
{
    QSemaphore gate;
    QSemaphore begun;
    BackgroundPages pages(std::make_unique<GatedPages>(gate, begun), 5000);
    int readyCount = 0;
    QObject::connect(&pages, &BackgroundPages::ready, [&] { ++readyCount; });

    const auto quick = pages.page(request("quick", 2));
    ASSERT_TRUE(quick.has_value());
    EXPECT_EQ(quick->size.width(), 3);
    EXPECT_FALSE(pages.page(request("none", 0)).has_value());
    EXPECT_FALSE(pages.isPending()) << "a page that cannot be shown is an answer";

    BackgroundPages impatient(std::make_unique<GatedPages>(gate, begun), 1);
    QObject::connect(&impatient, &BackgroundPages::ready, [&] { ++readyCount; });
    begun.acquire(begun.available());
    EXPECT_FALSE(impatient.page(request("slow", 0)).has_value());
    EXPECT_TRUE(impatient.isPending());
    begun.acquire(); // the source is working on it
    EXPECT_FALSE(impatient.page(request("slow", 1)).has_value());
    EXPECT_FALSE(impatient.page(request("slow", 2)).has_value()) << "takes the place of the one before";
    gate.release(2);
    const QDeadlineTimer deadline(10'000);
    while (readyCount == 0 && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    EXPECT_EQ(readyCount, 1) << "for the last one only";
    EXPECT_EQ(gate.available(), 0) << "the one in between was passed over";
}

TEST(BackgroundPages, LeavesWithAPageInWork)
{
    QSemaphore gate;
    QSemaphore begun;
    auto pages = std::make_unique<BackgroundPages>(std::make_unique<GatedPages>(gate, begun), 1);
    EXPECT_FALSE(pages->page(request("slow", 0)).has_value());
    gate.release();
    pages.reset();
    QCoreApplication::processEvents(); // a ready() on its way must not find a page source that is gone
}

} // namespace
} // namespace quillfern::pageimages
