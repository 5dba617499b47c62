#include "platform/pdf/ContentScanner.h"

#include "platform/system/Failure.h"

#include <algorithm>
#include <memory>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDFExc.hh>
#include <zlib.h>

namespace quillfern {

namespace {

/// Far above what any page holds, far below what a few bytes of hostile deflate data can claim.
constexpr std::size_t largestContent = std::size_t{1} << 30;

struct Piece
{
    std::shared_ptr<Buffer> bytes;
    bool deflated = false;
};

[[noreturn]] void refuseSize()
{
    throw Failure(QStringLiteral("the content of a page is larger than any real page's"));
}

void append(std::string& content, const unsigned char* data, std::size_t size)
{
    if (content.size() + size > largestContent) refuseSize();
    content.append(reinterpret_cast<const char*>(data), size);
}

/// Inflates as far as the data go; damaged data give what can be had, as they do in a viewer.
void inflateInto(std::string& content, const Buffer& deflated)
{
    z_stream stream = {};
    if (inflateInit(&stream) != Z_OK) throw std::bad_alloc();
    const std::unique_ptr<z_stream, int (*)(z_stream*)> cleanUp(&stream, inflateEnd);
    stream.next_in = const_cast<Bytef*>(deflated.getBuffer());
    stream.avail_in = static_cast<uInt>(std::min<std::size_t>(deflated.getSize(), UINT_MAX));
    std::size_t size = content.size();
    for (;;) {
        const std::size_t room = std::max<std::size_t>(64 * 1024, size / 2);
        content.resize(size + room);
        stream.next_out = reinterpret_cast<Bytef*>(content.data() + size);
        stream.avail_out = static_cast<uInt>(room);
        const int status = inflate(&stream, Z_NO_FLUSH);
        size += room - stream.avail_out;
        if (size > largestContent) refuseSize();
        if (status != Z_OK || stream.avail_out > 0) break;
    }
    content.resize(size);
}

bool isPlainDeflate(QPDFObjectHandle dictionary)
{
    QPDFObjectHandle filter = dictionary.getKey("/Filter");
    if (filter.isArray() && filter.getArrayNItems() == 1) filter = filter.getArrayItem(0);
    return filter.isName() && (filter.getName() == "/FlateDecode" || filter.getName() == "/Fl") &&
           dictionary.getKey("/DecodeParms").isNull() && dictionary.getKey("/DP").isNull();
}

bool takePiece(QPDFObjectHandle stream, std::vector<Piece>& pieces)
{
    try {
        QPDFObjectHandle dictionary = stream.getDict();
        if (dictionary.getKey("/Filter").isNull())
            pieces.push_back({stream.getRawStreamData(), false});
        else if (isPlainDeflate(dictionary))
            pieces.push_back({stream.getRawStreamData(), true});
        else
            pieces.push_back({stream.getStreamData(qpdf_dl_specialized), false});
        return true;
    } catch (const QPDFExc&) {
        return false;
    } catch (const std::runtime_error&) {
        return false;
    }
}

ContentScanner::Result scanPieces(const std::vector<Piece>& pieces)
{
    std::string content;
    for (const Piece& piece : pieces) {
        if (piece.deflated)
            inflateInto(content, *piece.bytes);
        else
            append(content, piece.bytes->getBuffer(), piece.bytes->getSize());
        content += '\n';
    }
    ContentScanner::Result result;
    result.balance = balanceOfContent(content.data(), content.size());
    if (!result.balance.strayRestores.empty()) {
        for (const std::size_t position : result.balance.strayRestores)
            content[position] = ' ';
        result.mended = QByteArray(content.data(), static_cast<qsizetype>(content.size()));
    }
    return result;
}

} // namespace

ContentScanner::ContentScanner()
{
    // The document's own thread is busy with the next pages meanwhile.
    pool_.setMaxThreadCount(std::max(1, QThread::idealThreadCount() - 1));
}

ContentScanner::~ContentScanner()
{
    pool_.waitForDone();
}

std::shared_future<ContentScanner::Result> ContentScanner::scan(const std::vector<QPDFObjectHandle>& streams)
{
    auto pieces = std::make_shared<std::vector<Piece>>();
    auto promise = std::make_shared<std::promise<Result>>();
    std::shared_future<Result> future = promise->get_future().share();
    if (!std::all_of(streams.begin(), streams.end(),
                     [&](const auto& stream) { return takePiece(stream, *pieces); })) {
        promise->set_value({});
        return future;
    }
    pool_.start([pieces, promise] {
        try {
            promise->set_value(scanPieces(*pieces));
        } catch (...) {
            promise->set_exception(std::current_exception());
        }
    });
    return future;
}

} // namespace quillfern
