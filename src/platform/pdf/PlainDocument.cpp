#include "platform/pdf/PlainDocument.h"

#include "platform/pdf/FileInput.h"
#include "platform/pdf/PlainParser.h"
#include "platform/system/Cancellation.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace quillfern::pdf {

namespace {

constexpr int deepestPlainTree = 50;
/// Some viewers read no higher object numbers.
constexpr int highestNewNumber = 7'000'000;

std::optional<double> realNumber(std::string_view text)
{
    double number = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number))
        return std::nullopt;
    return number;
}

std::optional<QRectF> rectangle(std::string_view array)
{
    PlainParser parser(array);
    if (!parser.take("[")) return std::nullopt;
    std::array<double, 4> v{};
    for (double& side : v) {
        const auto value = parser.takeValue();
        const auto number = value ? realNumber(*value) : std::nullopt;
        if (!number) return std::nullopt;
        side = *number;
    }
    const QRectF box(QPointF(std::min(v[0], v[2]), std::min(v[1], v[3])),
                     QPointF(std::max(v[0], v[2]), std::max(v[1], v[3])));
    if (!parser.take("]") || !(box.width() > 0) || !(box.height() > 0)) return std::nullopt;
    return box;
}

std::optional<std::vector<int>> references(std::string_view array)
{
    PlainParser parser(array);
    if (!parser.take("[")) return std::nullopt;
    std::vector<int> numbers;
    while (!parser.take("]")) {
        const auto number = parser.takeReference();
        if (!number) return std::nullopt;
        numbers.push_back(*number);
    }
    return numbers;
}

void appendBigEndian(std::string& bytes, std::int64_t value, int width)
{
    for (int shift = 8 * (width - 1); shift >= 0; shift -= 8)
        bytes += static_cast<char>((value >> shift) & 0xFF);
}

} // namespace

/// What a page has from the nodes above.
struct PlainDocument::Inherited
{
    std::optional<QRectF> mediaBox;
    bool hasCropBox = false;
    double rotation = 0;
    std::shared_ptr<const std::string> resources;
    int resourcesOf = 0;
};

PlainDocument::PlainDocument(FileInput& file, SourceTable table)
    : objects_(file, std::move(table)), streams_(objects_.table(), file)
{
}

std::unique_ptr<PlainDocument> PlainDocument::read(FileInput& file, const SourceEnd& end,
                                                   const std::stop_token& stop)
{
    auto table = readSourceTable(file, end);
    if (!table) return nullptr;
    std::unique_ptr<PlainDocument> document(new PlainDocument(file, std::move(*table)));
    document->stop_ = stop;
    return document->readTable(stop) ? std::move(document) : nullptr;
}

bool PlainDocument::readTable(const std::stop_token& stop)
{
    const SourceTable& table = objects_.table();
    const auto trailer = PlainDictionary::read(table.trailer);
    // Another size than that is damage, for which the library reads everything.
    if (!trailer || trailer->number("/Size") != static_cast<std::int64_t>(table.entries.size())) return false;
    const auto rootNumber = trailer->reference("/Root");
    const auto root = rootNumber ? objects_.value(*rootNumber) : std::nullopt;
    const auto catalogue = root ? PlainDictionary::read(*root) : std::nullopt;
    const auto pages = catalogue ? catalogue->reference("/Pages") : std::nullopt;
    if (!pages) return false;
    seen_.assign(table.entries.size(), false);
    if (!readNode(*pages, 0, {}, 0) || pages_.empty()) return false;
    for (const int content : contents_)
        seen_[static_cast<std::size_t>(content)] = true;
    // The library is not to see these, and makes the resources of stamped pages.
    if (std::any_of(pages_.begin(), pages_.end(), [this](const PlainPage& page) {
            return page.resources && refersToSeen(*page.resources);
        }))
        return false;
    // A few objects cost little, and all references are known then, also those to nothing.
    const auto others = static_cast<std::size_t>(std::count(seen_.begin(), seen_.end(), false));
    if (others <= smallFile && !objects_.readOthers(seen_, stop)) return false;
    isEveryReferenceSound_ = others <= smallFile && objects_.isEveryReferenceSound();
    nextNumber_ = std::max(static_cast<int>(table.entries.size()), objects_.highestReference() + 1);
    seen_ = {};
    return nextNumber_ <= highestNewNumber;
}

