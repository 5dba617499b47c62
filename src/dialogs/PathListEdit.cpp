#include "dialogs/PathListEdit.h"

#include "platform/system/FilePath.h"

#include <QList>
#include <QStringList>
#include <QUrl>

namespace quillfern {

namespace {

/// The URLs that some file managers put on the clipboard under a name of their own, behind a line that says
/// whether the files are to be copied or moved.
QList<QUrl> copiedFiles(const QMimeData& data)
{
    QList<QUrl> urls;
    for (const QByteArray& line : data.data(QStringLiteral("x-special/gnome-copied-files")).split('\n'))
        if (line.contains(':')) urls.append(QUrl::fromEncoded(line.trimmed()));
    return urls;
}

} // namespace

QString pathListOf(const QMimeData& data)
{
    QList<FilePath> files = filePaths(data.urls());
    if (files.isEmpty()) files = filePaths(copiedFiles(data));
    // Without a text of its own, data with addresses of the web gives those as its text.
    if (files.isEmpty()) return data.hasFormat(QStringLiteral("text/plain")) ? data.text() : QString();
    QStringList lines;
    for (const FilePath& file : files)
        lines.append(file.text());
    return lines.join(u'\n');
}

bool PathListEdit::canInsertFromMimeData(const QMimeData* source) const
{
    return !pathListOf(*source).isEmpty();
}

void PathListEdit::insertFromMimeData(const QMimeData* source)
{
    insertPlainText(pathListOf(*source));
}

} // namespace quillfern
