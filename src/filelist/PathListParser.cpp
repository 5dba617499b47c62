#include "filelist/PathListParser.h"

#include "platform/system/FileAccess.h"
#include "platform/system/Guarded.h"
#include "platform/system/NativePath.h"

#include <QCoreApplication>
#include <QSet>

namespace quillfern {

namespace {

QByteArray readList(const FilePath& path)
{
    const auto file = readRegularFile(path);
    if (file->size() > PathListParser::largestList)
        throw Failure(QStringLiteral("%1 is too large for a list of paths").arg(path.readable()));
    QByteArray bytes = file->read(PathListParser::largestList);
    if (file->error() != QFileDevice::NoError)
        throw Failure(QStringLiteral("%1 cannot be read: %2").arg(path.readable(), file->errorString()));
    return bytes;
}

} // namespace

void PathListParser::parseText(const std::optional<QString>& text)
{
    clear();
    guarded("Error in (parseText:) : %@", [&] { takeLines(text.value_or(QString())); });
}

void PathListParser::parseBytes(QByteArray bytes)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes.remove(0, 3); // the byte order mark does not belong to the text
    parseText(pathText(bytes));
}

bool PathListParser::parseFile(const FilePath& path)
{
    clear();
    return guarded("Error in (parseFile:) : %@", false, [&] {
        parseBytes(readList(path));
        return true;
    });
}

void PathListParser::clear()
{
    files_.clear();
    carriageReturns_ = 0;
}

void PathListParser::takeLines(const QString& text)
{
    const QStringList types = allowedTypes_.split(u',');
    const QSet<QString> allowed(types.begin(), types.end());
    QSet<FilePath> seen;
    for (const QStringView line : QStringView(text).split(u'\n')) {
        const FilePath path = FilePath::fromText(line.toString());
        const QString extension = path.extension().toUpper();
        if (extension.endsWith(u'\r') && allowed.contains(extension.chopped(1))) ++carriageReturns_;
        if (extension.isEmpty() || !allowed.contains(extension)) continue;
        const qsizetype before = seen.size();
        seen.insert(path);
        if (seen.size() > before) files_.append(path);
    }
}

QString PathListParser::totalFilesFound() const
{
    return QCoreApplication::translate("quillfern::PathListImport", "Total Files Found : %1")
        .arg(files_.size());
}

QString PathListParser::foundPaths() const
{
    QStringList paths;
    for (const FilePath& path : files_)
        paths.append(path.text());
    return paths.join(u'\n');
}

} // namespace quillfern
