#include "platform/pdf/BoundedStream.h"

#include "platform/pdf/LibraryErrors.h"
#include "platform/system/Cancellation.h"

#include <qpdf/Pipeline.hh>
#include <stdexcept>

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

} // namespace quillfern::pdf
