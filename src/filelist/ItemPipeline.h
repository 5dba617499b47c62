#pragma once

#include "filelist/FileItem.h"
#include "filelist/KnownCounts.h"
#include "platform/system/FilePath.h"
#include "platform/system/WorkerPool.h"

#include <QString>
#include <chrono>
#include <cstddef>
#include <memory>
#include <vector>

namespace quillfern {

/// Makes items of paths on the threads of a pool, which means reading each file's page count, and returns
/// them in the order of the paths. Used by one thread. The destructor does not wait: files not yet begun are
/// dropped, and the results of files in work are ignored.
class ItemPipeline
{
  public:
    /// `password` is every new item's. `failure` is the pattern of the line for the system log about a file
    /// that fails, a literal. The pool is not owned and outlives the pipeline. Files of `known` are not read.
    ItemPipeline(WorkerPool& pool, QString password, const char* failure,
                 std::shared_ptr<const KnownCounts> known = {});
    ~ItemPipeline();
    ItemPipeline(const ItemPipeline&) = delete;
    ItemPipeline& operator=(const ItemPipeline&) = delete;

    void add(const FilePath& path);
    /// The number of paths that were added and whose items were not taken yet.
    [[nodiscard]] std::size_t pending() const;
    /// Waits until the next item in order is ready, but at most so long.
    void waitForNext(std::chrono::milliseconds atMost) const;
    /// The items that are ready, up to the first one that is not. An empty path gives no item.
    [[nodiscard]] std::vector<FileItem> takeReady();

  private:
    struct State;
    WorkerPool& pool_;
    QString password_;
    const char* failure_;
    std::shared_ptr<const KnownCounts> known_;
    std::shared_ptr<State> state_; ///< shared with the tasks in the pool
};

} // namespace quillfern
