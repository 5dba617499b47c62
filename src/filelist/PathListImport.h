#pragma once

#include "filelist/Arguments.h"
#include "filelist/PathListParser.h"
#include "platform/system/FilePath.h"

#include <QList>
#include <QString>
#include <optional>

namespace quillfern {

/// The logic of the import dialog: the two methods of naming files, and what the Import button does with the
/// names.
class PathListImport
{
  public:
    enum Method {
        FromFile = 0, ///< importFile() names a text file
        FromText = 1  ///< importText() is the list
    };
    /// Why an import is not possible, and the field where the user can correct this.
    struct Problem
    {
        enum class Focus { Browse, Text, Nowhere };
        QString message; ///< for an alert
        Focus focus = Focus::Nowhere;
    };

    explicit PathListImport(const QString& allowedTypes) : parser_(allowedTypes) {}

    /// The state in which the dialog opens: no texts, no files, and the method last chosen.
    void resetView();
    /// Chooses a method by its number and clears both texts; with any other number no method is chosen.
    void importMethodChanged(int tag);
    [[nodiscard]] std::optional<Method> method() const { return method_; }

    [[nodiscard]] const QString& importFile() const { return importFile_; }
    void setImportFile(const QString& path) { importFile_ = path; }
    [[nodiscard]] const QString& importText() const { return importText_; }
    void setImportText(const QString& text) { importText_ = text; }

    /// Takes the clipboard's text: importText() then holds the paths of the files found in it, one a line.
    /// Nothing happens when there is no text.
    void pasteText(const QString& clipboard);
    /// Reads the list anew by the chosen method. Without a problem files() are to be loaded.
    [[nodiscard]] std::optional<Problem> importAction();

    /// What was left out of the last list read, and why, for an alert; empty when nothing was.
    [[nodiscard]] QString remark() const;

    [[nodiscard]] const QList<FilePath>& files() const { return parser_.files(); }
    [[nodiscard]] QString totalFilesFound() const { return parser_.totalFilesFound(); }

  private:
    PathListParser parser_;
    std::optional<Method> method_ = FromFile;
    QString importFile_;
    QString importText_;
};

} // namespace quillfern
