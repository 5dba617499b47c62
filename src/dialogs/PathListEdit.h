#pragma once

#include <QMimeData>
#include <QPlainTextEdit>
#include <QString>

namespace quillfern {

/// What a clipboard or a drag holds, as a list of paths: the paths of the files that a file manager has put
/// there, one a line, or else the plain text.
[[nodiscard]] QString pathListOf(const QMimeData& data);

/// The text area of the import dialog; files copied in a file manager are pasted into it as paths.
class PathListEdit final : public QPlainTextEdit
{
  public:
    using QPlainTextEdit::QPlainTextEdit;

  protected:
    [[nodiscard]] bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;
};

} // namespace quillfern
