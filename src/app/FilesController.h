#pragma once

#include "filelist/FileList.h"
#include "filelist/FileListCommands.h"
#include "filelist/FileListModel.h"
#include "platform/desktop/Alerts.h"
#include "platform/desktop/DesktopServices.h"
#include "platform/desktop/FilePanels.h"
#include "platform/system/Clock.h"
#include "platform/system/FilePath.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QWidget>
#include <memory>
#include <vector>

namespace quillfern {

class Activity;
class FilesPane;
class ImportFilesWindowController;
class PDFReadPasswordWindowController;
class WindowActions;

/// Connects the commands on the file list with the window: panels, dialogs, the table's keys, drops. Main
/// thread.
class FilesController final : public QObject, public FileListView
{
    Q_OBJECT

  public:
    /// Everything outlives the controller.
    FilesController(FileList& files, const Activity& activity, FilesPane& pane, WindowActions& actions,
                    desktop::DesktopServices& desktop, desktop::FilePanels& panels, desktop::Alerts& alerts,
                    const Clock& clock);
    ~FilesController() override;

    [[nodiscard]] std::vector<int> selection() const;
    [[nodiscard]] bool containsPDFFiles() const;

    /// Updates the list, its hint and its commands to the activity and the contents of the list.
    void updateCommands();
    void showTotals();
    /// Files were added to the list; the activity that adds files goes on.
    void listGrew();
    void deselectFiles();

  Q_SIGNALS:
    /// The window is idle, and another row is selected or the selected rows contain other files.
    void selectionChanged();
    /// Other totals of the list, after a command or an activity.
    void totalsChanged();
    /// The user chose or dropped files and folders.
    void filesChosen(const QList<FilePath>& paths, bool isFolders);
    /// See FileListView::applyPassword().
    void passwordGiven(const QList<FilePath>& paths, const QString& password);

  private:
    void connectCommands();
    void connectTable();
    void selectionDidChange();
    /// Whether the commands that move rows and the password have something to work on.
    void updateSelectionCommands();
    [[nodiscard]] QWidget& window() const;
    void openFiles();
    void addFiles();
    void addFolder();
    void openImportFilesPanel();
    void openPDFReadPasswordPanel();
    void exportAction();
    void moved();

    void resetView(bool idle) override;
    void updateTotalLabel() override;
    bool confirm(const QString& message) override;
    void selectRows(const std::vector<int>& rows) override;
    void selectMovedRows(const std::vector<int>& rows, int scrollTo) override;
    void applyPassword(const QList<FilePath>& paths, const QString& password) override;

    FileList& files_;
    const Activity& activity_;
    FilesPane& pane_;
    WindowActions& actions_;
    desktop::FilePanels& panels_;
    desktop::Alerts& alerts_;
    const Clock& clock_;
    FileListModel model_;
    FileListCommands commands_;
    std::unique_ptr<ImportFilesWindowController> importFilesPanel_;
    std::unique_ptr<PDFReadPasswordWindowController> pdfReadPasswordPanel_;
};

} // namespace quillfern
