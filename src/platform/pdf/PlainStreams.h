#pragma once

#include <cstdint>
#include <optional>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <unordered_map>
#include <vector>

namespace quillfern::pdf {

class FileInput;
struct SourceTable;

/// Reads streams straight from the file, without making objects of the document's library of them: content in
/// tens of thousands of small streams is read several times as fast, and takes no memory afterwards.
///
/// Reads only what is plain: an object at the offset that the cross-reference states, whose dictionary has
/// nothing but a /Length and at most the filter FlateDecode. Whatever else a stream may be is left to the
/// library. Used on the document's thread.
class PlainStreams
{
  public:
    /// `file` is the one that the document was opened from, and outlives this object.
    PlainStreams(QPDF& document, FileInput& file);
    /// The same without the library; both outlive this object.
    PlainStreams(const SourceTable& table, FileInput& file);

    /// Where the bytes of a stream lie in the file.
    struct Place
    {
        qpdf_offset_t start;
        std::size_t length;
        bool isDeflated;
    };
    /// Nothing for a stream that is not plain. Throws Failure when the file cannot be read.
    [[nodiscard]] std::optional<Place> find(const QPDFObjGen& id);

    /// Appends the stream's bytes as the file has them. False when the file has become shorter. Throws
    /// Failure when it cannot be read.
    [[nodiscard]] bool append(const Place& place, std::string& bytes);

  private:
    [[nodiscard]] std::optional<std::int64_t> offsetOf(int number) const;
    [[nodiscard]] std::optional<std::int64_t> wholeNumber(int number);

    FileInput& file_;
    const SourceTable* table_ = nullptr;
    std::unordered_map<int, std::int64_t> offsets_; ///< of the objects of generation 0 outside object streams
};

/// The streams of a page's content. Plain ones are not made objects of the library.
[[nodiscard]] std::vector<QPDFObjectHandle> contentStreams(QPDFObjectHandle page, PlainStreams& plain);

} // namespace quillfern::pdf
