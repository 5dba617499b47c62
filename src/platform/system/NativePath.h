#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace quillfern {

// To the system a file's name is a row of bytes, to us it is a text. Most names are valid UTF-8 and simply
// read as such. Where one is not (an old archive in another encoding), every byte that does not fit stands in
// the text as a lone surrogate, U+DC80 to U+DCFF, and comes back as that byte; so a path survives the way
// through the program whatever its bytes are. Qt's own file functions would lose such a name: below the
// platform, files are opened through nativePath() or openRegularFile().

/// The text for the bytes of a path or name.
[[nodiscard]] QString pathText(const QByteArray& bytes);

/// The bytes of a path or name, for calls of the system and of libraries.
[[nodiscard]] QByteArray nativePath(const QString& path);

/// The file URL of an absolute path; bytes that are not UTF-8 are percent-encoded in it. Equal paths give
/// equal URLs, and the same as QUrl::fromLocalFile() for names of valid UTF-8.
[[nodiscard]] QUrl fileUrl(const QString& path);

/// The path of a file URL; empty when it is none, or names something that no file can be named.
[[nodiscard]] QString localPath(const QUrl& url);

/// A path or name for people and for documents: bytes that are not UTF-8 show as the replacement character.
[[nodiscard]] QString readableName(QString path);

/// `path` as an absolute path, seen from the current folder; nothing else of it is changed.
[[nodiscard]] QString absolutePath(const QString& path);

/// The name's extension, without the dot and as it is written; empty where there is none, and where the only
/// dot begins the name.
[[nodiscard]] QString pathExtension(const QString& path);

} // namespace quillfern
