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
                                     store::AtomicFile& target)
    : document_(document), source_(source), target_(target), position_(source.size),
      hash_(QCryptographicHash::Md5), nextNumber_(nextNumber)
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
    } else if (source_.isStream && id.getGen() == 0) {
        waiting_.emplace_back(id.getObj(), handle.unparseResolved());
        if (waiting_.size() == objectsPerStream) putObjectStream();
    } else {
        places_[id.getObj()] = {position_, id.getGen(), false};
        put(header(id.getObj(), id.getGen()) + handle.unparseResolved() + "\nendobj\n");
    }
}

void IncrementalUpdate::addStream(const QPDFObjGen& id, const QPDFObjectHandle& dictionary,
                                  std::string_view bytes)
{
    QPDFObjectHandle entries = QPDFObjectHandle(dictionary).shallowCopy();
    entries.replaceKey("/Length", QPDFObjectHandle::newInteger(static_cast<long long>(bytes.size())));
    places_[id.getObj()] = {position_, id.getGen(), false};
    put(header(id.getObj(), id.getGen()) + entries.unparseResolved() + "\nstream\n");
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
              deflatedBytes(index + bodies));
    waiting_.clear();
}

void IncrementalUpdate::finish()
{
    putObjectStream();
    const std::int64_t start = position_;
    if (source_.isStream)
        putCrossReferenceStream();
    else
        putTable();
    put("startxref\n" + std::to_string(start) + "\n%%EOF\n");
}

std::vector<std::pair<int, int>> IncrementalUpdate::runs() const
{
    std::vector<std::pair<int, int>> runs;
    for (const auto& [number, place] : places_) {
        if (runs.empty() || runs.back().first + runs.back().second != number) runs.emplace_back(number, 0);
        ++runs.back().second;
    }
    return runs;
}

void IncrementalUpdate::putTable()
{
    std::string table = "xref\n";
    auto place = places_.begin();
    for (const auto& [first, count] : runs()) {
        table += std::to_string(first) + ' ' + std::to_string(count) + '\n';
        for (int i = 0; i < count; ++i, ++place) {
            std::array<char, 32> row{}; // 20 bytes, as the format prescribes
            std::snprintf(row.data(), row.size(), "%010" PRId64 " %05d n \n", place->second.where,
                          place->second.index);
            table += row.data();
        }
    }
    put(table);
    put("trailer << " + trailerEntries() + " >>\n");
}

void IncrementalUpdate::putCrossReferenceStream()
{
    const int number = nextNumber_++;
    places_[number] = {position_, 0, false};
    // The column holds offsets and the numbers of object streams.
    const std::int64_t largest = std::max<std::int64_t>(position_, nextNumber_);
    int offsetBytes = 3;
    while (largest >> (8 * offsetBytes) != 0)
        ++offsetBytes;
    std::string index;
    for (const auto& [first, count] : runs())
        index += std::to_string(first) + ' ' + std::to_string(count) + ' ';
    constexpr int otherColumns = 3;
    const std::string columns = std::to_string(offsetBytes + otherColumns);
    const QByteArray rows = predicted(crossReferenceRows(offsetBytes), offsetBytes + otherColumns);
    putStream(number,
              "/Type /XRef /W [1 " + std::to_string(offsetBytes) + " 2] /Index [" + index +
                  "] /Filter /FlateDecode /DecodeParms << /Predictor 12 /Columns " + columns + " >> " +
                  trailerEntries(),
              deflatedBytes(rows));
}

QByteArray IncrementalUpdate::crossReferenceRows(int offsetBytes) const
{
    QByteArray rows;
    for (const auto& [number, place] : places_) {
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
