#include "platform/system/WorkerPool.h"

#include <algorithm>
#include <chrono>

namespace quillfern {

WorkerPool::WorkerPool(int mostThreads) : mostThreads_(static_cast<std::size_t>(std::max(1, mostThreads)))
{
    threads_.reserve(mostThreads_);
}

WorkerPool::~WorkerPool()
{
    {
        const std::lock_guard lock(mutex_);
        isStopping_ = true;
        tasks_.clear();
    }
    taskCame_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
}

void WorkerPool::start(std::function<void()> task)
{
    {
        const std::lock_guard lock(mutex_);
        if (idle_ <= tasks_.size() && threads_.size() < mostThreads_) {
            try {
                threads_.emplace_back([this] { work(); });
            } catch (const std::exception&) {
                // The next task tries again.
            }
        }
        if (!threads_.empty()) {
            tasks_.push_back(std::move(task));
            taskCame_.notify_one();
            return;
        }
    }
    task();
}

void WorkerPool::clear()
{
    const std::lock_guard lock(mutex_);
    tasks_.clear();
    if (inWork_ == 0) allDone_.notify_all();
}

bool WorkerPool::waitForDone(int milliseconds)
{
    std::unique_lock lock(mutex_);
    const auto isDone = [this] { return tasks_.empty() && inWork_ == 0; };
    if (milliseconds >= 0) return allDone_.wait_for(lock, std::chrono::milliseconds(milliseconds), isDone);
    allDone_.wait(lock, isDone);
    return true;
}

void WorkerPool::work()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        ++idle_;
        taskCame_.wait(lock, [this] { return isStopping_ || !tasks_.empty(); });
        --idle_;
        if (isStopping_) return;
        {
            const std::function<void()> task = std::move(tasks_.front());
            tasks_.pop_front();
            ++inWork_;
            lock.unlock();
            task();
        } // what the task held is gone before anybody hears of its end
        lock.lock();
        --inWork_;
        if (tasks_.empty() && inWork_ == 0) allDone_.notify_all();
    }
}

} // namespace quillfern
