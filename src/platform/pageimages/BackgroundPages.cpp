#include "platform/pageimages/BackgroundPages.h"

#include <QThread>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace quillfern::pageimages {

/// Handles one request at a time; a newer request replaces one that has not begun.
class BackgroundPages::Worker final : public QThread
{
  public:
    Worker(BackgroundPages& owner, std::unique_ptr<PageImageSource> source)
        : owner_(owner), source_(std::move(source))
    {
        start();
    }
    ~Worker() override
    {
        {
            const std::lock_guard lock(mutex_);
            isLeaving_ = true;
        }
        changed_.notify_all();
        wait();
    }

    /// The answer, if it comes in time; `answered` is set to whether it did.
    std::optional<PageImage> ask(const PageImageRequest& request, int patienceMs, bool& answered)
    {
        std::unique_lock lock(mutex_);
        const std::uint64_t mine = ++asked_;
        next_ = request;
        isFollowedUp_ = false;
        changed_.notify_all();
        answered =
            changed_.wait_for(lock, std::chrono::milliseconds(patienceMs), [&] { return answered_ >= mine; });
        isFollowedUp_ = !answered;
        return answered ? std::move(answer_) : std::nullopt;
    }

  protected:
    void run() override
    {
        std::unique_lock lock(mutex_);
        for (;;) {
            changed_.wait(lock, [this] { return isLeaving_ || next_; });
            if (isLeaving_) return;
            const PageImageRequest request = *std::exchange(next_, std::nullopt);
            const std::uint64_t number = asked_;
            lock.unlock();
            std::optional<PageImage> page = source_->page(request);
            lock.lock();
            answer_ = std::move(page);
            answered_ = number;
            changed_.notify_all();
            if (isFollowedUp_ && number == asked_)
                QMetaObject::invokeMethod(&owner_, &BackgroundPages::ready, Qt::QueuedConnection);
        }
    }

  private:
    BackgroundPages& owner_;
    std::unique_ptr<PageImageSource> source_;
    std::mutex mutex_; ///< guards what follows
    std::condition_variable changed_;
    std::optional<PageImageRequest> next_;
    std::optional<PageImage> answer_;
    std::uint64_t asked_ = 0;
    std::uint64_t answered_ = 0;
    bool isFollowedUp_ = false; ///< ask() has returned without the answer, so ready() must be emitted
    bool isLeaving_ = false;
};

BackgroundPages::BackgroundPages(std::unique_ptr<PageImageSource> source, int patienceMs)
    : worker_(std::make_unique<Worker>(*this, std::move(source))), patienceMs_(patienceMs)
{
}

BackgroundPages::~BackgroundPages() = default;

std::optional<PageImage> BackgroundPages::page(const PageImageRequest& request)
{
    bool answered = false;
    auto page = worker_->ask(request, patienceMs_, answered);
    isPending_ = !answered;
    return page;
}

} // namespace quillfern::pageimages
