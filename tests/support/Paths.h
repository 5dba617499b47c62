#pragma once

#include "platform/system/FilePath.h"

#include <QStringList>
#include <ostream>

namespace quillfern {

[[nodiscard]] inline FilePath asPath(const QString& text)
{
    return FilePath::fromText(text);
}

[[nodiscard]] inline QList<FilePath> asPaths(const QStringList& texts)
{
    QList<FilePath> paths;
    for (const QString& text : texts)
        paths.append(asPath(text));
    return paths;
}

[[nodiscard]] inline QStringList textsOf(const QList<FilePath>& paths)
{
    QStringList texts;
    for (const FilePath& path : paths)
        texts.append(path.text());
    return texts;
}

/// The words of a text.
[[nodiscard]] inline QStringList words(const char* text)
{
    return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts);
}

/// Prints the path in messages of failed tests.
inline void PrintTo(const FilePath& path, std::ostream* stream)
{
    *stream << path.readable().toStdString();
}

} // namespace quillfern
