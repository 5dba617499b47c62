#pragma once

#include "filelist/FileList.h"
#include "platform/desktop/DesktopServices.h"

namespace quillfern {

/// What the commands need of the window.
class FileListView
{
  public:
    virtual ~FileListView() = default;
    /// Puts the controls into their busy (false) or idle (true) state.
    virtual void resetView(bool idle) = 0;
    /// Shows the totals anew.
    virtual void updateTotalLabel() = 0;
    /// Asks the user a question with the answers "Yes" (the default) and "No".
    virtual bool confirm(const QString& message) = 0;
    /// Selects exactly these rows of the table.
    virtual void selectRows(const std::vector<int>& rows) = 0;
    /// The same, and takes the keyboard and scrolls to `scrollTo`.
    virtual void selectMovedRows(const std::vector<int>& rows, int scrollTo) = 0;
    /// Gives these files of the list a password and has their pages counted anew, in the background.
    virtual void applyPassword(const QList<FilePath>& paths, const QString& password) = 0;
};

/// The commands on the file list. Rows are those selected in the table, ascending, each once. No command
/// throws: a failure is told of in the system log and leaves the list as far as it got. Main thread.
class FileListCommands
{
  public:
    /// All outlive the commands.
    FileListCommands(FileList& files, FileListView& view, desktop::DesktopServices& desktop)
        : files_(files), view_(view), desktop_(desktop)
    {
    }

    /// By tag: 1 check, 2 uncheck, 3 turn about; others do nothing to the marks.
    void checkUncheckInvertSelection(int tag, const std::vector<int>& rows);
    void checkUncheckInvertAll(int tag);
    /// The space bar: turns the marks of the rows about.
    void invertMarks(const std::vector<int>& rows);

    /// By tag: 1 selects all rows, 2 the first one only, 3 removes all files when the user agrees, 4 the
    /// rows.
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

    /// Has the PDF files among the rows given a password; nothing happens without one.
    void updatePDFReadPassword(const std::optional<QString>& password, const std::vector<int>& rows);

    [[nodiscard]] bool containsPDFFiles(const std::vector<int>& rows) const;
    /// PDF and TIFF files.
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
