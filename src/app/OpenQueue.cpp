#include "app/OpenQueue.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace quillfern {

OpenQueue::OpenQueue(QWidget& window, Load load) : load_(std::move(load))
{
    window.installEventFilter(this);
}

void OpenQueue::add(const QList<FilePath>& paths)
{
    waiting_.append(paths);
    retry();
}

void OpenQueue::retryLater()
{
    if (!waiting_.isEmpty())
        QMetaObject::invokeMethod(
            this, [this] { retry(); }, Qt::QueuedConnection);
}

void OpenQueue::retry()
{
    // A sheet may be about to load something itself, or to change the files that are selected.
    if (waiting_.isEmpty() || QApplication::activeModalWidget()) return;
    if (load_(waiting_)) waiting_.clear();
}

bool OpenQueue::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::WindowUnblocked) retryLater();
    return QObject::eventFilter(watched, event);
}

} // namespace quillfern
