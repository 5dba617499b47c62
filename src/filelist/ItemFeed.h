#pragma once

#include "filelist/ItemPipeline.h"

#include <functional>

namespace quillfern {

/// Sends paths through an ItemPipeline and hands on what comes out of it a few items at a time, as often as a
/// person likes to see something happen. Used by one thread, on which both functions are called as well.
class ItemFeed
{
  public:
    using Wanted = std::function<bool()>;
    using Deliver = std::function<void(std::vector<FileItem>)>;

    /// For `pool`, `password` and `failure` see ItemPipeline. Once `wanted` is false, nothing more is begun.
    ItemFeed(QThreadPool& pool, const QString& password, const char* failure, Wanted wanted, Deliver deliver);

    /// Whether to continue. To be asked all the time: this is also where items find their way out.
    bool goOn();
    /// Waits for a place when too many files are in work.
    void add(const FilePath& path);
    /// Waits for the files that are still being counted, and delivers the last items.
    void finish();

  private:
    void wait();
    void collect();
    void deliver();

    ItemPipeline pipeline_;
    Wanted wanted_;
    Deliver deliver_;
    std::vector<FileItem> batch_;
    std::chrono::steady_clock::time_point lastDelivered_ = std::chrono::steady_clock::now();
};

} // namespace quillfern
