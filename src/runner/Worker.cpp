#include "runner/Worker.h"

#include "platform/system/StartedThread.h"

#include <QEventLoop>
#include <QTimer>

namespace quillfern {

void runOnWorker(const std::function<void()>& work, const std::function<void()>& watch)
{
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, watch);
    timer.start(100);
    const auto worker = startedThread(work, [&](QThread& thread) {
        QObject::connect(&thread, &QThread::finished, &loop, &QEventLoop::quit);
    });
    loop.exec();
    worker->wait();
}

} // namespace quillfern