std::optional<int> PlainDocument::statedCount(FileInput& file, const SourceEnd& end)
{
    auto table = readSourceTable(file, end);
    if (!table) return std::nullopt;
    PlainObjects objects(file, std::move(*table));
    const auto entriesOf = [&objects](std::optional<int> number) -> std::optional<std::string> {
        const auto text = number ? objects.value(*number) : std::nullopt;
        return text ? std::optional(std::string(*text)) : std::nullopt;
    };
    const auto trailer = PlainDictionary::read(objects.table().trailer);
    const auto catalogueText = trailer ? entriesOf(trailer->reference("/Root")) : std::nullopt;
    const auto catalogue = catalogueText ? PlainDictionary::read(*catalogueText) : std::nullopt;
    const auto rootText = catalogue ? entriesOf(catalogue->reference("/Pages")) : std::nullopt;
    const auto root = rootText ? PlainDictionary::read(*rootText) : std::nullopt;
    const auto count = root ? root->number("/Count") : std::nullopt;
    const auto kids = root ? references(root->value("/Kids")) : std::nullopt;
    if (!count || *count <= 0 || *count > std::numeric_limits<int>::max() || !kids) return std::nullopt;
    if (static_cast<std::int64_t>(kids->size()) == *count)
        return static_cast<int>(*count); // flat, as most are
    std::int64_t sum = 0;
    for (const int number : *kids) {
        const auto text = entriesOf(number);
        const auto kid = text ? PlainDictionary::read(*text) : std::nullopt;
        const bool isInner = kid && !kid->value("/Kids").empty();
        const auto below = isInner ? kid->number("/Count") : std::optional<std::int64_t>(1);
        if (!kid || !below) return std::nullopt;
        sum += *below;
    }
    return sum == *count ? std::optional(static_cast<int>(*count)) : std::nullopt;
}

bool PlainDocument::isFirstSight(int number)
{
    const auto place = static_cast<std::size_t>(number);
    if (place >= seen_.size() || seen_[place]) return false;
    seen_[place] = true;
    return true;
}

bool PlainDocument::refersToSeen(std::string_view resources) const
{
    const auto isSeen = [this](std::string_view value) {
        const auto number = static_cast<std::size_t>(plainReference(value).value_or(0));
        return number < seen_.size() && seen_[number];
    };
    const auto entries = PlainDictionary::read(resources);
    return isSeen(resources) ||
           (entries && std::any_of(entries->entries().begin(), entries->entries().end(),
                                   [&](const PlainDictionary::Entry& entry) { return isSeen(entry.value); }));
}

std::optional<std::string> PlainDocument::resolved(std::string_view value)
{
    const auto other = plainReference(value);
    if (!other) return std::string(value);
    const auto text = objects_.value(*other);
    return text ? std::optional(std::string(*text)) : std::nullopt;
}

bool PlainDocument::readInherited(const PlainDictionary& dictionary, int number, Inherited& inherited)
{
    if (const auto value = dictionary.value("/MediaBox"); !value.empty()) {
        const auto text = resolved(value);
        inherited.mediaBox = text ? rectangle(*text) : std::nullopt;
        if (!inherited.mediaBox) return false;
    }
    if (const auto value = dictionary.value("/Rotate"); !value.empty()) {
        const auto text = resolved(value);
        const auto degrees = text ? realNumber(*text) : std::nullopt;
        if (!degrees) return false;
        inherited.rotation = *degrees;
    }
    if (const auto value = dictionary.value("/Resources"); !value.empty()) {
        if (!value.starts_with("<<") && !plainReference(value)) return false;
        inherited.resources = std::make_shared<const std::string>(value);
        inherited.resourcesOf = number;
    }
    return true;
}

bool PlainDocument::readNode(int number, int parent, const Inherited& above, int depth)
{
    throwIfCancelled(stop_);
    const auto found = objects_.value(number);
    if (!found || depth > deepestPlainTree || !isFirstSight(number)) return false;
    const std::string text(*found);
    const auto dictionary = PlainDictionary::read(text);
    if (!dictionary) return false;
    const bool isChild = parent != 0 || !dictionary->value("/Parent").empty();
    if (isChild && dictionary->reference("/Parent") != parent) return false;
    const std::string_view kids = dictionary->value("/Kids");
    if (kids.empty()) return parent != 0 && readPage(number, text, above);
    if (dictionary->value("/Type") != "/Pages") return false;
    Inherited inherited = above;
    if (!readInherited(*dictionary, number, inherited)) return false;
    inherited.hasCropBox = inherited.hasCropBox || !dictionary->value("/CropBox").empty();
    const auto list = resolved(kids);
    const auto numbers = list ? references(*list) : std::nullopt;
    const auto count = dictionary->number("/Count");
    const auto before = static_cast<std::int64_t>(pages_.size());
    return numbers && count && readKids(*numbers, number, inherited, depth) &&
           static_cast<std::int64_t>(pages_.size()) - before == *count;
}

bool PlainDocument::readKids(const std::vector<int>& kids, int number, const Inherited& inherited, int depth)
{
    return std::all_of(kids.begin(), kids.end(),
                       [&](int kid) { return readNode(kid, number, inherited, depth + 1); });
}

