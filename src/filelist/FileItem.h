#pragma once

#include "filelist/PageCount.h"
#include "platform/system/FilePath.h"

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QVariant>
#include <cstdint>
#include <optional>

namespace quillfern {

/// The number of pages of a file and its TIFF compression code. `compression` keeps its value when the file
/// has no compression code. The password is accepted and not used: counting never unlocks a document.
[[nodiscard]] std::int32_t getTiffPageCount(const FilePath& path, const QString& password,
                                            std::int32_t& compression);

/// True when a PDF document opens from `path` and either is not encrypted or unlocks with `password`.
[[nodiscard]] bool verifyPDF(const FilePath& path, const std::optional<QString>& password);

/// The kinds of files that the totals and the commands distinguish.
enum class FileType { Pdf, Tiff, Other };

/// A size as people read it: in whole KB up to a million bytes, then in MB and GB with one decimal, in steps
/// of a thousand.
[[nodiscard]] QString sizeText(std::int32_t bytes);

/// One input file of the list. Not for use from two threads at once.
class FileItem
{
  public:
    /// A checked item for a file; no item for an empty path, which stands for a URL of anything else.
    /// setPdfOpenPassword() counts the pages.
    [[nodiscard]] static std::optional<FileItem> initWithURL(const FilePath& path);

    [[nodiscard]] bool isSelected() const { return isSelected_; } ///< the check mark
    void setIsSelected(bool selected) { isSelected_ = selected; }
    [[nodiscard]] const FilePath& filePath() const { return filePath_; }
    /// Also takes the file's size on disk; the size stays as it was when the file cannot be looked at.
    void setFilePath(const FilePath& path);
    [[nodiscard]] std::int32_t pages() const { return pages_; }
    [[nodiscard]] std::int32_t compression() const { return compression_; } ///< TIFF code of the first image
    /// Allocated on disk, in bytes, cut to 32 bits.
    [[nodiscard]] std::int32_t size() const { return size_; }
    [[nodiscard]] const QString& pdfOpenPassword() const { return pdfOpenPassword_; }
    /// Stores the password (an absent one as the empty text) and counts the pages.
    void setPdfOpenPassword(const std::optional<QString>& password);
    /// Counts the pages of a PDF that shows none without a password, with its own password or else with this
    /// one.
    void countUnlocked(const QString& defaultPassword);
    /// Takes over pages and compression that were counted before.
    void takeCount(const PageCount& count);
    /// Takes over password, pages and compression of an equal item that has been counted elsewhere.
    void takeCount(const FileItem& counted);

    // In the text form of NativePath.h.
    [[nodiscard]] QString name() const { return filePath_.name(); }
    [[nodiscard]] QString location() const { return filePath_.parent().text(); } ///< the folder
    [[nodiscard]] QString type() const { return filePath_.extension(); }         ///< as it is written

    [[nodiscard]] FileType fileType() const; ///< by the extension, in any mix of case
    [[nodiscard]] QString sizeInKB() const { return sizeText(size_); }
    // The dates are read from the file system at every call; a date that cannot be read is invalid.
    [[nodiscard]] QDateTime dateModified() const;
    [[nodiscard]] QDateTime dateCreated() const;
    [[nodiscard]] QDateTime dateAccessed() const;

    /// What the table shows in a column, by the column's identifier in any mix of case; "" for an unknown
    /// one.
    [[nodiscard]] QVariant displayField(const QString& identifier, const QLocale& locale = QLocale()) const;

    /// Items are equal when their paths are.
    bool operator==(const FileItem& other) const { return filePath_ == other.filePath_; }

  private:
    FileItem() = default;

    bool isSelected_ = true;
    FilePath filePath_;
    std::int32_t pages_ = 0;
    std::int32_t compression_ = 1;
    std::int32_t size_ = 0;
    QString pdfOpenPassword_;
};

} // namespace quillfern
