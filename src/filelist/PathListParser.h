#pragma once

#include "platform/system/FilePath.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <optional>
#include <utility>

namespace quillfern {

/// Reads a list of paths, one a line, and keeps the lines whose extension, in any mix of case, is allowed.
class PathListParser
{
  public:
    /// The extensions joined with ","; only those spelt in capitals can match.
    explicit PathListParser(QString allowedTypes) : allowedTypes_(std::move(allowedTypes)) {}

    /// Replaces files() by those of the text. Lines end at line feeds only, and nothing is trimmed. A
    /// relative path is resolved against the current folder. The files need not exist.
    void parseText(const std::optional<QString>& text);
    /// parseText() for the bytes of a text in UTF-8. Bytes of a line that are not UTF-8 are kept as part of
    /// the path.
    void parseBytes(QByteArray bytes);
    /// parseBytes() for a file. A file that cannot be read, or is too large to be a list of paths, is
    /// reported in the system log and leaves files() empty. Returns whether the file was read.
    bool parseFile(const FilePath& path);
    void clear();

    /// No list of paths is longer; in bytes. There is room for more than two million paths of a hundred
    /// bytes.
    static constexpr qint64 largestList = 256 << 20;

    /// The paths found, in order, without duplicates.
    [[nodiscard]] const QList<FilePath>& files() const { return files_; }
    /// The number of lines that were left out only because a carriage return ends them: the line ends of the
    /// text are then those of Windows.
    [[nodiscard]] qsizetype carriageReturns() const { return carriageReturns_; }
    /// The text for the label with the number of files found.
    [[nodiscard]] QString totalFilesFound() const;
    /// The paths of files() in the text form of NativePath.h, one a line.
    [[nodiscard]] QString foundPaths() const;

  private:
    void takeLines(const QString& text);

    QString allowedTypes_;
    QList<FilePath> files_;
    qsizetype carriageReturns_ = 0;
};

} // namespace quillfern