bool PlainDocument::readPage(int number, std::string text, const Inherited& above)
{
    const auto dictionary = PlainDictionary::read(text);
    Inherited own = above;
    if (!dictionary || dictionary->value("/Type") != "/Page" || !readInherited(*dictionary, number, own) ||
        !own.mediaBox)
        return false;
    double unit = 1;
    if (const auto value = dictionary->value("/UserUnit"); !value.empty()) {
        const auto stated = realNumber(value);
        if (!stated || *stated <= 0) return false;
        unit = *stated;
    }
    PlainPage page;
    page.number = number;
    page.box = PdfPageBox(*own.mediaBox, own.rotation, unit);
    page.inheritsCropBox = above.hasCropBox;
    page.resources = own.resources;
    page.resourcesOf = own.resourcesOf == number ? 0 : own.resourcesOf;
    const std::string_view contents = dictionary->value("/Contents");
    if (!contents.empty() && !readContents(contents, page)) return false;
    page.text = std::move(text);
    pages_.push_back(std::move(page));
    return true;
}

bool PlainDocument::readContents(std::string_view value, PlainPage& page)
{
    page.firstContent = contents_.size();
    const auto add = [this](int number) {
        const auto place = streams_.find(QPDFObjGen(number, 0));
        if (place) {
            contents_.push_back(number);
            places_.push_back(*place);
        }
        return place.has_value();
    };
    const auto single = plainReference(value);
    if (!single || !add(*single)) {
        const auto array = resolved(value);
        const auto numbers = array ? references(*array) : std::nullopt;
        if (!numbers || !std::all_of(numbers->begin(), numbers->end(), add)) return false;
    }
    page.contentCount = contents_.size() - page.firstContent;
    return true;
}

void PlainDocument::addPlaceholders(QPDF& document, int kept) const
{
    for (std::size_t i = 0; i < pages_.size(); ++i)
        if (static_cast<int>(i) != kept)
            document.replaceObject(
                QPDFObjGen(pages_[i].number, 0),
                QPDFObjectHandle::newDictionary({{"/Type", QPDFObjectHandle::newName("/Page")}}));
}

std::string PlainDocument::libraryTail(const FileInput& file, int kept) const
{
    const SourceTable& table = objects_.table();
    std::vector<bool> isHidden(table.entries.size());
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        if (static_cast<int>(i) == kept) continue;
        isHidden[static_cast<std::size_t>(pages_[i].number)] = true;
        for (const int number : contentOf(pages_[i]))
            isHidden[static_cast<std::size_t>(number)] = true;
    }
    if (kept >= 0)
        for (const int number : contentOf(pages_[static_cast<std::size_t>(kept)]))
            isHidden[static_cast<std::size_t>(number)] = false;

    std::string index;
    std::string rows;
    std::size_t first = 0;
    const auto endRun = [&](std::size_t end) {
        if (end > first) index += std::to_string(first) + ' ' + std::to_string(end - first) + ' ';
        first = end + 1;
    };
    for (std::size_t i = 0; i < table.entries.size(); ++i) {
        const SourceTable::Entry& entry = table.entries[i];
        const bool isLast = i + 1 == table.entries.size(); // which the reader compares with /Size
        const bool isUsed = !isHidden[i] && (entry.kind == SourceTable::Kind::InFile ||
                                             entry.kind == SourceTable::Kind::InStream);
        if (!isUsed && !isLast) {
            endRun(i);
            continue;
        }
        appendBigEndian(rows, !isUsed ? 0 : entry.kind == SourceTable::Kind::InFile ? 1 : 2, 1);
        appendBigEndian(rows, isUsed ? entry.where : 0, 8);
        appendBigEndian(rows, isUsed ? entry.detail : 0, 4);
    }
    endRun(table.entries.size());

    static constexpr std::array<std::string_view, 13> ofSection{
        "/Prev", "/XRefStm", "/Type",    "/W",           "/Index", "/DL",          "/Length",
        "/F",    "/Filter",  "/FFilter", "/DecodeParms", "/Root",  "/FDecodeParms"};
    const auto trailer = PlainDictionary::read(table.trailer);
    // A generation that nothing refers to.
    const std::string head = "\n" + std::to_string(table.entries.size()) + " 65535 obj\n";
    std::string tail = head + "<< /Type /XRef /W [1 8 4] /Index [" + index + "] /Length " +
                       std::to_string(rows.size()) + " /Root " + std::string(trailer->value("/Root"));
    for (const PlainDictionary::Entry& entry : trailer->entries())
        if (std::find(ofSection.begin(), ofSection.end(), entry.key) == ofSection.end()) {
            tail += ' ';
            tail += entry.key;
            tail += ' ';
            tail += entry.value;
        }
    return tail + " >>\nstream\n" + rows + "\nendstream\nendobj\nstartxref\n" +
           std::to_string(file.fileSize() + 1) + "\n%%EOF\n";
}

} // namespace quillfern::pdf
