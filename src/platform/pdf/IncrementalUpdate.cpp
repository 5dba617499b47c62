#include "platform/pdf/IncrementalUpdate.h"

#include "platform/pdf/NewObjects.h"
#include "platform/store/AtomicFile.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>
#include <qpdf/Buffer.hh>
#include <set>

namespace quillfern::pdf {

namespace {

/// Enough for the common beginnings of page dictionaries to be worth compressing together, few enough that a
/// reader need not unpack thousands of objects for one page.
constexpr std::size_t objectsPerStream = 200;

std::string header(int number, int generation)
{
    return std::to_string(number) + ' ' + std::to_string(generation) + " obj\n";
}

/// Differences between rows (PNG's "up" filter), which compress far better than offsets that grow.
QByteArray predicted(const QByteArray& rows, int width)
{
    QByteArray result;
    result.reserve(rows.size() + rows.size() / width);
    for (qsizetype at = 0; at < rows.size(); at += width) {
        result.append('\x02');
        for (qsizetype i = at; i < at + width; ++i) {
            const int above = at == 0 ? 0 : static_cast<unsigned char>(rows[i - width]);
            result.append(static_cast<char>(static_cast<unsigned char>(rows[i]) - above));
        }
    }
    return result;
}

} // namespace

IncrementalUpdate::IncrementalUpdate(QPDF& document, const SourceEnd& source, int nextNumber,
                                     bool knowsObjectStreams, store::AtomicFile& target)
    : document_(document), source_(source), knowsObjectStreams_(knowsObjectStreams), target_(target),
      position_(source.size), hash_(QCryptographicHash::Md5), nextNumber_(nextNumber)
{
    put("\n"); // the source may end without a line end
}

void IncrementalUpdate::put(std::string_view bytes)
{
    target_.write(bytes.data(), bytes.size());
    hash_.addData(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    position_ += static_cast<std::int64_t>(bytes.size());
}

void IncrementalUpdate::addObject(const QPDFObjectHandle& object)
{
    QPDFObjectHandle handle = object;
    const QPDFObjGen id = handle.getObjGen();
    if (handle.isStream()) {
        const std::shared_ptr<Buffer> raw = handle.getRawStreamData();
        addStream(id, handle.getDict(), {reinterpret_cast<const char*>(raw->getBuffer()), raw->getSize()});
    } else if (id.getGen() == 0) {
        addText(id.getObj(), handle.unparseResolved());
    } else {
        putObject(id, handle.unparseResolved());
    }
}

void IncrementalUpdate::addText(int number, std::string_view text)
{
    // What an entry in a stream costs is worth it for a page whose content is in many pieces.
    constexpr std::size_t large = 300;
    if (!source_.isStream && (!knowsObjectStreams_ || text.size() < large)) {
        putObject(QPDFObjGen(number, 0), text);
        return;
    }
    waiting_.emplace_back(number, text);
    if (waiting_.size() == objectsPerStream) putObjectStream();
}

void IncrementalUpdate::putObject(const QPDFObjGen& id, std::string_view text)
{
    places_[id.getObj()] = {position_, id.getGen(), false};
    std::string object = header(id.getObj(), id.getGen());
    object += text;
    object += "\nendobj\n";
    put(object);
}

void IncrementalUpdate::addStream(const QPDFObjGen& id, const QPDFObjectHandle& dictionary,
                                  std::string_view bytes)
{
    std::string entries = "<< /Length " + std::to_string(bytes.size()) + " >>";
    if (dictionary.isInitialized()) {
        QPDFObjectHandle all = QPDFObjectHandle(dictionary).shallowCopy();
        all.replaceKey("/Length", QPDFObjectHandle::newInteger(static_cast<long long>(bytes.size())));
        entries = all.unparseResolved();
    }
    places_[id.getObj()] = {position_, id.getGen(), false};
    put(header(id.getObj(), id.getGen()) + entries + "\nstream\n");
    put(bytes);
    put("\nendstream\nendobj\n");
}

void IncrementalUpdate::putStream(int number, const std::string& entries, const QByteArray& data)
{
    places_[number] = {position_, 0, false};
    put(header(number, 0) + "<< " + entries + " /Length " + std::to_string(data.size()) + " >>\nstream\n");
    put(data.toStdString());
    put("\nendstream\nendobj\n");
}

void IncrementalUpdate::putObjectStream()
{
    if (waiting_.empty()) return;
    const int number = nextNumber_++;
    QByteArray index;
    QByteArray bodies;
    int place = 0;
    for (const auto& [object, body] : waiting_) {
        index += QByteArray::number(object) + ' ' + QByteArray::number(bodies.size()) + ' ';
        bodies.append(body.data(), static_cast<qsizetype>(body.size()));
        bodies.append('\n');
        places_[object] = {number, place++, true};
    }
    putStream(number,
              "/Type /ObjStm /N " + std::to_string(waiting_.size()) + " /First " +
                  std::to_string(index.size()) + " /Filter /FlateDecode",
              deflatedBytes(index + bodies, Deflation::quick));
    waiting_.clear();
}

void IncrementalUpdate::finish()
{
    putObjectStream();
    if (source_.isStream) {
        const std::int64_t start = position_;
        const int number = nextNumber_;
        places_[number] = {position_, 0, false};
        const std::string trailer = trailerEntries();
        putCrossReferenceStream(places_, trailer);
        put("startxref\n" + std::to_string(start) + "\n%%EOF\n");
    } else {
        putTable();
    }
}

std::vector<std::pair<int, int>> IncrementalUpdate::runs(const Places& places)
{
    std::vector<std::pair<int, int>> runs;
    for (const auto& [number, place] : places) {
        if (runs.empty() || runs.back().first + runs.back().second != number) runs.emplace_back(number, 0);
        ++runs.back().second;
    }
    return runs;
}

void IncrementalUpdate::putTable()
{
    const std::string hidden = putHiddenEntries();
    const std::int64_t start = position_;
    std::string table = "xref\n";
    auto place = places_.begin();
    for (const auto& [first, count] : runs(places_)) {
        table += std::to_string(first) + ' ' + std::to_string(count) + '\n';
        for (int i = 0; i < count; ++i, ++place) {
            std::array<char, 32> row{}; // 20 bytes, as the format prescribes
            std::snprintf(row.data(), row.size(), "%010" PRId64 " %05d n \n", place->second.where,
                          place->second.index);
            table += row.data();
        }
    }
    put(table);
    put("trailer << " + trailerEntries() + hidden + " >>\nstartxref\n" + std::to_string(start) + "\n%%EOF\n");
}

std::string IncrementalUpdate::putHiddenEntries()
{
    Places hidden;
    for (auto place = places_.begin(); place != places_.end();) {
        const auto next = std::next(place);
        if (place->second.isInStream) hidden.insert(places_.extract(place));
        place = next;
    }
    if (hidden.empty()) return {};
    const std::int64_t start = position_;
    const int number = nextNumber_;
    putCrossReferenceStream(hidden, "/Size " + std::to_string(number + 1));
    return " /XRefStm " + std::to_string(start);
}

void IncrementalUpdate::putCrossReferenceStream(Places& places, const std::string& trailer)
{
    const int number = nextNumber_++;
    places[number] = {position_, 0, false};
    // The column holds offsets and the numbers of object streams.
    const std::int64_t largest = std::max<std::int64_t>(position_, nextNumber_);
    int offsetBytes = 3;
    while (largest >> (8 * offsetBytes) != 0)
        ++offsetBytes;
    std::string index;
    for (const auto& [first, count] : runs(places))
        index += std::to_string(first) + ' ' + std::to_string(count) + ' ';
    constexpr int otherColumns = 3;
    const std::string columns = std::to_string(offsetBytes + otherColumns);
    const QByteArray rows = predicted(crossReferenceRows(places, offsetBytes), offsetBytes + otherColumns);
    putStream(number,
              "/Type /XRef /W [1 " + std::to_string(offsetBytes) + " 2] /Index [" + index +
                  "] /Filter /FlateDecode /DecodeParms << /Predictor 12 /Columns " + columns + " >> " +
                  trailer,
              deflatedBytes(rows, Deflation::quick));
}

QByteArray IncrementalUpdate::crossReferenceRows(const Places& places, int offsetBytes)
{
    QByteArray rows;
    for (const auto& [number, place] : places) {
        rows.append(place.isInStream ? '\x02' : '\x01');
        for (int shift = 8 * (offsetBytes - 1); shift >= 0; shift -= 8)
            rows.append(static_cast<char>((place.where >> shift) & 0xFF));
        rows.append(static_cast<char>((place.index >> 8) & 0xFF));
        rows.append(static_cast<char>(place.index & 0xFF));
    }
    return rows;
}

std::string IncrementalUpdate::trailerEntries()
{
    // What belongs to the section itself, or is stated anew.
    static const std::set<std::string> ofSection{
        "/Size", "/Prev",   "/ID",     "/XRefStm",     "/Type", "/W",       "/Index",
        "/DL",   "/Length", "/Filter", "/DecodeParms", "/F",    "/FFilter", "/FDecodeParms"};
    QPDFObjectHandle trailer = document_.getTrailer();
    std::string entries;
    for (const auto& [key, value] : trailer.getDictAsMap()) // with those that read as null
        if (ofSection.count(key) == 0)
            entries +=
                QPDFObjectHandle::newName(key).unparse() + ' ' + QPDFObjectHandle(value).unparse() + ' ';

    QPDFObjectHandle id = trailer.getKey("/ID");
    const bool hasId = id.isArray() && id.getArrayNItems() == 2 && id.getArrayItem(0).isString() &&
                       id.getArrayItem(1).isString();
    if (hasId) hash_.addData(QByteArray::fromStdString(id.getArrayItem(1).getStringValue()));
    const std::string own = QPDFObjectHandle::newString(hash_.result().toStdString()).unparseBinary();
    entries += "/ID [" + (hasId ? id.getArrayItem(0).unparseBinary() : own) + ' ' + own + "] ";

    QPDFObjectHandle size = trailer.getKey("/Size");
    const long long highest = places_.empty() ? 0 : places_.rbegin()->first + 1LL;
    const long long stated = size.isInteger() ? size.getIntValue() : 0;
    entries += "/Size " + std::to_string(std::max(highest, stated));
    entries += " /Prev " + std::to_string(source_.crossReference);
    return entries;
}

} // namespace quillfern::pdf
