#pragma once

#include <QString>
#include <qpdf/QPDF.hh>

namespace quillfern {

/// What a document says about itself: the information dictionary and the XMP packet of its catalogue.
/// The packet is edited as text, so that everything else in it stays as its author wrote it.
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
    QPDFObjectHandle stream_; ///< null without XMP
    QString packet_;
};

/// `packet` with its CreatorTool saying `creator`, wherever and however it is written there.
[[nodiscard]] QString withCreatorTool(QString packet, const QString& creator);

} // namespace quillfern
