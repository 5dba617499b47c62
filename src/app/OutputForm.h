#pragma once

#include "config/Settings.h"
#include "platform/desktop/FilePanels.h"

namespace quillfern {

namespace Ui {
class MainWindow;
}

/// The fields of the window that edit what lies outside the configuration's record of stamps and pages: the
/// output folder and what happens around a job. Main thread.
class OutputForm final : public QObject
{
    Q_OBJECT

  public:
    /// Everything outlives the form; `window` is what the folder panel belongs to.
    OutputForm(Ui::MainWindow& ui, Settings& settings, FilePanels& panels, QObject& window);

    /// Shows the settings as they are.
    void refresh();
    /// What the settings' folder allows: without one there is nothing to remember or to open.
    void updateFolderOptions();
    /// Lets the user choose the folder, and keeps the settings at once.
    void chooseOutputFolder();

  Q_SIGNALS:
    /// The settings' output folder is another one now.
    void outputFolderPathChanged();

  private:
    void setOutputFolderPath(const QString& path);
    /// What was typed becomes a whole path: "~" is the home folder, and blanks around it were not meant.
    void completeTypedFolder();

    Ui::MainWindow& ui_;
    Settings& settings_;
    FilePanels& panels_;
    QObject& window_;
};

} // namespace quillfern
