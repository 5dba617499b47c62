#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace quillfern {

/// Runs tasks on a few threads. Unlike QThreadPool the pool copes with a system that refuses a thread (a
/// limit on processes or on memory): the threads that there are do the work, and where there is none the
/// caller does. Any thread may call.
class WorkerPool
{
  public:
    /// Takes as many threads as there are cores, or as given, each when it is first needed.
    explicit WorkerPool(int mostThreads = static_cast<int>(std::thread::hardware_concurrency()));
    /// Drops the tasks that were not begun and waits for those that were.
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// Tasks begin in their order and must not throw.
    void start(std::function<void()> task);
    /// Drops the tasks that were not begun.
    void clear();
    /// Waits until no task is left, but at most so long; -1 waits however long that takes. True when none is
    /// left.
    [[nodiscard]] bool waitForDone(int milliseconds = -1);

  private:
    void work();

    const std::size_t mostThreads_;
    std::mutex mutex_;
    std::condition_variable taskCame_;
    std::condition_variable allDone_;
    std::deque<std::function<void()>> tasks_;
    std::size_t idle_ = 0;
    std::size_t inWork_ = 0;
    bool isStopping_ = false;
    std::vector<std::thread> threads_;
};

} // namespace quillfern
