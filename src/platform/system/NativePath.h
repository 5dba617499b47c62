#pragma once

#include <QByteArray>
#include <QString>

namespace quillfern {

// The text form of names and paths, for where there has to be a text: what was typed, what is stored, what a
// field shows, what names are sorted by. Most names are valid UTF-8 and simply read as such. Where one is not
// (an old archive in another encoding), every byte that does not fit stands in the text as a lone surrogate,
// U+DC80 to U+DCFF, and comes back as that byte. Qt's own file functions would lose such a name, so nothing
// is opened, looked up or joined by its text: that is what FilePath is for.

/// The text for the bytes of a path or name.
[[nodiscard]] QString pathText(const QByteArray& bytes);

/// The bytes of a path or name.
[[nodiscard]] QByteArray nativePath(const QString& path);

/// A path or name for people and for documents: bytes that are not UTF-8 show as the replacement character.
[[nodiscard]] QString readableName(QString path);

/// A text in which control characters are spelt as in C (\\n, \\t, \\x1b), for a terminal or one line of a
/// log: the name of a file may hold any.
[[nodiscard]] QString printable(const QString& text);

} // namespace quillfern
