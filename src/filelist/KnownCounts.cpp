#include "filelist/KnownCounts.h"

#include "platform/system/Failure.h"
#include "platform/system/FileIdentity.h"

namespace quillfern {

namespace {

constexpr QByteArrayView header("pages\tcompression\tsize\tpath");

} // namespace

KnownCounts::KnownCounts(const QByteArray& text)
{
    qsizetype number = 0;
    for (const QByteArray& line : text.split('\n')) {
        ++number;
        if (number == 1 ? line == header : line.isEmpty()) continue;
        const QList<QByteArray> fields = line.split('\t');
        bool arePages = false;
        bool isCode = false;
        bool isSize = false;
        Entry entry;
        if (fields.size() >= 4) {
            entry.count.pages = fields[0].toInt(&arePages);
            entry.count.compression = fields[1].toInt(&isCode);
            entry.size = fields[2].toLongLong(&isSize);
        }
        if (number == 1 || !arePages || entry.count.pages < 0 || !isCode || !isSize)
            throw Failure({QT_TRANSLATE_NOOP("quillfern::Failure", "Line %1 is no line of page counts."),
                           {QString::number(number)}});
        const qsizetype path = fields[0].size() + fields[1].size() + fields[2].size() + 3;
        entries_.insert(FilePath::fromBytes(line.mid(path)), entry);
    }
}

QByteArray KnownCounts::text(const std::vector<FileItem>& files)
{
    QByteArray text = header.toByteArray() + '\n';
    for (const FileItem& file : files) {
        const QByteArray& path = file.filePath().bytes();
        const auto version = fileVersion(file.filePath());
        if (!version || path.contains('\n')) continue;
        text += QByteArray::number(file.pages()) + '\t' + QByteArray::number(file.compression()) + '\t' +
                QByteArray::number(static_cast<qlonglong>(version->size)) + '\t' + path + '\n';
    }
    return text;
}

std::optional<PageCount> KnownCounts::of(const FilePath& path) const
{
    const auto found = entries_.constFind(path);
    if (found == entries_.constEnd()) return std::nullopt;
    const auto version = fileVersion(path);
    return version && version->size == found->size ? std::optional(found->count) : std::nullopt;
}

} // namespace quillfern
