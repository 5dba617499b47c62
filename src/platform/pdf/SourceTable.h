#pragma once

#include "platform/pdf/SourceEnd.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quillfern::pdf {

class FileInput;

/// Where the objects of a file are: its cross-reference sections, the newer before the older (ISO 32000-1,
/// 7.5.4, 7.5.6 and 7.5.8), in sixteen bytes an object. The document's library would take twenty times the
/// memory and time.
struct SourceTable
{
    enum class Kind : std::uint8_t { None, Free, InFile, InStream };
    struct Entry
    {
        std::int64_t where = 0;  ///< offset from the file's start, or the number of the object stream
        std::int32_t detail = 0; ///< generation, or the index in the object stream
        Kind kind = Kind::None;
    };

    /// Where an object of generation 0 begins that is no part of an object stream.
    [[nodiscard]] std::optional<std::int64_t> offsetOf(int number) const
    {
        const auto place = static_cast<std::size_t>(number);
        if (number <= 0 || place >= entries.size() || entries[place].kind != Kind::InFile ||
            entries[place].detail != 0)
            return std::nullopt;
        return entries[place].where;
    }

    std::vector<Entry> entries; ///< by object number
    std::string trailer;        ///< the newest trailer's dictionary, or that of its cross-reference stream
};

/// Nothing where a section is not just as the format has it, or the file is encrypted. Throws Failure when
/// the file cannot be read.
[[nodiscard]] std::optional<SourceTable> readSourceTable(FileInput& source, const SourceEnd& end);

} // namespace quillfern::pdf
