#include "platform/pdf/ContentScanner.h"

#include "platform/pdf/BoundedStream.h"
#include "platform/pdf/PlainStreams.h"
#include "platform/system/Cancellation.h"

#include <algorithm>
#include <cstring>
#include <libdeflate.h>
#include <memory>
#include <qpdf/Buffer.hh>
#include <system_error>
#include <zlib.h>

namespace quillfern::pdf {

namespace {

/// Far above what any page holds, far below what a few bytes of hostile deflate data can claim.
constexpr std::size_t largestContent = std::size_t{1} << 29;

struct Piece
{
    std::shared_ptr<Buffer> bytes; ///< from the document's library, as the file has them
    std::string decoded;           ///< or read here, or decoded by the library where only that can
    bool deflated = false;

    [[nodiscard]] std::string_view view() const
    {
        if (!bytes) return decoded;
        return {reinterpret_cast<const char*>(bytes->getBuffer()), bytes->getSize()};
    }
};

[[noreturn]] void refuseSize()
{
    throw Failure(
        QT_TRANSLATE_NOOP("quillfern::Failure", "The content of a page is larger than any real page's."));
}

/// The decoded content of a page. Its memory is kept from page to page: asking the system for fresh memory,
/// or clearing it first as a string does, costs as much as filling it.
class Content
{
  public:
    [[nodiscard]] char* data() { return bytes_.get(); }
    [[nodiscard]] std::size_t size() const { return size_; }

    void clear()
    {
        size_ = 0;
        if (capacity_ > keptCapacity) *this = {};
    }
    /// Room for `count` more bytes, to be filled and then taken with grow().
    char* room(std::size_t count)
    {
        if (count > largestContent || size_ + count > largestContent + slack) refuseSize();
        if (size_ + count > capacity_) {
            const std::size_t capacity = std::max(size_ + count, capacity_ * 2);
            std::unique_ptr<char[]> bytes(new char[capacity]);
            if (size_ > 0) std::memcpy(bytes.get(), bytes_.get(), size_);
            bytes_ = std::move(bytes);
            capacity_ = capacity;
        }
        return bytes_.get() + size_;
    }
    void grow(std::size_t count)
    {
        size_ += count;
        if (size_ > largestContent) refuseSize();
    }
    void append(const void* data, std::size_t count)
    {
        std::memcpy(room(count), data, count);
        grow(count);
    }

  private:
    static constexpr std::size_t keptCapacity = std::size_t{16} << 20;
    static constexpr std::size_t slack = std::size_t{1} << 20;

    std::unique_ptr<char[]> bytes_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

using Inflater = std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)>;

/// Inflates sound data in one go, which is several times as fast as piece by piece. False when the data are
/// damaged or inflate to more than the largest guess; nothing is appended then.
bool inflateWhole(Content& content, std::string_view deflated)
{
    thread_local const Inflater inflater(libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    if (!inflater) return false;
    constexpr std::size_t likelyRatio = 8;
    constexpr std::size_t largestGuess = std::size_t{64} << 20;
    for (std::size_t room = deflated.size() * likelyRatio + 1024; room <= largestGuess; room *= 4) {
        std::size_t size = 0;
        const libdeflate_result result = libdeflate_zlib_decompress(
            inflater.get(), deflated.data(), deflated.size(), content.room(room), room, &size);
        if (result == LIBDEFLATE_SUCCESS) {
            content.grow(size);
            return true;
        }
        if (result != LIBDEFLATE_INSUFFICIENT_SPACE) return false;
    }
    return false;
}

/// Inflates as much as possible: of damaged data, the part in front of the damage, as a viewer does. False
/// for damaged data.
bool inflateInto(Content& content, std::string_view deflated, const std::stop_token& stop)
{
    if (inflateWhole(content, deflated)) return true;
    z_stream stream = {};
    if (inflateInit(&stream) != Z_OK) throw std::bad_alloc();
    const std::unique_ptr<z_stream, int (*)(z_stream*)> cleanUp(&stream, inflateEnd);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(deflated.data()));
    stream.avail_in = static_cast<uInt>(std::min<std::size_t>(deflated.size(), UINT_MAX));
    constexpr std::size_t step = std::size_t{256} * 1024;
    for (;;) {
        throwIfCancelled(stop);
        stream.next_out = reinterpret_cast<Bytef*>(content.room(step));
        stream.avail_out = static_cast<uInt>(step);
        const int status = inflate(&stream, Z_NO_FLUSH);
        content.grow(step - stream.avail_out);
        if (status != Z_OK || stream.avail_out > 0) return status == Z_STREAM_END;
    }
}

bool isPlainDeflate(QPDFObjectHandle dictionary)
{
    QPDFObjectHandle filter = dictionary.getKey("/Filter");
    if (filter.isArray() && filter.getArrayNItems() == 1) filter = filter.getArrayItem(0);
    return filter.isName() && (filter.getName() == "/FlateDecode" || filter.getName() == "/Fl") &&
           dictionary.getKey("/DecodeParms").isNull() && dictionary.getKey("/DP").isNull();
}

bool takePiece(QPDFObjectHandle stream, PlainStreams& plainStreams, std::vector<Piece>& pieces,
               const std::stop_token& stop)
{
    if (const auto place = plainStreams.find(stream.getObjGen())) {
        Piece piece{nullptr, {}, place->isDeflated};
        if (plainStreams.append(*place, piece.decoded)) {
            pieces.push_back(std::move(piece));
            return true;
        }
    }
    QPDFObjectHandle dictionary = stream.getDict();
    const bool plain = dictionary.getKey("/Filter").isNull();
    if (plain || isPlainDeflate(dictionary)) {
        try {
            pieces.push_back({stream.getRawStreamData(), {}, !plain});
            return true;
        } catch (const std::runtime_error&) { // QPDFExc is one
            return false;
        }
    }
    BoundedStream decoded = decodeBounded(stream, largestContent / 2, stop);
    if (decoded.tooLarge) refuseSize();
    if (!decoded.data) return false;
    pieces.push_back({nullptr, std::move(*decoded.data), false});
    return true;
}

ContentScanner::Result scanPieces(const std::vector<Piece>& pieces, const std::stop_token& stop)
{
    thread_local Content content;
    content.clear();
    bool whole = true;
    for (const Piece& piece : pieces) {
        throwIfCancelled(stop);
        const std::string_view bytes = piece.view();
        if (piece.deflated)
            whole = inflateInto(content, bytes, stop) && whole;
        else
            content.append(bytes.data(), bytes.size());
        content.append("\n", 1);
    }
    ContentScanner::Result result;
    result.balance = balanceOfContent(content.data(), content.size(), stop);
    result.balance.damaged = result.balance.damaged || !whole;
    if (!result.balance.strayRestores.empty() || result.balance.damaged) {
        for (const std::size_t position : result.balance.strayRestores)
            content.data()[position] = ' ';
        result.mended = QByteArray(content.data(), static_cast<qsizetype>(content.size()));
        result.mended.chop(1); // the line feed behind the last piece
    }
    return result;
}

/// Waking the thread takes longer than reading a page, so it is woken only for this many pages.
constexpr std::size_t worthWaking = 16;

} // namespace

class ContentScanner::Scan
{
  public:
    std::vector<Piece> pieces;
    Result result;
    std::exception_ptr failure;
    bool done = false; ///< guarded by the scanner's mutex; once set, the members above no longer change
};

ContentScanner::ContentScanner(PlainStreams& plain, std::stop_token stop)
    : plain_(plain), stop_(std::move(stop))
{
}

ContentScanner::~ContentScanner()
{
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        waiting_.clear();
    }
    changed_.notify_all();
    if (worker_.joinable()) worker_.join();
}

