#include "platform/pdf/PlainStreams.h"

#include "platform/pdf/FileInput.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace quillfern::pdf {

namespace {

/// The head of a stream object, read token by token from its first bytes.
class Head
{
  public:
    explicit Head(std::string_view bytes) : rest_(bytes), size_(bytes.size()) {}

    [[nodiscard]] std::size_t used() const { return size_ - rest_.size(); }

    bool take(std::string_view token)
    {
        skipSpace();
        if (!rest_.starts_with(token)) return false;
        rest_.remove_prefix(token.size());
        return true;
    }
    std::optional<std::int64_t> takeNumber()
    {
        skipSpace();
        std::int64_t number = 0;
        const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
        if (error != std::errc() || number < 0) return std::nullopt;
        rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
        return number;
    }
    /// The line end behind the keyword "stream" (ISO 32000-1, 7.3.8.1).
    bool takeLineEnd()
    {
        if (rest_.starts_with("\r\n"))
            rest_.remove_prefix(2);
        else if (rest_.starts_with('\n'))
            rest_.remove_prefix(1);
        else
            return false;
        return true;
    }

  private:
    void skipSpace()
    {
        while (!rest_.empty() && std::string_view(" \n\r\t\f").find(rest_.front()) != std::string_view::npos)
            rest_.remove_prefix(1);
    }

    std::string_view rest_;
    std::size_t size_;
};

struct Stated
{
    std::int64_t length = -1;
    bool isDeflated = false;
};

/// Reads "N 0 obj << … >> stream"; nothing when there is more in the dictionary than a length and a filter.
std::optional<Stated> readHead(Head& head, int number)
{
    if (head.takeNumber() != number || head.takeNumber() != 0 || !head.take("obj") || !head.take("<<"))
        return std::nullopt;
    Stated stated;
    while (!head.take(">>")) {
        if (head.take("/Length")) {
            const auto length = head.takeNumber();
            if (!length || stated.length >= 0) return std::nullopt;
            stated.length = *length;
        } else if (head.take("/Filter")) {
            const bool isArray = head.take("[");
            if (stated.isDeflated || !head.take("/FlateDecode") || (isArray && !head.take("]")))
                return std::nullopt;
            stated.isDeflated = true;
        } else {
            return std::nullopt; // a reference as the length, too: its "0 R" is no key
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

std::optional<PlainStreams::Place> PlainStreams::find(const QPDFObjGen& id)
{
    const auto found = offsets_.find(id.getObj());
    if (found == offsets_.end() || id.getGen() != 0) return std::nullopt;
    std::array<char, 160> first{};
    const std::size_t size = file_.copyAt(found->second, first.data(), first.size());
    Head head(std::string_view(first.data(), size));
    const std::optional<Stated> stated = readHead(head, id.getObj());
    const qpdf_offset_t start = found->second + static_cast<qpdf_offset_t>(head.used());
    if (!stated || stated->length > file_.fileSize() - start) return std::nullopt;
    return Place{start, static_cast<std::size_t>(stated->length), stated->isDeflated};
}

bool PlainStreams::isPlain(const QPDFObjGen& id)
{
    return find(id).has_value();
}

std::optional<PlainStreams::Bytes> PlainStreams::read(const QPDFObjGen& id)
{
    const std::optional<Place> place = find(id);
    if (!place) return std::nullopt;
    Bytes bytes{std::make_shared<Buffer>(place->length), place->isDeflated};
    char* const data = reinterpret_cast<char*>(bytes.raw->getBuffer());
    if (file_.copyAt(place->start, data, place->length) != place->length) return std::nullopt;
    std::array<char, 16> last{};
    const qpdf_offset_t end = place->start + static_cast<qpdf_offset_t>(place->length);
    const std::size_t after = file_.copyAt(end, last.data(), last.size());
    if (!Head(std::string_view(last.data(), after)).take("endstream")) return std::nullopt;
    return bytes;
}

std::vector<QPDFObjectHandle> contentStreams(QPDFObjectHandle page, PlainStreams& plain)
{
    QPDFObjectHandle contents = page.getKey("/Contents");
    const auto isStream = [&plain](QPDFObjectHandle& object) {
        return object.isIndirect() && (plain.isPlain(object.getObjGen()) || object.isStream());
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
