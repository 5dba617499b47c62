#pragma once

#include "config/Settings.h"

#include <QString>
#include <QWidget>
#include <memory>

namespace quillfern::desktop {
class FilePanels;
}

namespace quillfern {

namespace Ui {
class OutputPane;
}

/// The part of the window that edits what lies outside the configuration's record of stamps and pages: the
/// output folder and what happens around a job. Main thread.
class OutputPane final : public QWidget
{
    Q_OBJECT

  public:
    explicit OutputPane(QWidget* parent = nullptr);
    ~OutputPane() override;

    /// Begins to edit these settings; to be called once. Both outlive the pane.
    void edit(Settings& settings, desktop::FilePanels& panels);
    /// Shows the settings as they are now.
    void refresh();
    /// Enables what the settings' folder allows: without a folder there is nothing to remember or to open.
    void updateFolderOptions();
    /// Lets the user choose the folder, and saves the settings at once.
    void chooseOutputFolder();
    /// Gives the keyboard to the folder's field.
    void focusFolder();

  Q_SIGNALS:
    /// The settings have another output folder now.
    void outputFolderPathChanged();

  private:
    void setOutputFolderPath(const QString& path);
    /// Makes the typed folder an absolute path: "~" becomes the home folder, and blanks around it go.
    void completeTypedFolder();

    std::unique_ptr<Ui::OutputPane> ui_;
    Settings* settings_ = nullptr;
    desktop::FilePanels* panels_ = nullptr;
};

} // namespace quillfern
