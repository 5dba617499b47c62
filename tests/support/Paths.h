#pragma once

#include "platform/system/FilePath.h"
#include "support/Cases.h"

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

/// Prints the path in messages of failed tests.
inline void PrintTo(const FilePath& path, std::ostream* stream)
{
    *stream << path.readable().toStdString();
}

} // namespace quillfern
