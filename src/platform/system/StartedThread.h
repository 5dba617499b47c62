#pragma once

#include "platform/system/Failure.h"

#include <QThread>
#include <functional>
#include <memory>

namespace quillfern {

/// A thread that runs `work`. Throws Failure when the system refuses it, which QThread::start() does not
/// report: its `finished` would never come. `connect` gets the thread before it starts.
[[nodiscard]] inline std::unique_ptr<QThread> startedThread(std::function<void()> work,
                                                            const std::function<void(QThread&)>& connect = {})
{
    std::unique_ptr<QThread> thread(QThread::create(std::move(work)));
    if (connect) connect(*thread);
    thread->start();
    if (!thread->isRunning() && !thread->isFinished())
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The system allows no further thread."));
    return thread;
}

} // namespace quillfern
