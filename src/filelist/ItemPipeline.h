#pragma once

#include "filelist/FileItem.h"

#include <QThreadPool>
#include <chrono>
#include <memory>
#include <vector>

namespace quillfern {

/// Makes items of paths, which means reading each file's page count, on the threads of a pool, and gives them
/// back in the order in which the paths came. Used by one thread. Leaving waits for nobody: files not yet
/// begun are dropped, and what is in work ends unheard.
class ItemPipeline
{
  public:
    /// `password` is every new item's. `failure` is the pattern of the line for the system log about a file
    /// that fails, a literal. The pool is not owned and outlives the pipeline.
    ItemPipeline(QThreadPool& pool, QString password, const char* failure);
    ~ItemPipeline();
    ItemPipeline(const ItemPipeline&) = delete;
    ItemPipeline& operator=(const ItemPipeline&) = delete;

    void add(const FilePath& path);
    /// Paths added and items not yet taken.
    [[nodiscard]] std::size_t pending() const;
    /// Waits until the next item in order is ready, or for so long.
    void waitForNext(std::chrono::milliseconds atMost) const;
    /// The items that are ready and have none before them that is not. An empty path gives none.
    [[nodiscard]] std::vector<FileItem> takeReady();

  private:
    struct State;
    QThreadPool& pool_;
    QString password_;
    const char* failure_;
    std::shared_ptr<State> state_; ///< shared with the tasks in the pool
};

} // namespace quillfern
