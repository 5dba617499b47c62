#include "runner/Worker.h"

#include <QEventLoop>
#include <QThread>
#include <QTimer>
#include <memory>

namespace quillfern {

void runOnWorker(const std::function<void()>& work, const std::function<void()>& watch)
{
    QEventLoop loop;
    const std::unique_ptr<QThread> worker(QThread::create(work));
    QObject::connect(worker.get(), &QThread::finished, &loop, &QEventLoop::quit);
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, watch);
    timer.start(100);
    worker->start();
    loop.exec();
    worker->wait();
}

} // namespace quillfern
