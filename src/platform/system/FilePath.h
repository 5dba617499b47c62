#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>
#include <cstddef>

namespace quillfern {

/// Where a file or folder is, as the row of bytes that the system knows it by: absolute, without ".", "//" or
/// a "/" at its end. Equal paths are equal bytes, so one file named in two ways (relative or absolute, with a
/// "." or a doubled slash) is one path. An empty path names nothing; the system finds no file there.
///
/// A ".." is followed when the path is made, as the system would: out of a symbolic link it leads to the
/// parent of the folder that the link leads to, otherwise to the folder before it, whether or not anything is
/// there. Where the system does not say (a link that leads nowhere, a folder that may not be looked into) the
/// ".." stays. Links are not followed otherwise, so two paths may still lead to one file; see FileIdentity.
///
/// No function here opens a file, and the file system is asked only about a "..". Safe to copy; any thread.
class FilePath
{
  public:
    FilePath() = default;

    // Each counts a path that is not absolute from the current folder (a URL has to be absolute), and gives
    // an empty path for nothing and for bytes with a zero in them, which no file can be named by.

    [[nodiscard]] static FilePath fromBytes(const QByteArray& bytes);
    /// From the text form of NativePath.h: what was typed, stored or listed.
    [[nodiscard]] static FilePath fromText(const QString& text);
    /// Empty also for a URL of anything but a file.
    [[nodiscard]] static FilePath fromUrl(const QUrl& url);

    [[nodiscard]] bool isEmpty() const { return bytes_.isEmpty(); }

    /// For calls of the system and of libraries.
    [[nodiscard]] const QByteArray& bytes() const { return bytes_; }
    /// For storing and for fields that hold a path: the text form of NativePath.h, which fromText() reads.
    [[nodiscard]] QString text() const;
    /// For people, terminals and logs: bytes that are not UTF-8 show as the replacement character, control
    /// characters as printable() spells them.
    [[nodiscard]] QString readable() const;
    /// For other programs: bytes that are not UTF-8 are percent-encoded. An empty URL for an empty path.
    [[nodiscard]] QUrl url() const;

    /// The last part, in the text form of NativePath.h; empty for "/".
    [[nodiscard]] QString name() const;
    /// extensionOf() the name.
    [[nodiscard]] QString extension() const { return extensionOf(name()); }
    /// The name without its extension and the dot before it.
    [[nodiscard]] QString stem() const;
    /// The folder it is in; that of "/" is "/".
    [[nodiscard]] FilePath parent() const;
    /// The path of `name`, in the text form of NativePath.h, in this folder; `name` may be several names with
    /// slashes between them. Empty when this path is empty.
    [[nodiscard]] FilePath child(const QString& name) const;

    bool operator==(const FilePath&) const = default;
    /// By bytes.
    bool operator<(const FilePath& other) const { return bytes_ < other.bytes_; }

    /// A name's extension, without the dot and as it is written; empty where there is none, and where the
    /// only dot begins the name.
    [[nodiscard]] static QString extensionOf(const QString& name);

  private:
    QByteArray bytes_;
};

[[nodiscard]] inline std::size_t qHash(const FilePath& path, std::size_t seed = 0) noexcept
{
    return qHash(path.bytes(), seed);
}

/// The paths of the files among `urls`, in order.
[[nodiscard]] QList<FilePath> filePaths(const QList<QUrl>& urls);

} // namespace quillfern
