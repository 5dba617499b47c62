#include "platform/pdf/NewObjects.h"

#include <algorithm>
#include <libdeflate.h>
#include <memory>
#include <new>

namespace quillfern::pdf {

namespace {

/// The highest number that the cross-reference or the trailer's /Size states. Numbers up to /Size may be
/// referred to although no such object exists; a /Size far beyond all objects is damage.
int highestStated(QPDF& document)
{
    constexpr long long believable = 1'000'000;
    int highest = 0;
    for (const auto& [id, entry] : document.getXRefTable())
        highest = std::max(highest, id.getObj());
    QPDFObjectHandle size = document.getTrailer().getKey("/Size");
    const long long stated = size.isInteger() ? size.getIntValue() - 1 : 0;
    return stated > highest && stated < highest + believable ? static_cast<int>(stated) : highest;
}

} // namespace

QByteArray deflatedBytes(const QByteArray& bytes, Deflation level)
{
    const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> deflater(
        libdeflate_alloc_compressor(static_cast<int>(level)), libdeflate_free_compressor);
    if (!deflater) throw std::bad_alloc();
    const auto size = static_cast<std::size_t>(bytes.size());
    QByteArray deflated(static_cast<qsizetype>(libdeflate_zlib_compress_bound(deflater.get(), size)),
                        Qt::Uninitialized);
    deflated.resize(static_cast<qsizetype>(
        libdeflate_zlib_compress(deflater.get(), bytes.constData(), size, deflated.data(),
                                 static_cast<std::size_t>(deflated.size()))));
    return deflated;
}

int firstFreeNumber(QPDF& document, bool isReadWhole)
{
    const int next = highestStated(document) + 1;
    return isReadWhole ? std::max(next, static_cast<int>(document.getObjectCount()) + 1) : next;
}

QPDFObjectHandle NewObjects::add(const QPDFObjectHandle& direct)
{
    const QPDFObjGen id(next_++, 0);
    document_.replaceObject(id, direct);
    others_.push_back(id.getObj());
    return document_.getObject(id);
}

QPDFObjectHandle NewObjects::addStream(std::string bytes, const QPDFObjectHandle& dictionary)
{
    const QPDFObjGen id(next_++, 0);
    // The dictionary stands for the stream until it is written: a reference to nothing would count as null
    // and vanish from the dictionaries that hold it.
    document_.replaceObject(id, dictionary);
    streams_.push_back({id.getObj(), document_.getObject(id), std::move(bytes)});
    return streams_.back().dictionary;
}

QPDFObjectHandle NewObjects::addStream(std::string bytes)
{
    return addStream(std::move(bytes), QPDFObjectHandle::newDictionary());
}

int NewObjects::addUnknownStream(std::string bytes)
{
    streams_.push_back({next_++, {}, std::move(bytes)});
    return streams_.back().number;
}

QPDFObjectHandle NewObjects::addCopy(const QPDFObjectHandle& stream)
{
    const QPDFObjectHandle copy = QPDFObjectHandle(stream).copyStream(); // numbered by the library
    others_.push_back(copy.getObjGen().getObj());
    next_ = std::max(next_, others_.back() + 1);
    return copy;
}

QPDFObjectHandle NewObjects::addDeflated(const QByteArray& bytes, const QPDFObjectHandle& dictionary)
{
    QPDFObjectHandle(dictionary).replaceKey("/Filter", QPDFObjectHandle::newName("/FlateDecode"));
    return addStream(deflatedBytes(bytes).toStdString(), dictionary);
}

QPDFObjectHandle NewObjects::addDeflated(const QByteArray& bytes)
{
    return addDeflated(bytes, QPDFObjectHandle::newDictionary());
}

void NewObjects::materialise()
{
    for (Stream& stream : streams_) {
        QPDFObjectHandle made = document_.newStream(stream.bytes);
        if (stream.dictionary.isInitialized())
            made.replaceDict(stream.dictionary.shallowCopy());
        else
            document_.replaceObject(QPDFObjGen(stream.number, 0), QPDFObjectHandle::newDictionary());
        // The library chooses its own number; the references are to ours.
        document_.swapObjects(made.getObjGen(), QPDFObjGen(stream.number, 0));
    }
    streams_.clear();
}

} // namespace quillfern::pdf
