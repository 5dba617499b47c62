#pragma once

#include "platform/desktop/FilePanels.h"
#include "platform/system/FilePath.h"

#include <QCoreApplication>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>

class QFileDialog;
class QWidget;

namespace quillfern {

/// The file panels as dialogs of the desktop or, where it has none, of the toolkit. The message is a panel's
/// title. Each kind of panel (what is picked, and of which types) begins in the folder that it last ended in,
/// the first time in the user's documents. What is picked is of the panel's types, whatever the user typed.
/// `over` is a widget of the window to block. Has to outlive the windows that its panels belong to.
///
/// The dialogs speak of files in texts of their own, so a name that is not UTF-8 cannot be picked.
class WidgetPanels final : public desktop::FilePanels
{
    Q_DECLARE_TR_FUNCTIONS(quillfern::WidgetPanels)

  public:
    void open(QObject* over, const desktop::OpenPanel& panel,
              std::function<void(const QList<FilePath>&)> chosen) override;
    void save(QObject* over, const desktop::SavePanel& panel,
              std::function<void(const FilePath&)> chosen) override;

  private:
    void prepare(QFileDialog& dialog, const QString& kind) const;
    void remember(const QString& kind, const FilePath& path);
    [[nodiscard]] static QString nameFilter(const QStringList& types);
    [[nodiscard]] static bool mayReplace(QWidget* over, const FilePath& path);

    QHash<QString, FilePath> lastFolders_; ///< by kind
};

} // namespace quillfern
