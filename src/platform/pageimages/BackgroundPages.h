#pragma once

#include "platform/pageimages/PageImage.h"

#include <QObject>
#include <memory>
#include <optional>

namespace quillfern::pageimages {

/// Gets pages from another source on a thread of its own, so that a page that takes long never blocks the
/// window: page() waits for at most `patienceMs`. Main thread.
class BackgroundPages final : public QObject, public PageImageSource
{
    Q_OBJECT

  public:
    /// `source` is used on the other thread only, and is owned.
    explicit BackgroundPages(std::unique_ptr<PageImageSource> source, int patienceMs = 40);
    /// Waits until the source has finished the page it is working on.
    ~BackgroundPages() override;

    /// Nothing when the source has no such page, or has not finished it yet: see isPending(). Of the requests
    /// that were not answered in time only the last leads to ready().
    [[nodiscard]] std::optional<PageImage> page(const PageImageRequest& request) override;

    /// True when the last page() returned because its time was up. ready() then follows.
    [[nodiscard]] bool isPending() const { return isPending_; }

  Q_SIGNALS:
    /// The source has finished the pending page, or failed; it keeps the result, so that page() can be called
    /// again.
    void ready();

  private:
    class Worker;

    std::unique_ptr<Worker> worker_;
    int patienceMs_;
    bool isPending_ = false;
};

} // namespace quillfern::pageimages
