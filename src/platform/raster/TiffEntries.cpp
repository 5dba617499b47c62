#include "platform/raster/TiffEntries.h"

#include "platform/raster/TiffFile.h"

#include <QtEndian>
#include <algorithm>
#include <array>

namespace quillfern::raster {

namespace {

constexpr std::array<std::uint64_t, 19> typeSizes = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};

} // namespace

template <class T>
T TiffEntries::number(const QByteArray& bytes, qsizetype at) const
{
    if (at + qsizetype{sizeof(T)} > bytes.size()) return 0;
    return isLittle_ ? qFromLittleEndian<T>(bytes.constData() + at)
                     : qFromBigEndian<T>(bytes.constData() + at);
}

TiffEntries::TiffEntries(const TiffFile& file) : file_(file)
{
    const QByteArray header = file.at(0, 4);
    isLittle_ = header.startsWith("II");
    const bool isBig = number<quint16>(header, 2) == 43;
    const std::uint64_t start = TIFFCurrentDirOffset(file.handle());
    const qsizetype countSize = isBig ? 8 : 2;
    const qsizetype entrySize = isBig ? 20 : 12;
    const qsizetype wordSize = isBig ? 8 : 4;
    const QByteArray head = file.at(start, countSize);
    const std::uint64_t count = isBig ? number<quint64>(head, 0) : number<quint16>(head, 0);
    constexpr std::uint64_t most = 4096; // of sensible directories
    const auto first = start + static_cast<std::uint64_t>(countSize);
    const QByteArray bytes = file.at(first, static_cast<qsizetype>(std::min(count, most)) * entrySize);
    end_ = first + static_cast<std::uint64_t>(bytes.size() + wordSize);
    for (qsizetype at = 0; at + entrySize <= bytes.size(); at += entrySize) {
        const auto type = number<quint16>(bytes, at + 2);
        const std::uint64_t values = isBig ? number<quint64>(bytes, at + 4) : number<quint32>(bytes, at + 4);
        if (type >= typeSizes.size() || values > file.size()) continue;
        Entry entry{number<quint16>(bytes, at), 0, values * typeSizes[type]};
        const qsizetype field = at + entrySize - wordSize;
        if (entry.size <= static_cast<std::uint64_t>(wordSize))
            entry.offset = first + static_cast<std::uint64_t>(field);
        else
            entry.offset = isBig ? number<quint64>(bytes, field) : number<quint32>(bytes, field);
        if (entry.offset > file.size()) continue;
        end_ = std::max(end_, entry.offset + entry.size);
        entries_.push_back(entry);
    }
}

QByteArray TiffEntries::bytes(std::uint16_t tag) const
{
    for (const Entry& entry : entries_) {
        if (entry.tag != tag || entry.offset + entry.size > file_.size()) continue;
        return file_.at(entry.offset, static_cast<qsizetype>(entry.size));
    }
    return {};
}

bool isFilledByPages(TiffFile& file, int count)
{
    TIFF* tiff = file.handle();
    std::uint64_t end = 0;
    bool isRead = TIFFSetDirectory(tiff, 0) == 1;
    for (int page = 0; isRead && page < count; ++page) {
        end = std::max(end, TiffEntries(file).end());
        const std::uint32_t strips = TIFFIsTiled(tiff) ? TIFFNumberOfTiles(tiff) : TIFFNumberOfStrips(tiff);
        for (std::uint32_t i = 0; i < strips; ++i)
            end = std::max(end, TIFFGetStrileOffset(tiff, i) + TIFFGetStrileByteCount(tiff, i));
        isRead = page + 1 == count || TIFFReadDirectory(tiff) == 1;
    }
    constexpr std::uint64_t fill = 16; // bytes that round a file up
    return TIFFSetDirectory(tiff, 0) == 1 && isRead && end + fill >= file.size();
}

} // namespace quillfern::raster
