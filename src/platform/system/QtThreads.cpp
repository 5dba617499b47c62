#include "platform/system/QtThreads.h"

#include "platform/system/Failure.h"

#include <QSemaphore>
#include <QThreadPool>
#include <memory>
#include <system_error>
#include <thread>
#include <vector>

namespace quillfern {

namespace {

/// So many threads at once, made in a way that reports a refusal: QThreadPool does not, and could not even be
/// deleted after one. Their stacks are kept for the threads that come next.
bool mayHaveThreads(int count)
{
    QSemaphore go;
    std::vector<std::thread> threads;
    bool all = true;
    try {
        for (int i = 0; i < count; ++i)
            threads.emplace_back([&go] { go.acquire(); });
    } catch (const std::system_error&) {
        all = false;
    }
    go.release(count);
    for (std::thread& thread : threads)
        thread.join();
    return all;
}

} // namespace

void startQtThreads()
{
    QThreadPool& pool = *QThreadPool::globalInstance();
    if (pool.expiryTimeout() < 0) return; // started before
    const int count = pool.maxThreadCount();
    if (!mayHaveThreads(count))
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The system allows no further thread."));
    pool.setExpiryTimeout(-1);
    const auto go = std::make_shared<QSemaphore>();
    for (int i = 0; i < count; ++i) // each waits, so that none does the work of another
        pool.start([go] { go->acquire(); });
    go->release(count);
}

} // namespace quillfern
