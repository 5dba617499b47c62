#pragma once

#include "platform/system/FilePath.h"
#include "stamps/ImageStamp.h"

#include <QFutureWatcher>
#include <QObject>
#include <QString>

namespace quillfern {

/// Reads a picture file on another thread, so that the window can be used while a large picture is read. One
/// file at a time: after a new request, cancel() or destruction the result of the one before is dropped. Main
/// thread.
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
