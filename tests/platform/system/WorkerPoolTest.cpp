#include "platform/system/WorkerPool.h"

#include "platform/system/StartedThread.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>

namespace quillfern {
namespace {

TEST(WorkerPoolTest, RunsEveryTaskAndWaitsForTheLast)
{
    std::atomic<int> done = 0;
    {
        WorkerPool pool(3);
        EXPECT_TRUE(pool.waitForDone());
        for (int i = 0; i < 500; ++i)
            pool.start([&] { ++done; });
        EXPECT_TRUE(pool.waitForDone());
        EXPECT_EQ(done, 500);
        std::promise<void> gate;
        pool.start([&] { gate.get_future().wait(); });
        EXPECT_FALSE(pool.waitForDone(20));
        gate.set_value();
        EXPECT_TRUE(pool.waitForDone(60'000));
    }
    {
        WorkerPool pool(1);
        std::promise<void> gate;
        pool.start([future = gate.get_future().share()] { future.wait(); });
        pool.start([&] { ++done; });
        pool.clear();
        gate.set_value();
        EXPECT_TRUE(pool.waitForDone());
    }
    EXPECT_EQ(done, 500) << "a task that was dropped does not run";
}

/// While it lives the system refuses every thread, because there is no room for a stack.
class NoThreads
{
  public:
    NoThreads()
    {
        // Larger than the stacks that are kept of earlier threads.
        pthread_attr_t attributes;
        ::pthread_attr_init(&attributes);
        ::pthread_attr_setstacksize(&attributes, std::size_t{1} << 30);
        ::pthread_setattr_default_np(&attributes);
        EXPECT_EQ(::getrlimit(RLIMIT_AS, &before_), 0);
        const rlimit none = {1 << 20, before_.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_AS, &none), 0);
    }
    ~NoThreads()
    {
        ::setrlimit(RLIMIT_AS, &before_);
        pthread_attr_t attributes;
        ::pthread_attr_init(&attributes);
        ::pthread_attr_setstacksize(&attributes, std::size_t{8} << 20);
        ::pthread_setattr_default_np(&attributes);
    }

  private:
    rlimit before_ = {};
};

TEST(WorkerPoolTest, WithoutAnyThreadTheCallerWorks)
{
    WorkerPool pool(2);
    std::thread::id ran;
    const std::function<void()> task = [&] { ran = std::this_thread::get_id(); };
    {
        const NoThreads limit;
        pool.start(task);
    }
    EXPECT_EQ(ran, std::this_thread::get_id());
    EXPECT_TRUE(pool.waitForDone());
    pool.start(task);
    EXPECT_TRUE(pool.waitForDone());
    EXPECT_NE(ran, std::this_thread::get_id()) << "later there is a thread again";
}

TEST(StartedThreadTest, IsAFailureWhenTheSystemRefuses)
{
    std::atomic<bool> ran = false;
    startedThread([&] { ran = true; })->wait();
    EXPECT_TRUE(ran);
    const NoThreads limit;
    EXPECT_THROW((void)startedThread([] {}), Failure);
}

} // namespace
} // namespace quillfern
