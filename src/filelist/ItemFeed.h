#pragma once

#include "filelist/FileItem.h"
#include "filelist/ItemPipeline.h"
#include "platform/system/FilePath.h"
#include "platform/system/WorkerPool.h"

#include <QString>
#include <chrono>
#include <functional>
#include <vector>

namespace quillfern {

/// Sends paths through an ItemPipeline and delivers the resulting items a few at a time, often enough for a
/// person to see the list grow. Used by one thread, on which `wanted` and `deliver` are called as well.
class ItemFeed
{
  public:
    using Wanted = std::function<bool()>;
    using Deliver = std::function<void(std::vector<FileItem>)>;

    /// For `pool`, `password`, `failure` and `known` see ItemPipeline. Once `wanted` returns false, no
    /// further file is begun.
    ItemFeed(WorkerPool& pool, const QString& password, const char* failure, Wanted wanted, Deliver deliver,
             std::shared_ptr<const KnownCounts> known = {});

    /// Whether to continue. To be called often, because this call also delivers the items that are ready.
    bool goOn();
    /// Waits while too many files are in work.
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
