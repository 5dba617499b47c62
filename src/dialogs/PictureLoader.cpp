#include "dialogs/PictureLoader.h"

#include "platform/system/Failure.h"
#include "platform/system/QtThreads.h"

#include <QPromise>
#include <QThreadPool>
#include <memory>
#include <optional>
#include <tuple>

namespace quillfern {

void PictureLoader::load(const FilePath& path)
{
    cancel();
    try {
        startQtThreads(); // the pool would wait for ever for a thread that the system refuses
    } catch (...) {
        Q_EMIT failed(reasonOfCurrentException());
        return;
    }
    watcher_ = new QFutureWatcher<LoadedPicture>(this);
    connect(watcher_, &QFutureWatcher<LoadedPicture>::finished, this, &PictureLoader::finish);
    const auto promise = std::make_shared<QPromise<LoadedPicture>>(); // a task has to be copyable
    promise->start();
    watcher_->setFuture(promise->future());
    QThreadPool::globalInstance()->start([promise, path] {
        try {
            LoadedPicture loaded = LoadedPicture::readFor(path);
            // The smaller sizes are made here as well, so that the first drawing need not make them.
            std::ignore = loaded.picture.imageFor(QSizeF(1, 1));
            promise->addResult(std::move(loaded));
        } catch (...) {
            promise->setException(std::current_exception());
        }
        promise->finish();
    });
}

void PictureLoader::cancel()
{
    if (!watcher_) return;
    watcher_->disconnect(this);
    watcher_->deleteLater();
    watcher_ = nullptr;
}

void PictureLoader::finish()
{
    auto future = watcher_->future();
    cancel();
    std::optional<LoadedPicture> picture;
    QString reason;
    try {
        picture.emplace(future.takeResult());
    } catch (...) {
        reason = reasonOfCurrentException();
    }
    // A receiver of the signal may delete this object, so no member may be used after it.
    if (picture)
        Q_EMIT loaded(*picture);
    else
        Q_EMIT failed(reason);
}

} // namespace quillfern
