#pragma once

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <vector>

namespace quillfern::pdf {

class DocumentChanges;
class PlainDocument;
class PlainStreams;

/// Gives the library the pages that it was opened without, as they are after the changes so far, and their
/// content: for a document that has to be written anew after all. Returns the pages. The streams are read
/// from the file when the document is written, and have to last until then.
[[nodiscard]] std::vector<QPDFObjectHandle> completeDocument(QPDF& document, const PlainDocument& plain,
                                                             PlainStreams& streams, DocumentChanges& changes);

} // namespace quillfern::pdf
