#pragma once

#include "filelist/FileListCommands.h"
#include "filelist/FileListModel.h"
#include "platform/desktop/Alerts.h"
#include "platform/desktop/FilePanels.h"
#include "platform/system/Clock.h"

#include <memory>

namespace quillfern {

class ImportFilesWindowController;
class MainWindow;
class PDFReadPasswordWindowController;

/// What the commands on the list need of the window beside the list's own table.
class FilesWindow
{
  public:
    virtual ~FilesWindow() = default;
    virtual void endEditing() = 0;
    virtual void resetView(bool idle) = 0;
    virtual void updateTotalLabel() = 0;
    /// Files and folders were chosen.
    virtual void load(const QList<FilePath>& paths, bool isFolders) = 0;
    /// See FileListView.
    virtual void applyPassword(const QList<FilePath>& paths, const QString& password) = 0;
};

/// Connects the commands on the file list with the window: panels, dialogs, the table's keys, drops. Main
/// thread.
class FilesController final : public QObject, public FileListView
{
    Q_OBJECT

  public:
    /// Everything outlives the controller.
    FilesController(FileList& files, const std::atomic<bool>& isProcessing, MainWindow& window,
                    FilesWindow& host, DesktopServices& desktop, FilePanels& panels, Alerts& alerts,
                    const Clock& clock);
    ~FilesController() override;

    [[nodiscard]] std::vector<int> selection() const;
    [[nodiscard]] bool containsPDFFiles() const;
    [[nodiscard]] FileListModel& model() { return model_; }

    /// Whether the commands that move rows and the password have something to work on.
    void updateSelectionCommands();

  Q_SIGNALS:
    /// Another selection, or the same rows with other files in them.
    void selectionChanged();

  private:
    void connectCommands();
    void connectTable();
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
    MainWindow& window_;
    FilesWindow& host_;
    FilePanels& panels_;
    Alerts& alerts_;
    const Clock& clock_;
    FileListModel model_;
    FileListCommands commands_;
    std::unique_ptr<ImportFilesWindowController> importFilesPanel_;
    std::unique_ptr<PDFReadPasswordWindowController> pdfReadPasswordPanel_;
};

} // namespace quillfern
