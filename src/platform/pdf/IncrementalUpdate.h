#pragma once

#include "platform/pdf/SourceEnd.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <cstdint>
#include <map>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <string_view>
#include <vector>

namespace quillfern::store {
class AtomicFile;
}

namespace quillfern::pdf {

/// The part that an incremental update appends to a PDF file (ISO 32000-1, 7.5.6): objects, a cross-reference
/// section of the same kind as the file's last one, and a trailer that leads to the file's own. Where the
/// file has cross-reference streams, dictionaries go into object streams; where it has tables and is of a
/// version that knows such streams, large dictionaries do, and the update is a hybrid (7.5.8.4).
///
/// The same objects give the same bytes: the second part of the file identifier is a hash of what is
/// appended. Used once, on the document's thread.
class IncrementalUpdate
{
  public:
    /// The target holds the source's bytes already. Both are borrowed.
    /// `nextNumber` is the first number that no object has; `knowsObjectStreams` is true for a document of
    /// version 1.5 or later.
    IncrementalUpdate(QPDF& document, const SourceEnd& source, int nextNumber, bool knowsObjectStreams,
                      store::AtomicFile& target);

    void addObject(const QPDFObjectHandle& object);
    /// The same for an object of generation 0 that is no stream, as its text.
    void addText(int number, std::string_view text);
    /// `dictionary` is without /Length, and not initialised for an empty one.
    void addStream(const QPDFObjGen& id, const QPDFObjectHandle& dictionary, std::string_view bytes);
    /// Writes what was collected, the cross-reference section and the trailer.
    void finish();

  private:
    struct Place
    {
        std::int64_t where; ///< offset from the start of the file, or the number of the object stream
        int index;          ///< generation, or the index in the object stream
        bool isInStream;
    };

    void put(std::string_view bytes);
    void putObject(const QPDFObjGen& id, std::string_view text);
    void putStream(int number, const std::string& entries, const QByteArray& data);
    void putObjectStream();
    using Places = std::map<int, Place>; ///< by object number
    void putTable();
    /// Takes the entries of the objects in object streams out of the table; where there are any, a stream
    /// with them is written, and what the trailer says of it returned.
    [[nodiscard]] std::string putHiddenEntries();
    /// A cross-reference stream with these entries and its own.
    void putCrossReferenceStream(Places& places, const std::string& trailer);
    [[nodiscard]] static QByteArray crossReferenceRows(const Places& places, int offsetBytes);
    /// The entries of the trailer dictionary, without its brackets.
    [[nodiscard]] std::string trailerEntries();
    /// Runs of consecutive object numbers: the first number and the count.
    [[nodiscard]] static std::vector<std::pair<int, int>> runs(const Places& places);

    QPDF& document_;
    SourceEnd source_;
    bool knowsObjectStreams_;
    store::AtomicFile& target_;
    std::int64_t position_;
    QCryptographicHash hash_;
    Places places_;
    int nextNumber_;
    std::vector<std::pair<int, std::string>> waiting_; ///< for the next object stream
};

} // namespace quillfern::pdf
