#pragma once

#include <memory>
#include <stop_token>

class QPDF;

namespace quillfern::store {
class AtomicFile;
}

namespace quillfern::pdf {

/// Writes a changed document to the disk.
class PdfWriter
{
  public:
    virtual ~PdfWriter() = default;
    /// Writes the document with all its changes. `needsTransparency` is true when the document uses
    /// transparency, which PDF 1.3 did not have. Throws Cancelled once `stop` is stopped, Failure, or what
    /// the document's library throws; the caller translates (LibraryErrors.h).
    virtual void write(QPDF& document, bool needsTransparency, store::AtomicFile& target,
                       std::stop_token stop) const = 0;
};

/// Writes every object anew, streams as they are. Object streams and encryption are kept.
class RewritingPdfWriter final : public PdfWriter
{
  public:
    void write(QPDF& document, bool needsTransparency, store::AtomicFile& target,
               std::stop_token stop) const override;
};

} // namespace quillfern::pdf
