#include "platform/pdf/SourceTable.h"

#include "platform/pdf/FileInput.h"
#include "platform/pdf/Inflate.h"
#include "platform/pdf/PlainParser.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>

namespace quillfern::pdf {

namespace {

constexpr std::int64_t mostObjects = 7'000'000;
constexpr std::size_t mostSections = 1000;
/// Of all sections together, so that small files cannot take minutes.
constexpr std::int64_t mostRows = 4 * mostObjects;
constexpr std::int64_t largestTrailer = 1 << 16;
constexpr std::int64_t largestStream = std::int64_t{128} << 20;

std::optional<std::int64_t> tableNumber(std::string_view text)
{
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < 0) return std::nullopt;
    return number;
}

class TableReader
{
  public:
    explicit TableReader(FileInput& source) : source_(source) {}

    std::optional<SourceTable> run(std::int64_t start)
    {
        std::set<std::int64_t> seen;
        std::optional<std::int64_t> next = start;
        while (next) {
            if (!seen.insert(*next).second || seen.size() > mostSections) return std::nullopt;
            const auto trailer = readSection(*next);
            if (!trailer) return std::nullopt;
            const auto dictionary = PlainDictionary::read(*trailer);
            if (!dictionary || !dictionary->value("/Encrypt").empty()) return std::nullopt;
            // Of a hybrid file: objects that older readers are not to see.
            if (const std::string_view hidden = dictionary->value("/XRefStm"); !hidden.empty()) {
                const auto offset = plainNumber(hidden);
                isHidden_ = true;
                if (!offset || !readStream(*offset)) return std::nullopt;
                isHidden_ = false;
            }
            if (table_.trailer.empty()) table_.trailer = *trailer;
            const std::string_view before = dictionary->value("/Prev");
            next = plainNumber(before);
            if (!before.empty() && !next) return std::nullopt;
        }
        return std::move(table_);
    }

  private:
    [[nodiscard]] std::string bytesAt(std::int64_t offset, std::int64_t length)
    {
        if (offset < 0 || offset >= source_.fileSize()) return {};
        std::string bytes(
            static_cast<std::size_t>(std::min<std::int64_t>(length, source_.fileSize() - offset)), '\0');
        bytes.resize(source_.copyAt(offset, bytes.data(), bytes.size()));
        return bytes;
    }

    /// The section's trailer dictionary.
    std::optional<std::string> readSection(std::int64_t offset)
    {
        return bytesAt(offset, 4) == "xref" ? readTable(offset) : readStream(offset);
    }

    bool note(std::int64_t number, const SourceTable::Entry& entry)
    {
        if (number < 0 || number > mostObjects || ++rows_ > mostRows) return false;
        const auto place = static_cast<std::size_t>(number);
        if (place >= table_.entries.size()) table_.entries.resize(place + 1);
        SourceTable::Entry& present = table_.entries[place];
        // The table may call a hidden object free (ISO 32000-1, 7.5.8.4), and readers differ on which holds.
        if (isHidden_ && number > 0 && present.kind == SourceTable::Kind::Free) return false;
        if (present.kind == SourceTable::Kind::None) present = entry;
        return true;
    }

    bool noteRow(std::int64_t number, std::string_view row)
    {
        // 20 bytes, as the format prescribes.
        const auto where = tableNumber(row.substr(0, 10));
        const auto generation = tableNumber(row.substr(11, 5));
        const char kind = row[17];
        const bool ends = (row[18] == ' ' || row[18] == '\r') && (row[19] == '\n' || row[19] == '\r');
        if (!where || !generation || *generation > 65535 || row[10] != ' ' || row[16] != ' ' || !ends ||
            (kind != 'n' && kind != 'f'))
            return false;
        return note(number, {*where, static_cast<std::int32_t>(*generation),
                             kind == 'n' ? SourceTable::Kind::InFile : SourceTable::Kind::Free});
    }

    std::optional<std::string> readTable(std::int64_t offset)
    {
        std::string text = bytesAt(offset, largestTrailer);
        std::size_t used = 0;
        {
            PlainParser parser(text);
            if (!parser.take("xref")) return std::nullopt;
            used = parser.used();
        }
        for (;;) {
            offset += static_cast<std::int64_t>(used);
            text = bytesAt(offset, 64);
            PlainParser parser(text);
            if (parser.take("trailer")) return readTrailer(offset + static_cast<std::int64_t>(parser.used()));
            const auto first = parser.takeNumber();
            const auto count = parser.takeNumber();
            if (!first || !count || *count > mostObjects || *first > mostObjects) return std::nullopt;
            parser.take(" ");
            used = parser.used();
            while (used < text.size() && (text[used] == '\r' || text[used] == '\n' || text[used] == ' '))
                ++used;
            offset += static_cast<std::int64_t>(used);
            if (!readRows(offset, *first, *count)) return std::nullopt;
            used = static_cast<std::size_t>(*count) * rowSize;
        }
    }

    bool readRows(std::int64_t offset, std::int64_t first, std::int64_t count)
    {
        constexpr std::int64_t rowsAtOnce = 4096;
        for (std::int64_t done = 0; done < count; done += rowsAtOnce) {
            const std::int64_t part = std::min(rowsAtOnce, count - done);
            const std::string rows = bytesAt(offset + done * rowSize, part * rowSize);
            if (static_cast<std::int64_t>(rows.size()) != part * rowSize) return false;
            for (std::int64_t i = 0; i < part; ++i)
                if (!noteRow(first + done + i,
                             std::string_view(rows).substr(static_cast<std::size_t>(i) * rowSize, rowSize)))
                    return false;
        }
        return true;
    }

