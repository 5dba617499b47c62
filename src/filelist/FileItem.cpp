#include "filelist/FileItem.h"

#include "platform/pdf/PdfPageCount.h"
#include "platform/system/DateText.h"
#include "platform/system/FileFacts.h"
#include "platform/system/NativePath.h"

#include <array>
#include <cmath>

namespace quillfern {

std::int32_t getTiffPageCount(const FilePath& path, const QString&, std::int32_t& compression)
{
    const PageCount count = countPages(path);
    if (count.pages > 0) compression = count.compression;
    return count.pages;
}

bool verifyPDF(const FilePath& path, const std::optional<QString>& password)
{
    return !path.isEmpty() && password && pdf::pdfOpensWith(path, *password);
}

QString sizeText(std::int32_t bytes)
{
    static constexpr std::array<const char*, 5> units = {"B", "KB", "MB", "GB", "TB"};
    auto s = static_cast<float>(bytes);
    std::size_t step = 0;
    while (s > 1000.0F && step + 1 < units.size()) {
        s /= 1000.0F;
        ++step;
    }
    if (step < 2) return QStringLiteral("%1 KB").arg(std::lround(bytes / 1000.0));
    // Width 4 with one decimal: a single digit before the point is preceded by a blank, also when the ".0" is
    // removed below.
    const QString text = QString::number(static_cast<double>(s), 'f', 1).rightJustified(4);
    const QStringList parts = text.split(QLatin1Char('.'));
    const QString number = parts.size() == 2 && parts[1].toInt() == 0 ? parts[0] : text;
    return QStringLiteral("%1 %2").arg(number, QString::fromLatin1(units[step]));
}

std::optional<FileItem> FileItem::initWithURL(const FilePath& path)
{
    if (path.isEmpty()) return std::nullopt;
    FileItem item;
    item.setFilePath(path);
    return item;
}

void FileItem::setFilePath(const FilePath& path)
{
    filePath_ = path;
    const auto allocated = allocatedSize(path);
    if (allocated) size_ = static_cast<std::int32_t>(static_cast<std::uint32_t>(*allocated));
}

void FileItem::setPdfOpenPassword(const std::optional<QString>& password)
{
    pdfOpenPassword_ = password.value_or(QString());
    compression_ = 1;
    pages_ = getTiffPageCount(filePath_, pdfOpenPassword_, compression_);
}

void FileItem::countUnlocked(const QString& defaultPassword)
{
    if (pages_ > 0 || fileType() != FileType::Pdf) return;
    pages_ = pdf::pdfPageCount(filePath_, {}, {{pdfOpenPassword_, defaultPassword}});
}

void FileItem::takeCount(const PageCount& count)
{
    compression_ = count.compression;
    pages_ = count.pages;
}

void FileItem::takeCount(const FileItem& counted)
{
    pdfOpenPassword_ = counted.pdfOpenPassword_;
    compression_ = counted.compression_;
    pages_ = counted.pages_;
}

FileType FileItem::fileType() const
{
    const QString extension = type().toUpper();
    if (extension == QLatin1String("PDF")) return FileType::Pdf;
    const bool tiff = extension == QLatin1String("TIF") || extension == QLatin1String("TIFF");
    return tiff ? FileType::Tiff : FileType::Other;
}

QDateTime FileItem::dateModified() const
{
    return fileTimes(filePath_).modified.toLocalTime();
}

QDateTime FileItem::dateCreated() const
{
    return fileTimes(filePath_).created.toLocalTime();
}

QDateTime FileItem::dateAccessed() const
{
    return fileTimes(filePath_).accessed.toLocalTime();
}

QVariant FileItem::displayField(const QString& identifier, const QLocale& locale) const
{
    const auto date = [&](const QDateTime& moment) {
        return dateText(moment, QStringLiteral("dd-MMM-yyyy h:mm a"), locale);
    };
    const QString column = identifier.toUpper();
    if (column == QLatin1String("ISSELECTED")) return isSelected_;
    if (column == QLatin1String("NAME")) return readableName(name());
    if (column == QLatin1String("PAGES")) return pages_;
    if (column == QLatin1String("SIZEINKB")) return sizeInKB();
    if (column == QLatin1String("TYPE")) return readableName(type());
    if (column == QLatin1String("DATEMODIFIED")) return date(dateModified());
    if (column == QLatin1String("DATECREATED")) return date(dateCreated());
    if (column == QLatin1String("DATEACCESSED")) return date(dateAccessed());
    if (column == QLatin1String("LOCATION")) return readableName(location());
    return QString();
}

} // namespace quillfern
