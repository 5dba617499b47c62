#pragma once

#include "platform/pdf/XmpPacket.h"

#include <QString>
#include <optional>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <stop_token>

namespace quillfern::pdf {

class DocumentChanges;
class NewObjects;

/// What a document says about itself: the information dictionary and the XMP packet of its catalogue. A
/// packet that cannot be understood, or is larger than any real one, stays as it is and counts as one without
/// an archival claim.
class PdfMetadata
{
  public:
    /// All but `stop` are borrowed.
    PdfMetadata(QPDF& document, DocumentChanges& changes, NewObjects& objects,
                const std::stop_token& stop = {});

    void setCreator(const QString& creator);

    /// The archival profile that the XMP packet claims (pdfaid:part, ISO 19005); 0 for none.
    [[nodiscard]] int archivalPart() const;
    /// Removes the archival claim, for a document that no longer fulfils it.
    void withdrawArchivalClaim();
    /// True when the document's output intent describes RGB output, so that plain RGB colours are defined.
    [[nodiscard]] bool hasRgbOutputIntent() const;

  private:
    void storePacket();

    QPDF& document_;
    DocumentChanges& changes_;
    NewObjects& objects_;
    QPDFObjectHandle stream_;         ///< null without XMP
    std::optional<XmpPacket> packet_; ///< only when it is understood
};

} // namespace quillfern::pdf
