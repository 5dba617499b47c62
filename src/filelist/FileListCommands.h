#pragma once

#include "filelist/FileList.h"
#include "platform/desktop/DesktopServices.h"
#include "platform/system/FilePath.h"

#include <QList>
#include <QString>
#include <optional>
#include <vector>

namespace quillfern {

/// What the commands need of the window.
class FileListView
{
  public:
    virtual ~FileListView() = default;
    /// Changes the controls to their busy (false) or idle (true) state.
    virtual void resetView(bool idle) = 0;
    /// Updates the totals that are shown.
    virtual void updateTotalLabel() = 0;
    /// Asks the user a question with the answers "Yes" (the default) and "No".
    virtual bool confirm(const QString& message) = 0;
    /// Selects exactly these rows of the table.
    virtual void selectRows(const std::vector<int>& rows) = 0;
    /// Selects exactly these rows, gives the table the keyboard and scrolls to the row `scrollTo`.
    virtual void selectMovedRows(const std::vector<int>& rows, int scrollTo) = 0;
    /// Gives these files of the list a password and has their pages counted anew, in the background.
    virtual void applyPassword(const QList<FilePath>& paths, const QString& password) = 0;
};

/// The commands on the file list. Rows are those selected in the table, ascending, each once. No command
/// throws: a failure is written to the system log, and what the command changed before the failure stays.
/// Main thread.
class FileListCommands
{
  public:
    /// All outlive the commands.
    FileListCommands(FileList& files, FileListView& view, desktop::DesktopServices& desktop)
        : files_(files), view_(view), desktop_(desktop)
    {
    }

    /// By tag: 1 checks, 2 unchecks, 3 inverts the marks; other tags leave the marks as they are.
    void checkUncheckInvertSelection(int tag, const std::vector<int>& rows);
    void checkUncheckInvertAll(int tag);
    /// The space bar: inverts the marks of the rows.
    void invertMarks(const std::vector<int>& rows);

    /// By tag: 1 selects all rows, 2 selects the first row only, 3 removes all files when the user agrees, 4
    /// removes the rows given.
    void selectDeselectRemoveAll(int tag, const std::vector<int>& rows);
    void removeFiles(const std::vector<int>& rows);
    void moveUp(const std::vector<int>& rows);
    void moveDown(const std::vector<int>& rows);
    [[nodiscard]] bool canMoveUp(const std::vector<int>& rows) const;
    [[nodiscard]] bool canMoveDown(const std::vector<int>& rows) const;

    void openFiles(const std::vector<int>& rows);
    /// Shows the files in the file manager, selected.
    void openEnclodingFolder(const std::vector<int>& rows);
    void getInfo(const std::vector<int>& rows);

    /// Gives a password to the PDF files among the rows; without a password nothing happens.
    void updatePDFReadPassword(const std::optional<QString>& password, const std::vector<int>& rows);

    [[nodiscard]] bool containsPDFFiles(const std::vector<int>& rows) const;
    /// True when a PDF or TIFF file is among the rows.
    [[nodiscard]] bool containsMultiPageFiles(const std::vector<int>& rows) const;

  private:
    void mark(int tag, const std::vector<int>& rows);
    void showChange();
    [[nodiscard]] std::vector<int> allRows() const;
    [[nodiscard]] QList<FilePath> paths(const std::vector<int>& rows) const;

    FileList& files_;
    FileListView& view_;
    desktop::DesktopServices& desktop_;
};

} // namespace quillfern
