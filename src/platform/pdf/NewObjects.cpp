#include "platform/pdf/NewObjects.h"

#include <algorithm>

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

QByteArray deflatedBytes(const QByteArray& bytes)
{
    return qCompress(bytes, 9).mid(4); // qCompress puts the length before the zlib stream
}

NewObjects::NewObjects(QPDF& document, bool isReadWhole)
    : document_(document), next_(highestStated(document) + 1)
{
    if (isReadWhole) next_ = std::max(next_, static_cast<int>(document.getObjectCount()) + 1);
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
        made.replaceDict(stream.dictionary.shallowCopy());
        // The library chooses its own number; the references are to ours.
        document_.swapObjects(made.getObjGen(), QPDFObjGen(stream.number, 0));
    }
    streams_.clear();
}

} // namespace quillfern::pdf
