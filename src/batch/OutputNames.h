#pragma once

#include "batch/FileOutcome.h"
#include "batch/StampedNumbers.h"
#include "config/JobConfiguration.h"
#include "filelist/FileItem.h"
#include "platform/system/FilePath.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <cstddef>
#include <optional>
#include <vector>

namespace quillfern {

/// Where a copy belongs below the output folder. Names are in the text form of NativePath.h.
struct CopyName
{
    QStringList folders; ///< one name a level; empty: in the output folder itself
    QString name;

    [[nodiscard]] FilePath below(const FilePath& folder) const;

    bool operator==(const CopyName&) const = default;
};

/// Names the copies of a job. Without options, a copy has the name of its source, byte for byte. Any thread.
///
/// With `keepFolders`, a copy is as many folders below the output folder as its source is below the common
/// folder of the list. With a pattern, the name is made of the pattern's words: {name} the source's name
/// without extension, {first} and {last} the numbers on its pages as they are printed, {index} its place in
/// the list with leading zeros, {date} the day of the job as 2026-11-16. Characters that some file system
/// refuses become "_", and a name that is too long for the output folder is cut. A name in which nothing
/// remains is the source's. With `tifNames`, a copy of a picture that is no TIFF ends in ".tif".
class OutputNames
{
  public:
    /// `sources` are all files of the job, in list order.
    OutputNames(const JobConfiguration& job, const FilePath& outputFolder,
                const std::vector<FileItem>& sources, const QDate& date);

    /// The word in braces that no pattern knows; nothing for a pattern that can be followed.
    [[nodiscard]] static std::optional<QString> unknownWord(const QString& pattern);

    /// Whether a name is known only when its file is done.
    [[nodiscard]] bool dependOnNumbers() const { return dependOnNumbers_; }

    /// The name of the copy of source `index` (from 0), with these numbers on its pages.
    [[nodiscard]] CopyName of(std::size_t index, const FilePath& source,
                              const std::optional<NumbersUsed>& numbers) const;

    /// The same name with a number for people, "name (2).pdf", cut where it is too long.
    [[nodiscard]] CopyName numbered(const CopyName& copy, int number) const;

  private:
    [[nodiscard]] QStringList foldersOf(const FilePath& source) const;
    [[nodiscard]] QString stemOf(std::size_t index, const FilePath& source,
                                 const std::optional<NumbersUsed>& numbers) const;
    [[nodiscard]] QString fitting(const QString& stem, const QString& ending) const;

    JobOptions options_;
    StampedNumbers numbers_;
    QList<QByteArray> commonFolder_; ///< its names from the root on
    qsizetype longestName_;          ///< in bytes
    int digitsOfIndex_;
    QString date_;
    bool dependOnNumbers_;
};

} // namespace quillfern
