#pragma once

#include "filelist/PathListImport.h"
#include "platform/system/FilePath.h"

#include <QDialog>
#include <QList>
#include <QString>
#include <memory>

namespace quillfern::desktop {
class Alerts;
class FilePanels;
} // namespace quillfern::desktop

namespace quillfern {

namespace Ui {
class ImportFiles;
}

/// The dialog that takes files from a list of paths, in a text file or pasted: a sheet on its parent's
/// window. It is kept between uses. Each begins with resetView() and open(); the method last chosen stays
/// chosen.
class ImportFilesWindowController final : public QDialog
{
    Q_OBJECT

  public:
    /// The panels and alerts have to outlive the dialog.
    ImportFilesWindowController(desktop::FilePanels& panels, desktop::Alerts& alerts, QWidget* parent);
    ~ImportFilesWindowController() override;

    /// The extensions joined with ","; without any, nothing is found. Begins anew with the method chosen.
    void setAllowedTypes(const QString& allowedTypes);

    /// Clears what was entered and found.
    void resetView();
    /// Chooses the method with this number (see PathListImport) and clears both texts; with any other number
    /// neither is on.
    void importMethodChanged(int tag);

    void browseImportFileAction();
    /// Parses the clipboard's text, and shows the files found in place of the text pasted before.
    void pasetFromClipboardAction();
    void importAction();
    void cancelAction();

  Q_SIGNALS:
    /// The user has imported these files; there is at least one. The dialog closes afterwards.
    void ImportFilesWindowControllerDidFinish(const QList<FilePath>& files);

  protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    /// A text file becomes the file to import; other files and texts are taken like a clipboard's.
    void dropEvent(QDropEvent* event) override;

  private:
    void awakeFromNib();
    void connectButtons();
    void paste(const QString& text);
    void readFields();
    void showTexts();
    void showTotal();
    /// Shows what was left out of the last list read.
    void showRemark();

    desktop::FilePanels& panels_;
    desktop::Alerts& alerts_;
    std::unique_ptr<Ui::ImportFiles> ui_;
    PathListImport import_{QString()};
};

} // namespace quillfern
