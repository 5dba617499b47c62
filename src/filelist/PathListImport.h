#pragma once

#include "filelist/Arguments.h"
#include "filelist/PathListParser.h"

namespace quillfern {

/// What the import dialog decides, without the dialog: two ways to name files, and what Import makes of them.
class PathListImport
{
  public:
    enum Method {
        FromFile = 0, ///< importFile() names a text file
        FromText = 1  ///< importText() is the list
    };
    /// What stands in the way of an import, and where the user can do something about it.
    struct Problem
    {
        enum class Focus { Browse, Text, Nowhere };
        QString message; ///< for an alert
        Focus focus = Focus::Nowhere;
    };

    explicit PathListImport(const QString& allowedTypes) : parser_(allowedTypes) {}

    /// As each opening of the dialog begins: no texts, no files; the method stays the one last chosen.
    void resetView();
    /// Chooses a method by its number and clears both texts; with any other number neither is on.
    void importMethodChanged(int tag);
    [[nodiscard]] std::optional<Method> method() const { return method_; }

    [[nodiscard]] const QString& importFile() const { return importFile_; }
    void setImportFile(const QString& path) { importFile_ = path; }
    [[nodiscard]] const QString& importText() const { return importText_; }
    void setImportText(const QString& text) { importText_ = text; }

    /// Takes the clipboard's text: importText() then holds the paths of the files found in it, one a line.
    /// Nothing happens when there is no text.
    void pasteText(const QString& clipboard);
    /// Reads the list anew by the chosen method. Nothing in the way means that files() are to be loaded.
    [[nodiscard]] std::optional<Problem> importAction();

    [[nodiscard]] const QList<FilePath>& files() const { return parser_.files(); }
    [[nodiscard]] QString totalFilesFound() const { return parser_.totalFilesFound(); }

  private:
    PathListParser parser_;
    std::optional<Method> method_ = FromFile;
    QString importFile_;
    QString importText_;
};

} // namespace quillfern
