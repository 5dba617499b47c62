#pragma once

#include <QByteArray>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <vector>

namespace quillfern::pdf {

/// Makes the objects that are added to an open document. The document's library would first read every object
/// of the file to find a free number; here the numbers go on behind those that the cross-reference states,
/// and the bytes of new streams stay aside until a writer asks for them. All new objects of a document come
/// from here, so that no number is given twice. Used on the document's thread.
class NewObjects
{
  public:
    /// `firstNumber` is the first that no object has (firstFreeNumber()).
    NewObjects(QPDF& document, int firstNumber) : document_(document), next_(firstNumber) {}

    /// The object, now an indirect one; its content may be changed until it is written.
    [[nodiscard]] QPDFObjectHandle add(const QPDFObjectHandle& direct);
    /// A reference to a new stream, which is its dictionary until the document is written. `bytes` are as the
    /// stream's filters, stated in the dictionary, leave them.
    [[nodiscard]] QPDFObjectHandle addStream(std::string bytes, const QPDFObjectHandle& dictionary);
    [[nodiscard]] QPDFObjectHandle addStream(std::string bytes);
    /// The number of a new stream without a dictionary, of which the document's library knows nothing until
    /// materialise(): for what refers to the stream as text.
    [[nodiscard]] int addUnknownStream(std::string bytes);
    /// A copy of a stream of the document, with a dictionary of its own.
    [[nodiscard]] QPDFObjectHandle addCopy(const QPDFObjectHandle& stream);
    /// The same as addStream() with the bytes deflated here.
    [[nodiscard]] QPDFObjectHandle addDeflated(const QByteArray& bytes, const QPDFObjectHandle& dictionary);
    [[nodiscard]] QPDFObjectHandle addDeflated(const QByteArray& bytes);

    struct Stream
    {
        int number;
        QPDFObjectHandle dictionary; ///< without /Length; not initialised for an empty one
        std::string bytes;
    };
    [[nodiscard]] const std::vector<Stream>& streams() const { return streams_; }
    /// The numbers of the other new objects.
    [[nodiscard]] const std::vector<int>& others() const { return others_; }
    /// The first number that no object has.
    [[nodiscard]] int nextNumber() const { return next_; }

    /// Puts the streams into the document, for a writer of the library. Nothing may be added afterwards.
    void materialise();

  private:
    QPDF& document_;
    int next_;
    std::vector<Stream> streams_;
    std::vector<int> others_;
};

/// Where a document is read whole, the first number behind all that it refers to; otherwise behind those that
/// its cross-reference and its trailer state.
[[nodiscard]] int firstFreeNumber(QPDF& document, bool isReadWhole);

/// libdeflate's levels: above `thorough` time grows without an effect; `quick` suits text that repeats
/// itself, on which the other takes sixty times as long.
enum class Deflation { quick = 5, thorough = 9 };
/// zlib data.
[[nodiscard]] QByteArray deflatedBytes(const QByteArray& bytes, Deflation level = Deflation::thorough);

} // namespace quillfern::pdf
