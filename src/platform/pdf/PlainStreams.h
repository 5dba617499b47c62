#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <unordered_map>
#include <vector>

namespace quillfern::pdf {

class FileInput;

/// Reads streams straight from the file, without making objects of the document's library of them: content in
/// tens of thousands of small streams is read several times as fast, and takes no memory afterwards.
///
/// Reads only what is plain: an object at the offset that the cross-reference states, whose dictionary has
/// nothing but a direct /Length and at most the filter FlateDecode. Whatever else a stream may be is left to
/// the library. Used on the document's thread.
class PlainStreams
{
  public:
    /// `file` is the one that the document was opened from, and outlives this object.
    PlainStreams(QPDF& document, FileInput& file);

    /// Whether read() would find a plain stream there, as far as its head shows.
    [[nodiscard]] bool isPlain(const QPDFObjGen& id);

    struct Bytes
    {
        std::shared_ptr<Buffer> raw; ///< as the file has them
        bool isDeflated = false;
    };
    /// Nothing for a stream that is not plain. Throws Failure when the file cannot be read.
    [[nodiscard]] std::optional<Bytes> read(const QPDFObjGen& id);

  private:
    struct Place
    {
        qpdf_offset_t start;
        std::size_t length;
        bool isDeflated;
    };
    [[nodiscard]] std::optional<Place> find(const QPDFObjGen& id);

    FileInput& file_;
    std::unordered_map<int, std::int64_t> offsets_; ///< of the objects of generation 0 outside object streams
};

/// The streams of a page's content. Plain ones are not made objects of the library.
[[nodiscard]] std::vector<QPDFObjectHandle> contentStreams(QPDFObjectHandle page, PlainStreams& plain);

} // namespace quillfern::pdf
