#include "filelist/FileListCommands.h"

#include "platform/system/Guarded.h"

#include <QCoreApplication>
#include <algorithm>
#include <numeric>

namespace quillfern {

std::vector<int> FileListCommands::allRows() const
{
    std::vector<int> rows(static_cast<std::size_t>(files_.count()));
    std::iota(rows.begin(), rows.end(), 0);
    return rows;
}

QList<FilePath> FileListCommands::paths(const std::vector<int>& rows) const
{
    QList<FilePath> list;
    for (const int row : rows)
        list.append(files_.at(row).filePath());
    return list;
}

void FileListCommands::showChange()
{
    view_.resetView(true);
    view_.updateTotalLabel();
}

void FileListCommands::mark(int tag, const std::vector<int>& rows)
{
    if (tag == 1) files_.setIsSelected(rows, true);
    if (tag == 2) files_.setIsSelected(rows, false);
    if (tag == 3) files_.setIsSelected(rows, std::nullopt);
}

void FileListCommands::checkUncheckInvertSelection(int tag, const std::vector<int>& rows)
{
    guarded("Error in (checkUncheckInvertSelection:) : %@", [&] { mark(tag, rows); });
    showChange();
}

void FileListCommands::checkUncheckInvertAll(int tag)
{
    guarded("Error in (checkUncheckInvertAll:) : %@", [&] { mark(tag, allRows()); });
    showChange();
}

void FileListCommands::invertMarks(const std::vector<int>& rows)
{
    files_.setIsSelected(rows, std::nullopt);
    view_.updateTotalLabel();
}

void FileListCommands::selectDeselectRemoveAll(int tag, const std::vector<int>& rows)
{
    guarded("Error in (selectDeselectRemoveAll:) : %@", [&] {
        if (tag == 1) view_.selectRows(allRows());
        if (tag == 2) view_.selectRows(files_.empty() ? std::vector<int>() : std::vector{0});
        if (tag == 3) {
            if (!view_.confirm(QCoreApplication::translate("quillfern::FileList",
                                                           "Are you sure to remove all file(s)?")))
                return;
            files_.clear();
            showChange();
        }
        if (tag == 4) {
            files_.remove(rows);
            showChange();
        }
    });
}

void FileListCommands::removeFiles(const std::vector<int>& rows)
{
    guarded("Error in (remove) : %@", [&] {
        if (rows.empty()) return;
        files_.remove(rows);
        showChange();
    });
}

void FileListCommands::moveUp(const std::vector<int>& rows)
{
    const std::vector<int> moved = files_.moveUp(rows);
    if (!moved.empty()) view_.selectMovedRows(moved, moved.front());
}

void FileListCommands::moveDown(const std::vector<int>& rows)
{
    const std::vector<int> moved = files_.moveDown(rows);
    if (!moved.empty()) view_.selectMovedRows(moved, moved.back());
}

bool FileListCommands::canMoveUp(const std::vector<int>& rows) const
{
    return !rows.empty() && rows.front() > 0;
}

bool FileListCommands::canMoveDown(const std::vector<int>& rows) const
{
    return !rows.empty() && rows.back() + 1 < files_.count();
}

void FileListCommands::openFiles(const std::vector<int>& rows)
{
    guarded("Error in (openFiles) : %@", [&] {
        for (const FilePath& path : paths(rows))
            desktop_.open(path);
    });
}

void FileListCommands::openEnclodingFolder(const std::vector<int>& rows)
{
    guarded("Error in (openEnclodingFolder) : %@", [&] { desktop_.reveal(paths(rows)); });
}

void FileListCommands::getInfo(const std::vector<int>& rows)
{
    guarded("Error in (getInfo) : %@", [&] { desktop_.showProperties(paths(rows)); });
}

void FileListCommands::updatePDFReadPassword(const std::optional<QString>& password,
                                             const std::vector<int>& rows)
{
    if (!password) return;
    guarded("Error in (updatePDFReadPassword:) : %@", [&] {
        QList<FilePath> pdfs;
        for (const int row : rows)
            if (files_.at(row).fileType() == FileType::Pdf) pdfs.append(files_.at(row).filePath());
        if (!pdfs.isEmpty()) view_.applyPassword(pdfs, *password);
    });
}

bool FileListCommands::containsPDFFiles(const std::vector<int>& rows) const
{
    return std::any_of(rows.begin(), rows.end(),
                       [&](int row) { return files_.at(row).fileType() == FileType::Pdf; });
}

bool FileListCommands::containsMultiPageFiles(const std::vector<int>& rows) const
{
    return std::any_of(rows.begin(), rows.end(),
                       [&](int row) { return files_.at(row).fileType() != FileType::Other; });
}

} // namespace quillfern
