#pragma once

#include "platform/pageimages/PageImage.h"

#include <QObject>
#include <memory>

namespace quillfern::pageimages {

/// Has pages shown by another source on a thread of its own, so that a page that takes long never holds up
/// the window: page() waits for a moment only. Main thread.
class BackgroundPages final : public QObject, public PageImageSource
{
    Q_OBJECT

  public:
    /// `source` is used on the other thread only, and is owned.
    explicit BackgroundPages(std::unique_ptr<PageImageSource> source, int patienceMs = 40);
    /// Waits for the page in work.
    ~BackgroundPages() override;

    /// Nothing when there is no such page, or not yet: see isPending(). Only the last request that was not
    /// answered is followed up.
    [[nodiscard]] std::optional<PageImage> page(const PageImageRequest& request) override;

    /// True when the last page() came back because its time was up. ready() then follows.
    [[nodiscard]] bool isPending() const { return isPending_; }

  Q_SIGNALS:
    /// The page that was pending has been tried; the source remembers what came of it.
    void ready();

  private:
    class Worker;

    std::unique_ptr<Worker> worker_;
    int patienceMs_;
    bool isPending_ = false;
};

} // namespace quillfern::pageimages
