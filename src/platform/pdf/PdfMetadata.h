#pragma once

#include "platform/pdf/XmpPacket.h"

#include <QString>
#include <optional>
#include <qpdf/QPDF.hh>

namespace quillfern::pdf {

/// What a document says about itself: the information dictionary and the XMP packet of its catalogue.
/// A packet that cannot be understood, or is larger than any real one, stays as it is and claims nothing.
class PdfMetadata
{
  public:
    explicit PdfMetadata(QPDF& document);

    void setCreator(const QString& creator);

    /// The archival profile that the XMP packet claims (pdfaid:part, ISO 19005); 0 for none.
    [[nodiscard]] int archivalPart() const;
    /// Withdraws the archival claim: the document no longer is what it says.
    void withdrawArchivalClaim();
    /// True when the document's output intent describes RGB output, so that plain RGB colours are defined.
    [[nodiscard]] bool hasRgbOutputIntent() const;

  private:
    void storePacket();

    QPDF& document_;
    QPDFObjectHandle stream_;         ///< null without XMP
    std::optional<XmpPacket> packet_; ///< one that is understood
};

} // namespace quillfern::pdf
