#pragma once

#include "platform/system/FilePath.h"

#include <QObject>
#include <functional>

class QWidget;

namespace quillfern {

/// Keeps what is to be opened while the window is busy, or has a sheet over it, until neither is the case.
/// Main thread.
class OpenQueue final : public QObject
{
  public:
    /// Begins to load; false when that is not possible now.
    using Load = std::function<bool(const QList<FilePath>&)>;

    /// Looks out for the end of a sheet by itself. `window` outlives this.
    OpenQueue(QWidget& window, Load load);

    /// Files and folders, at once when that is possible.
    void add(const QList<FilePath>& paths);
    /// Tries again, after what is going on now.
    void retryLater();

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void retry();

    Load load_;
    QList<FilePath> waiting_;
};

} // namespace quillfern