    std::optional<std::string> readTrailer(std::int64_t offset)
    {
        const std::string text = bytesAt(offset, largestTrailer);
        PlainParser parser(text);
        const auto dictionary = parser.takeValue();
        if (!dictionary || !dictionary->starts_with("<<")) return std::nullopt;
        return std::string(*dictionary);
    }

    std::optional<std::string> readStream(std::int64_t offset)
    {
        const std::string text = bytesAt(offset, largestTrailer);
        PlainParser parser(text);
        if (!parser.takeNumber() || !parser.takeNumber() || !parser.takeWord("obj")) return std::nullopt;
        const std::size_t start = parser.used();
        const auto dictionary = PlainDictionary::take(parser);
        if (!dictionary || dictionary->value("/Type") != "/XRef") return std::nullopt;
        const std::size_t end = parser.used();
        const auto length = dictionary->number("/Length");
        if (!length || *length > largestStream || !parser.take("stream") || !parser.takeLineEnd())
            return std::nullopt;
        const std::string raw = bytesAt(offset + static_cast<std::int64_t>(parser.used()), *length);
        if (static_cast<std::int64_t>(raw.size()) != *length || !readEntries(*dictionary, raw))
            return std::nullopt;
        return text.substr(start, end - start);
    }

    bool readEntries(const PlainDictionary& dictionary, const std::string& raw)
    {
        const auto widths = numbersIn(dictionary.value("/W"));
        const auto size = dictionary.number("/Size");
        if (!size || widths.size() != 3 || std::max({widths[0], widths[1], widths[2]}) > 8) return false;
        std::vector<std::int64_t> index = numbersIn(dictionary.value("/Index"));
        if (index.empty() && dictionary.value("/Index").empty()) index = {0, *size};
        const auto width = static_cast<std::size_t>(widths[0] + widths[1] + widths[2]);
        const auto rows = decodedRows(dictionary, raw, width);
        if (!rows || width == 0 || index.size() % 2 != 0) return false;
        std::size_t at = 0;
        const auto column = [&](std::int64_t bytes, std::int64_t missing) {
            if (bytes == 0) return missing;
            std::uint64_t value = 0;
            for (; bytes > 0; --bytes)
                value = value << 8 | static_cast<unsigned char>((*rows)[at++]);
            return static_cast<std::int64_t>(value);
        };
        for (std::size_t run = 0; run < index.size(); run += 2) {
            if (index[run + 1] > mostObjects) return false;
            for (std::int64_t i = 0; i < index[run + 1]; ++i) {
                if (at + width > rows->size()) return false;
                const std::int64_t type = column(widths[0], 1);
                const std::int64_t where = column(widths[1], 0);
                const std::int64_t detail = column(widths[2], 0);
                if (type < 0 || type > 2 || where < 0 || detail < 0 || detail > mostObjects) return false;
                constexpr std::array kinds{SourceTable::Kind::Free, SourceTable::Kind::InFile,
                                           SourceTable::Kind::InStream};
                if (!note(index[run] + i,
                          {where, static_cast<std::int32_t>(detail), kinds[static_cast<std::size_t>(type)]}))
                    return false;
            }
        }
        return at == rows->size();
    }

    static std::vector<std::int64_t> numbersIn(std::string_view array)
    {
        std::vector<std::int64_t> numbers;
        PlainParser parser(array);
        if (!parser.take("[")) return {};
        while (!parser.take("]")) {
            const auto number = parser.takeNumber();
            if (!number) return {};
            numbers.push_back(*number);
        }
        return numbers;
    }

    /// The rows without their filters: none, or FlateDecode with or without PNG's "none" and "up" predictors.
    static std::optional<std::string> decodedRows(const PlainDictionary& dictionary, const std::string& raw,
                                                  std::size_t width)
    {
        if (dictionary.value("/Filter").empty()) return raw;
        std::string rows;
        if (dictionary.value("/Filter") != "/FlateDecode" ||
            !inflateWhole(raw, static_cast<std::size_t>(largestStream), rows))
            return std::nullopt;
        const std::string_view parameters = dictionary.value("/DecodeParms");
        if (parameters.empty()) return rows;
        const auto stated = PlainDictionary::read(parameters);
        if (!stated || stated->number("/Predictor").value_or(0) < 10 ||
            stated->number("/Columns") != static_cast<std::int64_t>(width) ||
            !stated->value("/Colors").empty() || !stated->value("/BitsPerComponent").empty() ||
            rows.size() % (width + 1) != 0)
            return std::nullopt;
        std::string plain;
        plain.reserve(rows.size());
        for (std::size_t at = 0; at < rows.size(); at += width + 1) {
            const char filter = rows[at];
            if (filter != 0 && filter != 2) return std::nullopt;
            for (std::size_t i = 0; i < width; ++i) {
                const char above = filter == 0 || at == 0 ? '\0' : plain[plain.size() - width];
                plain += static_cast<char>(rows[at + 1 + i] + above);
            }
        }
        return plain;
    }

    static constexpr std::int64_t rowSize = 20;
    FileInput& source_;
    SourceTable table_;
    std::int64_t rows_ = 0; ///< of all sections
    bool isHidden_ = false; ///< the section is the hidden one of a hybrid file
};

} // namespace

std::optional<SourceTable> readSourceTable(FileInput& source, const SourceEnd& end)
{
    return TableReader(source).run(end.crossReference);
}

} // namespace quillfern::pdf
