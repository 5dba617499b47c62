#pragma once

#include "filelist/FileItem.h"
#include "filelist/PageCount.h"
#include "platform/system/FilePath.h"

#include <QByteArray>
#include <QHash>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillfern {

/// Page counts that were made before, so that several programs that work on parts of one list need not count
/// all of its files each. As a text: a header line, and for each file a line with its pages, its compression
/// code, its size in bytes and its path, separated by tabs. Paths are bytes. Any thread may read.
class KnownCounts
{
  public:
    KnownCounts() = default;
    /// Reads a text. Throws Failure for one that text() has not made.
    explicit KnownCounts(const QByteArray& text);

    /// The text for these files. A file whose name has a line break is left out, and so is one that is not
    /// there: whoever reads the text counts such files.
    [[nodiscard]] static QByteArray text(const std::vector<FileItem>& files);

    /// The count of a file; nothing when it is not known, or when the file has another size now.
    [[nodiscard]] std::optional<PageCount> of(const FilePath& path) const;

    /// The longest text that is worth reading, in bytes.
    static constexpr qint64 largestText = qint64{1} << 30;

  private:
    struct Entry
    {
        PageCount count;
        std::int64_t size = 0;
    };
    QHash<FilePath, Entry> entries_;
};

} // namespace quillfern
