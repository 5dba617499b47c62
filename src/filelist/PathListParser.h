#pragma once

#include "platform/system/FilePath.h"

#include <optional>

namespace quillfern {

/// Reads a list of paths, one a line, and keeps the lines whose extension, in any mix of case, is allowed.
class PathListParser
{
  public:
    /// The extensions joined with ","; only those spelt in capitals can match.
    explicit PathListParser(QString allowedTypes) : allowedTypes_(std::move(allowedTypes)) {}

    /// Replaces files() by those of the text. Lines end at line feeds only, and nothing is trimmed. A path
    /// that is not absolute counts from the current folder; whether the file exists is not asked.
    void parseText(const std::optional<QString>& text);
    /// The same for the text, in UTF-8, of a file. Bytes of a line that are not UTF-8 belong to its path. A
    /// file that cannot be read, or is too large to be a list of paths, is told of in the system log and
    /// counts as no text; so it returns whether there was one.
    bool parseFile(const FilePath& path);
    void clear() { files_.clear(); }

    /// What was found, in order, each once.
    [[nodiscard]] const QList<FilePath>& files() const { return files_; }
    /// The text for the label that counts them.
    [[nodiscard]] QString totalFilesFound() const;
    /// Their paths in the text form of NativePath.h, one a line.
    [[nodiscard]] QString foundPaths() const;

  private:
    void takeLines(const QString& text);

    QString allowedTypes_;
    QList<FilePath> files_;
};

} // namespace quillfern