std::shared_ptr<ContentScanner::Scan> ContentScanner::scan(const std::vector<QPDFObjectHandle>& streams)
{
    auto scan = std::make_shared<Scan>();
    const auto take = [&](const QPDFObjectHandle& stream) {
        return takePiece(stream, plain_, scan->pieces, stop_);
    };
    if (!std::all_of(streams.begin(), streams.end(), take)) {
        scan->result.undecodable = true;
        scan->done = true;
        return scan;
    }
    queue(scan);
    return scan;
}

std::shared_ptr<ContentScanner::Scan> ContentScanner::scan(std::span<const PlainStreams::Place> places)
{
    auto scan = std::make_shared<Scan>();
    for (const PlainStreams::Place& place : places) {
        if (place.isDeflated || scan->pieces.empty() || scan->pieces.back().deflated)
            scan->pieces.push_back({nullptr, {}, place.isDeflated});
        std::string& bytes = scan->pieces.back().decoded;
        if (!bytes.empty()) bytes += '\n';
        if (!plain_.append(place, bytes))
            throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure",
                                            "Parts of the document are damaged and cannot be read."));
    }
    queue(scan);
    return scan;
}

void ContentScanner::queue(const std::shared_ptr<Scan>& scan)
{
    bool wake = false;
    {
        const std::lock_guard lock(mutex_);
        waiting_.push_back(scan);
        wake = waiting_.size() % worthWaking == 0;
    }
    if (!wake) return;
    // A document of a few pages is read sooner than a thread is there.
    if (!worker_.joinable()) {
        try {
            worker_ = std::thread([this] { work(); });
        } catch (const std::exception&) {
            return; // the system allows no further thread: resultOf() reads everything
        }
    }
    changed_.notify_all();
}

std::shared_ptr<ContentScanner::Scan> ContentScanner::takeNext()
{
    std::shared_ptr<Scan> next;
    if (!waiting_.empty()) {
        next = std::move(waiting_.front());
        waiting_.pop_front();
    }
    return next;
}

void ContentScanner::finish(Scan& scan)
{
    try {
        scan.result = scanPieces(scan.pieces, stop_);
    } catch (...) {
        scan.failure = std::current_exception();
    }
    scan.pieces.clear();
    scan.pieces.shrink_to_fit();
    const std::lock_guard lock(mutex_);
    scan.done = true;
}

void ContentScanner::work()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return stopping_ || !waiting_.empty(); });
        if (stopping_) return;
        while (const auto next = takeNext()) {
            lock.unlock();
            finish(*next);
            lock.lock();
        }
        changed_.notify_all(); // resultOf() may wait for the last scan
    }
}

const ContentScanner::Result& ContentScanner::resultOf(Scan& scan)
{
    std::unique_lock lock(mutex_);
    while (!scan.done) {
        if (const auto next = takeNext()) {
            lock.unlock();
            finish(*next);
            lock.lock();
        } else {
            changed_.wait(lock); // the other thread is reading it
        }
    }
    if (scan.failure) std::rethrow_exception(scan.failure);
    return scan.result;
}

} // namespace quillfern::pdf
