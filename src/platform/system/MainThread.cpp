#include "platform/system/MainThread.h"

#include <QCoreApplication>
#include <QThread>

namespace quillfern {

void EventLoopMainThread::postAndWait(const std::function<void()>& work)
{
    QCoreApplication* application = QCoreApplication::instance();
    if (QThread::currentThread() == application->thread()) {
        work();
        return;
    }
    QMetaObject::invokeMethod(application, work, Qt::BlockingQueuedConnection);
}

} // namespace quillfern
