#include "filelist/PathListImport.h"

#include <QCoreApplication>

namespace quillfern {

void PathListImport::resetView()
{
    importFile_.clear();
    importText_.clear();
    parser_.clear();
}

void PathListImport::importMethodChanged(int tag)
{
    importFile_.clear();
    importText_.clear();
    method_.reset();
    if (tag == FromFile) method_ = FromFile;
    if (tag == FromText) method_ = FromText;
}

void PathListImport::pasteText(const QString& clipboard)
{
    if (clipboard.isEmpty()) return;
    parser_.parseText(clipboard);
    importText_ = parser_.foundPaths();
}

std::optional<PathListImport::Problem> PathListImport::importAction()
{
    if (method_ == FromFile && importFile_.isEmpty())
        return Problem{
            QCoreApplication::translate("quillfern::PathListImport", "Please select file to import!"),
            Problem::Focus::Browse};
    if (method_ == FromText && importText_.isEmpty())
        return Problem{
            QCoreApplication::translate("quillfern::PathListImport", "Please paste file(s) path to import!"),
            Problem::Focus::Text};
    QString cause;
    if (method_ == FromFile && !parser_.parseFile(FilePath::fromText(importFile_)))
        cause = QCoreApplication::translate("quillfern::PathListImport", "The text file cannot be read.");
    if (method_ == FromText) parser_.parseText(importText_);
    if (!files().isEmpty()) return std::nullopt;
    QString message = QCoreApplication::translate("quillfern::PathListImport", "No File(s) Found!");
    if (cause.isEmpty()) cause = remark();
    if (!cause.isEmpty()) message += QStringLiteral("\n\n") + cause;
    return Problem{message, Problem::Focus::Nowhere};
}

QString PathListImport::remark() const
{
    if (parser_.carriageReturns() == 0) return {};
    return QCoreApplication::translate(
               "quillfern::PathListImport",
               "Lines left out: %1. They end with a carriage return, as in texts from Windows. Save the list "
               "with Unix line ends.")
        .arg(parser_.carriageReturns());
}

} // namespace quillfern
