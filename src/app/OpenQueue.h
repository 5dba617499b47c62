#pragma once

#include <QObject>
#include <QStringList>
#include <QUrl>
#include <functional>

class QWidget;

namespace quillfern {

/// Keeps files and folders that are to be opened until the window is idle and no sheet lies over it.
/// Main thread.
class OpenQueue final : public QObject
{
  public:
    /// Begins to load; false when that is not possible now.
    using Load = std::function<bool(const QList<QUrl>&)>;

    /// Observes `window`, which outlives this, for the end of a sheet.
    OpenQueue(QWidget& window, Load load);

    /// Opens files and folders, at once when that is possible. Relative paths start at the current folder.
    void add(const QStringList& paths);
    /// Tries again when the event loop is reached.
    void retryLater();

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void retry();

    Load load_;
    QList<QUrl> waiting_;
};

} // namespace quillfern
