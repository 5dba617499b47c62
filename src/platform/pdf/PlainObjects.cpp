#include "platform/pdf/PlainObjects.h"

#include "platform/pdf/FileInput.h"
#include "platform/pdf/Inflate.h"
#include "platform/pdf/PlainParser.h"
#include "platform/system/Cancellation.h"

#include <algorithm>
#include <array>

namespace quillfern::pdf {

namespace {

/// What is larger is left to the library.
constexpr std::size_t largestPlainObject = std::size_t{4} << 20;
constexpr std::size_t largestUnpacked = std::size_t{64} << 20;

} // namespace

PlainObjects::PlainObjects(FileInput& file, SourceTable table)
    : file_(file), table_(std::move(table)), referenced_(table_.entries.size() + 1)
{
    PlainParser trailer(table_.trailer);
    trailer.markReferencesIn(referenced_);
    static_cast<void>(trailer.takeValue());
    highest_ = trailer.highestReference();
}

bool PlainObjects::isEveryReferenceSound() const
{
    for (std::size_t i = 0; i < referenced_.size(); ++i) {
        const bool isThere = i > 0 && i < table_.entries.size() &&
                             (table_.entries[i].kind == SourceTable::Kind::InStream ||
                              table_.offsetOf(static_cast<int>(i)).has_value());
        if (referenced_[i] && !isThere) return false;
    }
    return true;
}

std::optional<std::string_view> PlainObjects::value(int number)
{
    const auto place = static_cast<std::size_t>(number);
    if (number <= 0 || place >= table_.entries.size()) return std::nullopt;
    const SourceTable::Entry entry = table_.entries[place];
    if (entry.kind == SourceTable::Kind::InStream) return inStream(number, entry);
    if (entry.kind != SourceTable::Kind::InFile || entry.detail != 0) return std::nullopt;
    const auto found = inFile(number, entry);
    return found ? std::optional(found->value) : std::nullopt;
}

std::optional<PlainObjects::Found> PlainObjects::inFile(int number, const SourceTable::Entry& entry)
{
    // Most objects are small; a large one is found by reading more.
    for (std::size_t size = 512; size <= largestPlainObject; size *= 8) {
        text_.resize(size);
        text_.resize(file_.copyAt(entry.where, text_.data(), size));
        bool ranOut = false;
        if (const auto found = parsed(text_, number, entry, ranOut)) return found;
        if (!ranOut || text_.size() < size) return std::nullopt;
    }
    return std::nullopt;
}

std::optional<PlainObjects::Found> PlainObjects::parsed(std::string_view text, int number,
                                                        const SourceTable::Entry& entry, bool& ranOut)
{
    PlainParser parser(text);
    parser.markReferencesIn(referenced_);
    std::optional<Found> found;
    if (parser.takeNumber() == number && parser.takeNumber() == entry.detail && parser.takeWord("obj")) {
        if (const auto value = parser.takeValue()) {
            if (parser.takeWord("endobj")) {
                found = Found{*value, std::nullopt};
            } else if (parser.take("stream") && parser.takeLineEnd()) {
                found = Found{*value, entry.where + static_cast<std::int64_t>(parser.used())};
            }
        }
    }
    ranOut = !found && parser.ranOut();
    if (!isWorthwhile(parser.used())) return std::nullopt;
    if (found) highest_ = std::max(highest_, parser.highestReference());
    return found;
}

std::optional<std::string_view> PlainObjects::inStream(int number, const SourceTable::Entry& entry)
{
    if (entry.where <= 0 || entry.where >= static_cast<std::int64_t>(table_.entries.size()))
        return std::nullopt;
    const Unpacked* const stream = unpacked(static_cast<int>(entry.where));
    if (!stream) return std::nullopt;
    const auto found = stream->places.find(number);
    if (found == stream->places.end() || found->second.first != entry.detail) return std::nullopt;
    PlainParser parser(std::string_view(stream->data).substr(found->second.second));
    parser.markReferencesIn(referenced_);
    const auto value = parser.takeValue();
    highest_ = std::max(highest_, parser.highestReference());
    return isWorthwhile(parser.used()) ? value : std::nullopt;
}

bool PlainObjects::isWorthwhile(std::size_t parsed)
{
    constexpr std::int64_t always = std::int64_t{256} << 20;
    parsed_ += static_cast<std::int64_t>(parsed);
    return parsed_ <= always + 2 * file_.fileSize();
}

const PlainObjects::Unpacked* PlainObjects::unpacked(int number)
{
    auto& stream = unpacked_[number];
    if (!stream) {
        stream = std::make_unique<Unpacked>();
        if (!unpack(number, *stream)) *stream = {};
        unpackedSize_ += stream->data.size();
    }
    return stream->places.empty() ? nullptr : stream.get();
}

bool PlainObjects::unpack(int number, Unpacked& unpacked)
{
    const auto offset = table_.offsetOf(number);
    const auto found =
        offset ? inFile(number, table_.entries[static_cast<std::size_t>(number)]) : std::nullopt;
    if (!found || !found->data) return false;
    const auto dictionary = PlainDictionary::read(found->value);
    if (!dictionary || dictionary->value("/Type") != "/ObjStm" ||
        dictionary->value("/Filter") != "/FlateDecode" || !dictionary->value("/DecodeParms").empty())
        return false;
    const auto count = dictionary->number("/N");
    const auto first = dictionary->number("/First");
    const auto length = dictionary->number("/Length");
    if (!count || !first || !length || *length > static_cast<std::int64_t>(largestUnpacked)) return false;
    std::string raw(static_cast<std::size_t>(*length), '\0');
    if (file_.copyAt(*found->data, raw.data(), raw.size()) != raw.size() || !endsAt(*found->data + *length) ||
        !inflateWhole(raw, largestUnpacked - std::min(unpackedSize_, largestUnpacked), unpacked.data) ||
        *first > static_cast<std::int64_t>(unpacked.data.size()))
        return false;
    PlainParser parser(std::string_view(unpacked.data).substr(0, static_cast<std::size_t>(*first)));
    for (std::int64_t i = 0; i < *count; ++i) {
        const auto object = parser.takeNumber();
        const auto place = parser.takeNumber();
        if (!object || !place || *object >= static_cast<std::int64_t>(table_.entries.size()) ||
            *place >= static_cast<std::int64_t>(unpacked.data.size()) - *first)
            return false;
        unpacked.places[static_cast<int>(*object)] = {static_cast<int>(i),
                                                      static_cast<std::size_t>(*first + *place)};
    }
    return true;
}

std::optional<std::int64_t> PlainObjects::lengthOf(std::string_view dictionary)
{
    const auto entries = PlainDictionary::read(dictionary);
    if (!entries) return std::nullopt;
    const auto other = entries->reference("/Length");
    if (!other) return entries->number("/Length");
    const auto stated = value(*other);
    return stated ? plainNumber(*stated) : std::nullopt;
}

/// Whether a stream's data end here.
bool PlainObjects::endsAt(std::int64_t offset)
{
    std::array<char, 32> bytes{};
    const std::size_t size = file_.copyAt(offset, bytes.data(), bytes.size());
    PlainParser end(std::string_view(bytes.data(), size));
    return end.takeWord("endstream") && end.takeWord("endobj");
}

bool PlainObjects::readOthers(const std::vector<bool>& known, const std::stop_token& stop)
{
    for (std::size_t i = 1; i < table_.entries.size(); ++i) {
        throwIfCancelled(stop);
        if (known[i]) continue;
        const SourceTable::Entry& entry = table_.entries[i];
        const int number = static_cast<int>(i);
        if (entry.kind == SourceTable::Kind::InStream) {
            if (!inStream(number, entry)) return false;
        } else if (entry.kind == SourceTable::Kind::InFile) {
            const auto found = inFile(number, entry);
            if (!found) return false;
            if (!found->data) continue;
            const std::int64_t data = *found->data;
            const auto length = lengthOf(found->value); // `found` is no longer valid
            if (!length || *length > file_.fileSize() || !endsAt(data + *length)) return false;
        }
    }
    return true;
}

} // namespace quillfern::pdf
