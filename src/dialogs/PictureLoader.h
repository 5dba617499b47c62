#pragma once

#include "stamps/ImageStamp.h"

#include <QFutureWatcher>
#include <QObject>

namespace quillfern {

/// Reads a picture file on another thread, so that a picture of any size leaves its window live. One file at
/// a time: a new request, cancel() and destruction give up the one before, which ends unheard. Main thread.
class PictureLoader final : public QObject
{
    Q_OBJECT

  public:
    using QObject::QObject;

    void load(const FilePath& path);
    void cancel();
    [[nodiscard]] bool isLoading() const { return watcher_ != nullptr; }

  Q_SIGNALS:
    void loaded(const quillfern::LoadedPicture& picture);
    void failed(const QString& reason);

  private:
    void finish();

    QFutureWatcher<LoadedPicture>* watcher_ = nullptr; ///< of the request under way; a child
};

} // namespace quillfern
