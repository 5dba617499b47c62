#include "platform/pdf/PlainStreams.h"

#include "platform/pdf/FileInput.h"
#include "platform/pdf/PlainParser.h"
#include "platform/pdf/SourceTable.h"

#include <array>
#include <string_view>

namespace quillfern::pdf {

namespace {

struct Stated
{
    std::int64_t length = -1;
    int lengthIn = 0; ///< the number of the object that states the length instead; 0 for none
    bool isDeflated = false;
};

bool takeFilter(PlainParser& head)
{
    const bool isArray = head.take("[");
    return head.takeWord("/FlateDecode") && (!isArray || head.take("]"));
}

/// Reads "N 0 obj << … >> stream"; nothing when there is more in the dictionary than a length and a filter.
std::optional<Stated> readHead(PlainParser& head, int number)
{
    if (head.takeNumber() != number || head.takeNumber() != 0 || !head.takeWord("obj") || !head.take("<<"))
        return std::nullopt;
    Stated stated;
    while (!head.take(">>")) {
        if (head.takeWord("/Length")) {
            const auto value = head.takeValue();
            if (!value || stated.length >= 0) return std::nullopt;
            stated.lengthIn = plainReference(*value).value_or(0);
            const auto length = stated.lengthIn > 0 ? 0 : plainNumber(*value);
            if (!length) return std::nullopt;
            stated.length = *length;
        } else if (!head.takeWord("/Filter") || stated.isDeflated || !takeFilter(head)) {
            return std::nullopt;
        } else {
            stated.isDeflated = true;
        }
    }
    if (stated.length < 0 || !head.take("stream") || !head.takeLineEnd()) return std::nullopt;
    return stated;
}

} // namespace

PlainStreams::PlainStreams(QPDF& document, FileInput& file) : file_(file)
{
    // In an encrypted document the bytes are not the stream's; behind other bytes the offsets are not the
    // file's.
    if (document.isEncrypted() || file.bytesAt(0, 5) != "%PDF-") return;
    for (const auto& [id, entry] : document.getXRefTable())
        if (entry.getType() == 1 && id.getGen() == 0) offsets_.emplace(id.getObj(), entry.getOffset());
}

PlainStreams::PlainStreams(const SourceTable& table, FileInput& file) : file_(file), table_(&table)
{
}

std::optional<std::int64_t> PlainStreams::offsetOf(int number) const
{
    if (table_) return table_->offsetOf(number);
    const auto found = offsets_.find(number);
    return found == offsets_.end() ? std::nullopt : std::optional(found->second);
}

/// The value of an object that is a whole number.
std::optional<std::int64_t> PlainStreams::wholeNumber(int number)
{
    const auto offset = offsetOf(number);
    if (!offset) return std::nullopt;
    std::array<char, 64> first{};
    const std::size_t size = file_.copyAt(*offset, first.data(), first.size());
    PlainParser object(std::string_view(first.data(), size));
    if (object.takeNumber() != number || object.takeNumber() != 0 || !object.takeWord("obj"))
        return std::nullopt;
    const auto value = object.takeNumber();
    return object.takeWord("endobj") ? value : std::nullopt;
}

std::optional<PlainStreams::Place> PlainStreams::find(const QPDFObjGen& id)
{
    const auto offset = id.getGen() == 0 ? offsetOf(id.getObj()) : std::nullopt;
    if (!offset) return std::nullopt;
    std::array<char, 160> first{};
    const std::size_t size = file_.copyAt(*offset, first.data(), first.size());
    PlainParser head(std::string_view(first.data(), size));
    const std::optional<Stated> stated = readHead(head, id.getObj());
    if (!stated) return std::nullopt;
    const auto length = stated->lengthIn > 0 ? wholeNumber(stated->lengthIn) : stated->length;
    const qpdf_offset_t start = *offset + static_cast<qpdf_offset_t>(head.used());
    if (!length || *length > file_.fileSize() - start) return std::nullopt;
    std::array<char, 32> last{};
    const std::size_t after = file_.copyAt(start + *length, last.data(), last.size());
    PlainParser end(std::string_view(last.data(), after));
    if (!end.takeWord("endstream") || !end.takeWord("endobj")) return std::nullopt;
    return Place{start, static_cast<std::size_t>(*length), stated->isDeflated};
}

bool PlainStreams::append(const Place& place, std::string& bytes)
{
    const std::size_t before = bytes.size();
    bytes.resize(before + place.length);
    return file_.copyAt(place.start, bytes.data() + before, place.length) == place.length;
}

std::vector<QPDFObjectHandle> contentStreams(QPDFObjectHandle page, PlainStreams& plain)
{
    QPDFObjectHandle contents = page.getKey("/Contents");
    const auto isStream = [&plain](QPDFObjectHandle& object) {
        return object.isIndirect() && (plain.find(object.getObjGen()) || object.isStream());
    };
    std::vector<QPDFObjectHandle> streams;
    if (isStream(contents)) {
        streams.push_back(contents);
    } else if (contents.isArray()) {
        for (int i = 0; i < contents.getArrayNItems(); ++i) {
            QPDFObjectHandle item = contents.getArrayItem(i);
            if (isStream(item)) streams.push_back(item);
        }
    }
    return streams;
}

} // namespace quillfern::pdf
