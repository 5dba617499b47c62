#include "platform/pdf/BoundedStream.h"

#include "platform/pdf/LibraryErrors.h"
#include "platform/system/Cancellation.h"

#include <algorithm>
#include <climits>
#include <memory>
#include <new>
#include <qpdf/Buffer.hh>
#include <qpdf/Pipeline.hh>
#include <stdexcept>
#include <zlib.h>

namespace quillfern::pdf {

namespace {

class BoundedSink final : public Pipeline
{
  public:
    BoundedSink(std::size_t largest, const std::stop_token& stop)
        : Pipeline("bounded data", nullptr), largest_(largest), stop_(stop)
    {
    }

    void write(unsigned char const* bytes, size_t length) override
    {
        interruptible([this] { throwIfCancelled(stop_); });
        if (data.size() + length > largest_) {
            tooLarge = true;
            throw std::runtime_error(
                "too much data"); // ends the decoding; the library turns it into a refusal
        }
        data.append(reinterpret_cast<char const*>(bytes), length);
    }
    void finish() override {}

    std::string data;
    bool tooLarge = false;

  private:
    std::size_t largest_;
    const std::stop_token& stop_;
};

} // namespace

BoundedStream decodeBounded(QPDFObjectHandle stream, std::size_t largest, const std::stop_token& stop)
{
    BoundedSink sink(largest, stop);
    BoundedStream result;
    try {
        bool filtered = false;
        const bool piped = stream.pipeStreamData(&sink, &filtered, 0, qpdf_dl_specialized, true, false);
        if (piped && filtered) result.data = std::move(sink.data);
    } catch (const std::exception&) {
        result.data.reset();
    }
    result.tooLarge = sink.tooLarge;
    return result;
}

std::string inflatedPart(QPDFObjectHandle stream, std::size_t largest)
{
    QPDFObjectHandle dictionary = stream.getDict();
    QPDFObjectHandle filter = dictionary.getKey("/Filter");
    if (filter.isArray() && filter.getArrayNItems() == 1) filter = filter.getArrayItem(0);
    if (!filter.isName() || filter.getName() != "/FlateDecode" || !dictionary.getKey("/DecodeParms").isNull())
        return {};
    const std::shared_ptr<Buffer> deflated = stream.getRawStreamData();
    z_stream inflater = {};
    if (inflateInit(&inflater) != Z_OK) throw std::bad_alloc();
    const std::unique_ptr<z_stream, int (*)(z_stream*)> cleanUp(&inflater, inflateEnd);
    inflater.next_in = deflated->getBuffer();
    inflater.avail_in = static_cast<uInt>(std::min<std::size_t>(deflated->getSize(), UINT_MAX));
    constexpr std::size_t step = std::size_t{64} << 10;
    std::string data;
    for (int status = Z_OK; status == Z_OK && data.size() < largest;) {
        const std::size_t size = data.size();
        data.resize(size + step);
        inflater.next_out = reinterpret_cast<Bytef*>(data.data() + size);
        inflater.avail_out = static_cast<uInt>(step);
        status = inflate(&inflater, Z_NO_FLUSH);
        data.resize(size + step - inflater.avail_out);
        if (inflater.avail_out > 0) break;
    }
    return data;
}

} // namespace quillfern::pdf
