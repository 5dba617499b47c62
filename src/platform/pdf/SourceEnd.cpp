#include "platform/pdf/SourceEnd.h"

#include "platform/pdf/FileInput.h"

#include <QByteArray>
#include <algorithm>

namespace quillfern::pdf {

namespace {

bool isSpace(char c)
{
    return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\f' || c == '\0';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

qsizetype skipSpace(const QByteArray& bytes, qsizetype at)
{
    while (at < bytes.size() && isSpace(bytes[at]))
        ++at;
    return at;
}

/// The number behind the last "startxref" of these bytes.
std::optional<std::int64_t> lastStart(const QByteArray& tail)
{
    constexpr QByteArrayView keyword("startxref");
    const qsizetype found = tail.lastIndexOf(keyword);
    if (found < 0) return std::nullopt;
    const qsizetype first = skipSpace(tail, found + keyword.size());
    qsizetype end = first;
    while (end < tail.size() && isDigit(tail[end]))
        ++end;
    bool isNumber = false;
    const qlonglong offset = tail.sliced(first, end - first).toLongLong(&isNumber);
    return isNumber ? std::optional<std::int64_t>(offset) : std::nullopt;
}

} // namespace

std::optional<SourceEnd> findSourceEnd(const FileInput& source)
{
    // The reader of the document looks as far back for the keyword, so both mean the same section.
    constexpr std::int64_t lookBack = 1054;
    SourceEnd end;
    end.size = source.fileSize();
    if (source.bytesAt(0, 5) != "%PDF-") return std::nullopt;
    const std::int64_t from = std::max<std::int64_t>(0, end.size - lookBack);
    const auto start = lastStart(source.bytesAt(from, end.size - from));
    if (!start || *start <= 0 || *start >= end.size) return std::nullopt;
    end.crossReference = *start;
    const QByteArray section = source.bytesAt(*start, std::min<std::int64_t>(64, end.size - *start));
    const qsizetype first = skipSpace(section, 0);
    end.isStream = first < section.size() && isDigit(section[first]);
    if (!end.isStream && !section.sliced(first).startsWith("xref")) return std::nullopt;
    return end;
}

bool canContinue(const SourceEnd& end)
{
    // A cross-reference table has ten digits for an offset.
    constexpr std::int64_t largestWithTable = 9'000'000'000;
    return end.isStream || end.size <= largestWithTable;
}

} // namespace quillfern::pdf
