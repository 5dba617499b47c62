#pragma once

#include "platform/system/FilePath.h"

#include <QList>
#include <QObject>
#include <functional>

class QWidget;

namespace quillfern {

/// Keeps files and folders that are to be opened until the window is idle and no sheet lies over it.
/// Main thread.
class OpenQueue final : public QObject
{
  public:
    /// Begins to load; false when that is not possible now.
    using Load = std::function<bool(const QList<FilePath>&)>;

    /// Observes `window`, which outlives this, for the end of a sheet.
    OpenQueue(QWidget& window, Load load);

    /// Opens files and folders, at once when that is possible.
    void add(const QList<FilePath>& paths);
    /// Tries again when the event loop is reached.
    void retryLater();

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void retry();

    Load load_;
    QList<FilePath> waiting_;
};

} // namespace quillfern
